"""What the command tests use: hosts made of raw records, private runs of the executable, expected documents."""
