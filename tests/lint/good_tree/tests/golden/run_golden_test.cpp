// A golden file is compared by a program of its own.
