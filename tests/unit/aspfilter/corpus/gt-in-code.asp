<HTML><BODY><DIV><% If a > b Then %>more<% End If %></DIV></BODY></HTML>
