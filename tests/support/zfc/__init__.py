"""What the command tests stand on: hosts made of raw records, private runs of the executable, expected documents."""
