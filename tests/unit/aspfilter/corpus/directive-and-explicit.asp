<%@ Language=VBScript %>
<% Option Explicit %>
<%
Dim name
name = "Ann"
%>
<HTML>
<BODY>
<P>Hello <%= name %></P>
</BODY>
</HTML>
