// The build ignores a test whose name does not end in _test.cpp.
