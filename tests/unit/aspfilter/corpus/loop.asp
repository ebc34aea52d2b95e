<HTML><BODY><UL>
<% For i = 1 To 5 %>
<LI><%= i %></LI>
<% Next %>
</UL></BODY></HTML>
