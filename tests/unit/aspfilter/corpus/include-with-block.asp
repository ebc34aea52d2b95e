<HTML><BODY>
<!--#include file="header.inc"-->
<P><%= Date %></P>
<!-- #include virtual="/inc/footer.inc" -->
</BODY></HTML>
