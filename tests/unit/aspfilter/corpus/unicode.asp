<HTML><BODY><P>Räksmörgås åäö € <%= "été" %></P></BODY></HTML>
