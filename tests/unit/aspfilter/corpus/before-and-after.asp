<% Dim t : t = Now %>
<HTML><BODY><P><%= t %></P></BODY></HTML>
<% ' trailer %>
