// A window outside the folders for windows.
