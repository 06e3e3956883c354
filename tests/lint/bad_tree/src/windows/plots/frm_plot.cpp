// Begins like the name of a window, but is not one.
