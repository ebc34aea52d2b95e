<HTML><BODY><P>Plain page, no script.</P></BODY></HTML>
