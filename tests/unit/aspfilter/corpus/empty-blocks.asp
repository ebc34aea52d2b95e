<HTML><BODY><% %><P><%= 1 %></P><%  %></BODY></HTML>
