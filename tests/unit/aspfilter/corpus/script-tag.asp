<HTML><HEAD><SCRIPT language="JavaScript">var n = <%= n %>; if (n < 3) { n++; }</SCRIPT></HEAD><BODY>x</BODY></HTML>
