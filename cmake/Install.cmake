# Placeholder until the installed layout lands.
