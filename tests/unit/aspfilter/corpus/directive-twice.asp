<%@ Language=VBScript %>
<HTML><BODY><%= 1 %>
<%@ Language=VBScript %>
</BODY></HTML>
