<HTML><BODY><A href="<%=u%>">go</A> <IMG src="<%= img %>" alt=""></BODY></HTML>
