// And over one in such a folder.
