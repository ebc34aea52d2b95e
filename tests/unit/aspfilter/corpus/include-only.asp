<HTML><BODY><!--#include file="footer.inc"--></BODY></HTML>
