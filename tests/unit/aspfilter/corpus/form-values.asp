<HTML><BODY><FORM method="post" action="save.asp"><INPUT name="q" value="<%= Server.HTMLEncode(q) %>"></FORM></BODY></HTML>
