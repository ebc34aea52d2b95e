<HTML><BODY><P><%= 1 %></P><% if x then </BODY></HTML>
