// A header in an unknown folder of windows.
