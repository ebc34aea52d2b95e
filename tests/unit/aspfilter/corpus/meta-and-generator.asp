<HTML><HEAD><META name="description" content="site"><TITLE><%= title %></TITLE></HEAD><BODY></BODY></HTML>
