"""Every command with every failure of each library call that it makes. ../README.md has the whole."""
