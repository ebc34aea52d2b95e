<HTML><BODY><TABLE><TR><TD width="<%=w%>">cell</TD></TR></TABLE></BODY></HTML>
