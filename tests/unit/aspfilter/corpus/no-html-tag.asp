<P>Fragment <%= 1 %> with <%= 2 %></P>
