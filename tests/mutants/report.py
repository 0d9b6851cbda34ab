"""What a run of scripts/mutants says at its end."""

ENDS = ("killed", "survived", "unreached", "equivalent")


def write(hunt, say):
    """The table by folder and the survivors, also into build/mutants/report.md; 1 when a survivor is not listed."""
    lines = table(hunt.numbered, hunt.results)
    lines.append(f"{hunt.stillborn} more did not compile, and others were planted for them.")
    survivors = [n for n, result in sorted(hunt.results.items()) if result["end"] in ("survived", "unreached")]
    for number in sorted(survivors, key=lambda number: (hunt.numbered[number].file, hunt.numbered[number].line)):
        lines += survivor(number, hunt.numbered[number], hunt.results[number])
    text = "\n".join(lines) + "\n"
    (hunt.work / "report.md").write_text(text)
    print(text)
    return 1 if survivors else 0


def table(numbered, results):
    rows = {}
    for number, point in numbered.items():
        for name in (point.folder, "all"):
            row = rows.setdefault(name, dict.fromkeys(("planted", *ENDS), 0))
            row["planted"] += 1
            if number in results:
                row[results[number]["end"]] += 1
    lines = ["| Folder | Planted | Killed | Survived | Unreached | Equivalent |", "|---|---|---|---|---|---|"]
    for name, row in sorted(rows.items(), key=lambda entry: (entry[0] == "all", entry[0])):
        lines.append(f"| {name} | " + " | ".join(str(row[column]) for column in ("planted", *ENDS)) + " |")
    return lines


def survivor(number, point, result):
    lines = ["", f"{number}: {point.file}:{point.line} {point.function} ({point.operator}): {result['end']}"]
    lines += [f"  - {point.was}", f"  + {point.becomes}"]
    if result.get("tests"):
        tried = "" if result["all"] else " (not all of them were run: --limit)"
        lines.append(f"  {result['count']} tests come by it{tried}: " + ", ".join(result["tests"][:4]))
    return lines
