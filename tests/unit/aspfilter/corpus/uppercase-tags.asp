<html>
<head></head>
<body bgcolor="<%=bg%>">
<%response.write("x")%>
</body>
</html>
