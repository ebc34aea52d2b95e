<HTML><BODY><!-- <% old code %> --><P><%= live %></P></BODY></HTML>
