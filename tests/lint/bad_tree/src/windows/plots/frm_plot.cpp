// Neither a window nor snake_case that says so.
