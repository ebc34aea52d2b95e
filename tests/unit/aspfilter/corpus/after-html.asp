<HTML>
<BODY>
Body
</BODY>
</HTML>
<% Response.Write "<!-- done -->" %>
