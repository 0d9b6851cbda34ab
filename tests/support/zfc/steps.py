"""The steps that the debug log shows of a run; Result of runner.py reads them."""


def around(name, *inside):
    """What a function logs with these lines between its entry and its exit."""
    return [f"{name}: Entered", *inside, f"{name}: Exiting"]
