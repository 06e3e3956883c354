// The build ignores a test in an unknown folder.
