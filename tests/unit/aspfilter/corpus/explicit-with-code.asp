<%@ LANGUAGE="VBSCRIPT" CODEPAGE=1252 %>
<%
Option Explicit
Dim a, b
a = 1 : b = 2
%>
<html><body><p><%= a + b %></p></body></html>
