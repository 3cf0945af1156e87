"""One attempt at one source: the program at work in a folder of its own, what is recorded of it, and moves that
never replace. The inbox and the farm are built on it."""
