<HTML lang="sv">
<BODY><%= "a" %></BODY>
</HTML>
<%= "after" %>
