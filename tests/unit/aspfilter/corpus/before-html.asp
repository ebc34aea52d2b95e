<%
Response.Buffer = True
Dim x
%>
<HTML>
<BODY>
<%=x%>
</BODY>
</HTML>
