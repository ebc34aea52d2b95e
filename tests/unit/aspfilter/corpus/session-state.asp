<%@ EnableSessionState=False %>
<HTML><BODY><% Response.Write "no session" %></BODY></HTML>
