"""The steps that the debug log shows of a run."""


def steps_of(result, *classes):
    """The lines at the level of steps that these classes head, in their order. The run must have been made with that
    level on."""
    heads = tuple(f"{name}::" for name in classes)
    return [message for level, message in result.log if level == 1 and message.startswith(heads)]


def around(name, *inside):
    """What a function logs with these lines between its entry and its exit."""
    return [f"{name}: Entered", *inside, f"{name}: Exiting"]
