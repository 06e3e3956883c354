// A window of nothing that is known.
