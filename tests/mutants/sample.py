"""Which of all points are planted, and which survivors are known to be equivalent."""

import math

import yaml

EDITS = 0.16  # the share of what the compiler evaluates: each needs a build of its own


def ranked(points, seed):
    """All points in the order in which a sample takes them: by operator in turn, the frequent ones more often."""
    groups = {}
    for point in points:
        groups.setdefault(point.operator, []).append(point)
    order = []
    for members in groups.values():
        members.sort(key=lambda point: (point.rank(seed), point.start))
        weight = math.sqrt(len(members))
        order += [((place + 0.5) / weight, members[place].rank(seed), members[place]) for place in range(len(members))]
    return [entry[-1] for entry in sorted(order, key=lambda entry: entry[:2])]


class Sample:
    """`count` points of each path, edits among them; `more` gives others in place of those that do not compile."""

    def __init__(self, points, wanted, seed):
        self.chosen = []
        self.rest = []
        for path, count in wanted:
            inside = [point for point in points if point.file == path or point.file.startswith(path.rstrip("/") + "/")]
            edits = ranked([point for point in inside if point.form == "edit"], seed)
            others = ranked([point for point in inside if point.form != "edit"], seed)
            number = min(len(edits), round(count * EDITS)) if others else min(len(edits), count)
            self.chosen += others[: count - number] + edits[:number]
            self.rest.append((others[count - number :], edits[number:], path))

    def more(self, point):
        """Another point for one that does not compile, or None."""
        for others, edits, path in self.rest:
            if point.file == path or point.file.startswith(path.rstrip("/") + "/"):
                left = edits if point.form == "edit" else others
                return left.pop(0) if left else None
        return None


class Equivalent:
    def __init__(self, path):
        self.rows = yaml.safe_load(path.read_text()) or [] if path.exists() else []
        self.known = {(row["file"], row["function"], row["was"], row["becomes"]): row["why"] for row in self.rows}

    def why(self, point):
        return self.known.get(point.key)
