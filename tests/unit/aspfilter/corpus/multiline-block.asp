<HTML>
<BODY>
<%
  Dim rs
  Set rs = Nothing
  Response.Write "<TABLE><TR><TD>x</TD></TR></TABLE>"
%>
</BODY>
</HTML>
