<HTML><BODY><P class="<%=c%>" title="<%=t%>">text</P></BODY></HTML>
