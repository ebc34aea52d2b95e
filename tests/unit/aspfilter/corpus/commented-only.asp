<HTML><BODY><!-- <%= gone %> --><P>static</P></BODY></HTML>
