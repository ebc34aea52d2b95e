<HTML><BODY><% If a < b Then %><B>less</B><% End If %></BODY></HTML>
