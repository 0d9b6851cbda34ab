"""One run of scripts/mutants, from the sample to the report."""

import json
import pickle
import queue
import random
import threading
import time
from dataclasses import asdict

import points
import programs
import report
import sample
import schemata
import tree

SHORT = 20  # seconds that any test may take, and ten times what it took without a defect


def say(text):
    print(f"{time.strftime('%H:%M:%S')} {text}", flush=True)


class Hunt:
    def __init__(self, root, options, wanted):
        self.root = root
        self.options = options
        self.wanted = wanted
        self.work = root / "build" / "mutants"
        self.work.mkdir(parents=True, exist_ok=True)
        self.tree = tree.Tree(root, self.work, options.jobs)
        self.equivalent = sample.Equivalent(root / "tests/mutants/equivalent.yaml")
        self.state_file = self.work / "state.json"
        self.unfit_file = self.work / "unfit.json"  # what was found not to compile
        self.lock = threading.Lock()
        self.objects = {}

    def run(self):
        self.tree.copy()
        self.tree.configure()
        self.unit_names, self.targets = self.tree.targets()
        if not (self.load() or self.options.again):
            self.plant()
        self.tests_reach()
        if self.options.only != "edits":
            self.hunt_choices()
        if self.options.only != "choices":
            self.hunt_edits()
        return report.write(self, say)

    # State

    def load(self):
        """Goes on with the last run when it was for the same sample of the same sources."""
        if not self.state_file.exists():
            return False
        state = json.loads(self.state_file.read_text())
        if not self.options.again and state["for"] != self.asked():
            return False
        self.numbered = {int(number): points.Point(**point) for number, point in state["points"].items()}
        self.bodies = {int(number): body for number, body in state["bodies"].items()}
        self.tables = state["tables"]
        self.results = {int(number): result for number, result in state["results"].items()}
        self.stillborn = state["stillborn"]
        self.for_what = state["for"]
        if state["for"]["sources"] != self.asked()["sources"]:
            raise SystemExit("mutants: the sources have changed since the last run: run without --again")
        if self.options.again:
            self.results = {number: result for number, result in self.results.items() if result["end"] == "killed"}
        for number, point in self.numbered.items():
            if why := self.equivalent.why(point):
                self.results[number] = {"end": "equivalent", "why": why}
        say("go on with the last run" if not self.options.again else "the survivors of the last run again")
        self.make_all()
        return True

    def save(self):
        state = {
            "for": self.for_what,
            "points": {number: asdict(point) for number, point in self.numbered.items()},
            "bodies": self.bodies,
            "tables": self.tables,
            "results": self.results,
            "stillborn": self.stillborn,
        }
        part = self.state_file.with_suffix(".part")
        part.write_text(json.dumps(state))
        part.rename(self.state_file)

    def asked(self):
        sources = schemata.digest((self.root / name).read_bytes() for name in self.tree.names)
        return {"seed": self.options.seed, "wanted": [list(entry) for entry in self.wanted], "sources": sources}

    # Planting

    def plant(self):
        say("read the sources")
        self.for_what = self.asked()
        found, bodies, self.tables = self.tree.find()
        chosen = sample.Sample(found, self.wanted, self.options.seed)
        self.numbered = dict(enumerate(chosen.chosen, 1))
        first_body = 100_000
        self.bodies = dict(enumerate(bodies, first_body))
        self.results = {}
        self.stillborn = 0
        unfit = set(map(tuple, json.loads(self.unfit_file.read_text()))) if self.unfit_file.exists() else set()
        while known := [number for number, point in self.numbered.items() if point.key in unfit]:
            self.replace(known, chosen)
        say(f"{len(found)} points, {len(bodies)} functions; planted: {len(self.numbered)}")
        for _ in range(12):
            self.write()
            say("build")
            output = self.tree.make(self.targets)
            if not output:
                break
            self.drop(output, chosen)
        else:
            raise SystemExit("mutants: the build does not come to an end")
        for number, point in self.numbered.items():
            if why := self.equivalent.why(point):
                self.results[number] = {"end": "equivalent", "why": why}
        self.save()

    def marks(self):
        """Functions are marked with the numbers after the defects'."""
        base = 4000
        return {base + index: body for index, (_, body) in enumerate(sorted(self.bodies.items())) if body["offset"] is not None}

    def write(self):
        self.tree.write({n: point for n, point in self.numbered.items() if point.form != "edit"}, self.marks())

    def drop(self, output, chosen):
        """Takes out what does not compile, and plants others in its place."""
        places = self.tree.errors(output)
        bad = {
            number
            for number, point in self.numbered.items()
            if point.form != "edit" and any(point.file == file and point.line <= line <= point.end_line for file, line in places)
        }
        marked = {
            number
            for number, body in self.bodies.items()
            if not bad and any(body["file"] == file for file, _ in places)
        }
        (self.work / "build.log").write_text(output)
        if not bad and not marked:
            raise SystemExit(f"mutants: the build fails, see {self.work / 'build.log'}")
        unfit = json.loads(self.unfit_file.read_text()) if self.unfit_file.exists() else []
        self.unfit_file.write_text(json.dumps([*unfit, *(self.numbered[number].key for number in bad)]))
        self.replace(sorted(bad), chosen)
        for number in marked:
            self.bodies[number]["offset"] = None
        say(f"{len(bad)} do not compile{', functions without a mark: ' + str(len(marked)) if marked else ''}")

    def replace(self, numbers, chosen):
        for number in numbers:
            point = self.numbered.pop(number)
            self.stillborn += 1
            if other := chosen.more(point):
                self.numbered[max(self.numbered) + 1] = other

    def make_all(self):
        self.write()
        say("build")
        output = self.tree.make(self.targets)
        if output:
            (self.work / "build.log").write_text(output)
            raise SystemExit(f"mutants: the build fails, see {self.work / 'build.log'}")

    # Which test comes by what

    def tests_reach(self):
        """For each test the numbers it comes by, and how long it took; kept between runs, by the text of its file."""
        self.size = 4000 + len(self.bodies) + 1
        kept_in = self.work / "reach.pickle"
        kept = pickle.loads(kept_in.read_bytes()) if kept_in.exists() else {}
        self.build_key = schemata.digest(
            [json.dumps([self.for_what, sorted(self.numbered), sorted(self.marks())]).encode()]
        )
        self.reach = {}
        self.units = programs.UnitTests(self.tree.sources, self.tree.build, self.unit_names)
        self.servers = [
            programs.CommandTests(self.root, self.tree.build, self.work / f"out-{number}") for number in range(self.options.jobs)
        ]
        keys = self.test_keys()
        for test, key in keys.items():
            if test in kept and kept[test]["key"] == key and not kept[test]["failed"]:
                self.reach[test] = kept[test]
        self.all_tests = list(keys)
        missing = [test for test in self.few_of_each(keys) if test not in self.reach]
        say(f"{len(keys)} tests; what {len(missing)} of them come by")
        random.Random(1).shuffle(missing)
        parts = [missing[at : at + 40] for at in range(0, len(missing), 40)]
        self.side_by_side(parts, lambda worker, part: self.reach_of(worker, part, keys))
        kept_in.write_bytes(pickle.dumps(self.reach))
        failed = [test for test, reach in self.reach.items() if reach["failed"]]
        for test in failed:
            say(f"left out, it fails without a defect: {test}: {self.reach[test]['failed'][-200:]!r}")
        self.by_number = {}
        for test, reach in self.reach.items():
            if not reach["failed"]:
                for number in reach["seen"]:
                    self.by_number.setdefault(number, []).append(test)
        self.kills = {}

    def few_of_each(self, tests):
        """Unit cases, and of each command test some of its rows: the others come by much the same."""
        counts = {}
        few = []
        for test in sorted(tests, key=lambda test: schemata.digest([test.encode()])):
            counts[base(test)] = counts.get(base(test), 0) + 1
            if "::" not in test or counts[base(test)] <= self.options.few:
                few.append(test)
        return few

    def others(self, point, number):
        """The tests that were not watched, and have its file's word, or other rows that come by the function of the point."""
        inside = [
            (body["offset"], mark) for mark, body in self.marks().items()
            if body["file"] == point.file and body["offset"] <= point.start
        ]  # fmt: skip
        near = set(self.by_number.get(number, ())) | set(self.by_number.get(max(inside)[1], ()) if inside else ())
        bases = {base(test) for test in near if "::" in test}
        word = word_of(point)
        unwatched = (test for test in self.all_tests if "::" in test and test not in self.reach)
        return [test for test in unwatched if base(test) in bases or word in test]

    def test_keys(self):
        """Unit cases change with their program, command tests with their file and the support."""
        support = schemata.digest(path.read_bytes() for path in sorted((self.root / "tests/support/zfc").glob("*.py")))
        keys = {}
        for case in self.units.cases():
            name = case.partition(":")[0]
            stamp = (self.tree.build / "tests" / name).stat().st_mtime_ns
            keys[case] = f"{self.build_key} {stamp}"
        texts = {}
        for test in self.servers[0].tests:
            file = test.partition("::")[0]
            if file not in texts:
                texts[file] = schemata.digest([(self.root / "tests/commands" / file).read_bytes()])
            keys[test] = f"{self.build_key} {support} {texts[file]}"
        return keys

    def reach_of(self, worker, part, keys):
        seen = self.tree.build / f"seen-{worker}"
        seen.write_bytes(bytes(self.size))
        env = {"ZFC_MUTANT_SEEN": str(seen)}
        for case in part:
            if "::" in case:
                continue
            started = time.monotonic()
            failed = self.units.run(case.partition(":")[0], [case], env, 120)
            content = seen.read_bytes()
            seen.write_bytes(bytes(self.size))
            numbers = [number for number, byte in enumerate(content) if byte]
            self.note(case, keys, failed, time.monotonic() - started, numbers)
        tests = [test for test in part if "::" in test]
        while tests:
            answers = self.servers[worker].run(tests, env, stop=False, limit=300)
            for answer in answers:
                numbers = [int(number) for number in answer["seen"].split()]
                self.note(answer["test"], keys, answer["failed"], answer.get("took", 0), numbers)
            done = {answer["test"] for answer in answers}
            if not done:
                raise SystemExit(f"mutants: no answer for {tests[0]}")
            tests = [test for test in tests if test not in done]

    def note(self, test, keys, failed, took, numbers):
        with self.lock:
            self.reach[test] = {"key": keys[test], "failed": failed, "took": took, "seen": numbers}

    def side_by_side(self, jobs, work):
        """Runs work(worker, job) for all jobs, a worker each on its own thread."""
        waiting = queue.SimpleQueue()
        for job in jobs:
            waiting.put(job)
        troubles = []

        def loop(worker):
            try:
                while not troubles:
                    work(worker, waiting.get_nowait())
            except queue.Empty:
                pass
            except BaseException as trouble:  # noqa: BLE001: it is raised where the threads are joined
                troubles.append(trouble)

        threads = [threading.Thread(target=loop, args=(worker,)) for worker in range(self.options.jobs)]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
        if troubles:
            raise troubles[0]

    # Hunting

    def order(self, tests, point):
        """The quickest way to a failure first: tests of files that found defects near by, then those that do least else."""
        word = word_of(point)

        def place(test):
            kills = self.kills.get((point.file, test.partition("::")[0]), 0)
            reach = self.reach.get(test, {"seen": (), "took": 0})
            return (word not in test, -min(kills, 3), len(reach["seen"]), reach["took"])

        return sorted(tests, key=place)

    def hunt_choices(self):
        waiting = [n for n, point in self.numbered.items() if n not in self.results and not self.needs_edit(n, point)]
        say(f"{len(waiting)} defects to hunt in one build")
        self.costly_last(waiting)
        self.side_by_side(waiting, self.hunt_one)

    def costly_last(self, waiting):
        waiting.sort(key=lambda number: len(self.by_number.get(number, ())))

    def hunt_one(self, worker, number):
        point = self.numbered[number]
        tests = self.order(self.by_number.get(number, ()), point)
        env = {"ZFC_MUTANT": str(number)}
        killer = self.first_failure(worker, point, tests, env)
        if not killer:
            others = self.order(self.others(point, number), point)
            tests += others
            killer = self.first_failure(worker, point, others, env)
        self.finish(number, killer, tests)

    def first_failure(self, worker, point, tests, env):
        """The test that finds the defect, or None."""
        by_program = {}
        for test in tests:
            if "::" not in test:
                by_program.setdefault(test.partition(":")[0], []).append(test)
        for name, cases in by_program.items():
            limit = SHORT + 2 * sum(self.reach[case]["took"] for case in cases)  # each took a process of its own
            failed = self.units.run(name, cases, env, limit)
            if failed and (failed == "time" or self.units.run(name, cases, env, limit)):
                return f"{name}:{failed}"
        commands = [test for test in tests if "::" in test]
        durations = {test: self.took(test) for test in commands}
        if self.options.limit:
            commands = list(within(commands, durations, self.options.limit))
        if not commands:
            return None
        while commands:
            answers = self.servers[worker].run(commands, env, durations, limit=SHORT)
            failed = [answer["test"] for answer in answers if answer["failed"]]
            if not failed:
                return None
            # Not because the machine was busy: it passes without the defect; an edit, which is always on, fails again.
            again = self.servers[worker].run(failed, {}, durations, limit=SHORT)[0]["failed"]
            if bool(again) != bool(env):
                near = (point.file, failed[0].partition("::")[0])
                self.kills[near] = self.kills.get(near, 0) + 1
                return failed[0]
            commands = commands[commands.index(failed[0]) + 1 :]
        return None

    def took(self, test):
        return self.reach[test]["took"] if test in self.reach else 0.1

    def finish(self, number, killer, tests):
        with self.lock:
            point = self.numbered[number]
            if killer:
                self.results[number] = {"end": "killed", "by": killer}
            else:
                self.results[number] = {"end": "survived" if tests else "unreached", "tests": tests[:12], "count": len(tests)}
                took = sum(self.took(test) for test in tests if "::" in test)
                self.results[number]["all"] = not self.options.limit or took < self.options.limit
                say(f"{self.results[number]['end']} {number} {point.file}:{point.line} {point.was} -> {point.becomes}")
            done = len(self.results)
            if done % 25 == 0 or not killer:
                self.save()
                say(f"{done} of {len(self.numbered)} done")

    # What the compiler evaluates

    def users_of(self, point):
        """The numbers of the functions that use the table or constant of a point, by the names in their texts."""
        names = {point.function.rpartition("::")[2]}
        while True:
            more = {short for _, _, short, inside in self.tables if short not in names and names & set(inside)}
            if not more:
                break
            names |= more
        marks = self.marks()
        direct = [number for number, body in marks.items() if names & set(body["names"])]
        if not direct:  # a consteval function, or one without a mark: all of its file
            direct = [number for number, body in marks.items() if body["file"] == point.file]
        return direct

    def hunt_edits(self):
        waiting = [n for n, point in self.numbered.items() if n not in self.results and self.needs_edit(n, point)]
        say(f"{len(waiting)} defects to hunt by a build each")
        waiting.sort(key=lambda number: self.builds_of(self.numbered[number].file))
        for number in waiting:
            self.hunt_edit(number)
        if waiting:
            self.make_all()

    def builds_of(self, file):
        """How many objects a change of the file makes anew."""
        if not self.objects:
            listed = self.tree.dependencies()
            for inside in listed:
                for name in inside:
                    self.objects[name] = self.objects.get(name, 0) + 1
        return self.objects.get(file, 0)

    def needs_edit(self, number, point):
        """Also what only the compiler has come by: a constexpr function that makes a table."""
        return point.form == "edit" or (point.constant and not self.by_number.get(number))

    def hunt_edit(self, number):
        point = self.numbered[number]
        path = self.tree.sources / point.file
        before = path.read_bytes()
        whole = (self.root / point.file).read_bytes().decode("latin-1")
        mutated = {"statement": "", "jump": ";"}.get(point.form, f"({point.mutated})" if point.form != "edit" else point.mutated)
        edited = whole[: point.start] + mutated + whole[point.end :]
        path.write_bytes(edited.encode("latin-1"))
        times = {name: (self.tree.build / "tests" / name).stat().st_mtime_ns for name in self.unit_names}
        try:
            if self.tree.make(self.targets, keep_going=False):
                self.results[number] = {"end": "killed", "by": "the compiler"}
                return
            built = [n for n in self.unit_names if (self.tree.build / "tests" / n).stat().st_mtime_ns != times[n]]
            tests = {test for mark in self.users_of(point) for test in self.by_number.get(mark, ())}
            tests |= {test for test in self.reach if "::" not in test and test.partition(":")[0] in built}
            tests = self.order([test for test in tests if not self.reach[test]["failed"]], point)
            killer = self.first_failure(0, point, tests, {})
            if not killer:
                others = self.order({test for mark in self.users_of(point) for test in self.others(point, mark)}, point)
                killer = self.first_failure(0, point, others, {})
                tests += others
            self.finish(number, killer, tests)
        finally:
            path.write_bytes(before)


def word_of(point):
    """What a test of the file most likely has in its name: "fec" of physical_port_fec_cmds_processor.cpp."""
    stem = point.file.rpartition("/")[2].partition(".")[0]
    return stem.removeprefix("physical_port_").removeprefix("adapter_").partition("_cmds")[0]


def base(test):
    """A command test without its row."""
    return test.partition("[")[0]


def within(tests, durations, limit):
    for test in tests:
        if limit <= 0:
            return
        limit -= durations[test]
        yield test
