<HTML><BODY>--> text <%= 1 %> <!-- open <P><%= 2 %></P></BODY></HTML>
