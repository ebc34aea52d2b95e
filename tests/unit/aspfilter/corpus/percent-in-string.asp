<HTML><BODY><% s = "100%" %><P><%= s & " done" %></P></BODY></HTML>
