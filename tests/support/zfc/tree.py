"""The table of the command tree, tests/commands/command_tree.yaml."""

import yaml

from .documents import COMMANDS

TREE = yaml.safe_load((COMMANDS / "command_tree.yaml").read_text())
