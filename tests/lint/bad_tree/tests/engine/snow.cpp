// The build passes over a test with such a name.
