<HTML><BODY><TABLE><TR><TD><%= v %></TD></TR></TABLE></BODY></HTML>
