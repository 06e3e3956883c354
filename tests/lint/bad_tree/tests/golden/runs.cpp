// The build ignores a golden test whose name does not end in _test.cpp.
