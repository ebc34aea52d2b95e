<HTML><BODY><%= a %><%= b %><%= c %></BODY></HTML>
