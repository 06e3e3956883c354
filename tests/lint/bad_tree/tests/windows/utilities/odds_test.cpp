// A test of such a window.
