"""Whether the tests notice a mutant."""

import bisect
import concurrent.futures
import json
import pathlib
import queue
import threading
import time

import mutants
from trees import LAST_PROGRAM, PROGRAMS, Tree

# What suites take together that are run in one go, before all slower ones of their program, in seconds. Those are run
# by themselves, so that one that goes on for ever is known by what that suite takes.
QUICK_SECONDS = (1, 4)


def limit(suites):
    """How many seconds of the processor the suites, [(name, seconds)], may take."""
    return 10 + 4 * sum(seconds for _, seconds in suites)


def batches(suites, stem):
    """The same as lists that are run one after the other: most mutants are killed by a quick test, first of all by one
    that is named for their file, which has this stem."""
    first = {name for name, seconds in suites if stem in name and seconds < QUICK_SECONDS[0]}
    quick, slow, total = ([], []), [], 0.0
    for suite in sorted(suites, key=lambda suite: (suite[0] not in first, suite[1])):
        total += suite[1]
        grade = bisect.bisect_left(QUICK_SECONDS, total)
        quick[grade].append(suite) if grade < len(quick) else slow.append([suite])
    return [batch for batch in quick if batch] + slow


class Judge:
    """Builds and tests mutants, each worker in a tree of its own.

    reached: what reach.load() gives. version: what reach.version_of() gives."""

    def __init__(self, checkout, folder, jobs, reached, version):
        self.trees = queue.Queue()
        with concurrent.futures.ThreadPoolExecutor(jobs) as pool:
            trees = list(pool.map(lambda n: Tree(checkout, folder / f"tree{n}"), range(jobs)))
            if not all(pool.map(lambda tree: tree.prepare([*PROGRAMS, LAST_PROGRAM, "Tavrel"]), trees)):
                raise SystemExit(f"The build failed; its output is in {trees[0].log}")
        failing, self.last_seconds = self.unchanged(trees[0], reached, folder / "unchanged.json", version)
        self.reached = [suite for suite in reached if suite[:2] not in failing]
        for program, suite in sorted(failing):
            print(f"left out: {suite} of {program}, which fails without any change", flush=True)
        self.all_trees = trees
        for tree in trees:
            self.trees.put(tree)

    @classmethod
    def unchanged(cls, tree, reached, path, version):
        """What failing() gives, and the seconds of the last program; kept in a file for this version of the sources."""
        kept = json.loads(path.read_text()) if path.exists() else {"version": None}
        if kept["version"] != version:
            failing = cls.failing(tree, reached)
            start = time.monotonic()
            if tree.test(LAST_PROGRAM, [("*", 0)], 600) != "passed":
                raise SystemExit(f"{LAST_PROGRAM} fails without any change; its output is in {tree.log}")
            kept = {"version": version, "failing": sorted(failing), "last_seconds": time.monotonic() - start}
            path.write_text(json.dumps(kept))
        return {tuple(suite) for suite in kept["failing"]}, kept["last_seconds"]

    @staticmethod
    def failing(tree, reached):
        """The suites that fail without any change, and would kill every mutant: they are left out."""
        failing = set()
        for program in PROGRAMS:
            suites = [(suite, seconds) for name, suite, seconds, _ in reached if name == program]
            if tree.test(program, suites, limit(suites)) == "passed":
                continue
            failing |= {(program, suite[0]) for suite in suites if tree.test(program, [suite], limit([suite])) != "passed"}
        return failing

    def suites_for(self, mutant):
        """{program: [(suite, seconds)]}: those that execute the line; where none is seen to, as in children that
        become another program, or where the line is no code, those that execute any line of the file; or all."""
        in_line, in_file, anywhere = {}, {}, {}
        for program, suite, seconds, files in self.reached:
            anywhere.setdefault(program, []).append((suite, seconds))
            if mutant.file in files:
                in_file.setdefault(program, []).append((suite, seconds))
            if mutant.line in files.get(mutant.file, ()):
                in_line.setdefault(program, []).append((suite, seconds))
        return in_line or in_file or anywhere

    def verdict(self, mutant):
        tree = self.trees.get()
        undo = mutants.apply(tree.root, mutant)
        try:
            return self.verdict_in(tree, mutant)
        finally:
            # In this order: a source that is still changed when all of this is interrupted is found so by the next run.
            tree.come_back()
            undo()
            self.trees.put(tree)

    def verdict_in(self, tree, mutant):
        suites = self.suites_for(mutant)
        # First those for which the least is to be compiled: a header may be in every test.
        effort = {program: len(tree.steps([program, "Tavrel"])[0]) for program in suites}
        for program in sorted(suites, key=lambda program: (effort[program], PROGRAMS.index(program))):
            if not tree.build([program, "Tavrel"]):
                return "not compiled"
            for batch in batches(suites[program], pathlib.PurePath(mutant.file).stem.split(".")[0]):
                verdict = tree.test(program, batch, limit(batch))
                if verdict != "passed":
                    return f"killed ({program} {verdict})"
        if not tree.build([LAST_PROGRAM]):
            return "not compiled"
        verdict = tree.test(LAST_PROGRAM, [("*", 0)], limit([("*", self.last_seconds)]))
        return "survived" if verdict == "passed" else f"killed ({LAST_PROGRAM} {verdict})"

    def unchanged_passes(self):
        """Whether the trees, with all changes taken back, still pass: or something of a mutant was left."""
        for tree in self.all_trees:
            for program in PROGRAMS:
                suites = [(suite, seconds) for name, suite, seconds, _ in self.reached if name == program]
                if not tree.build([program, "Tavrel"]) or tree.test(program, suites, limit(suites)) != "passed":
                    return False
        return True


def judge_sample(judge, candidates, count, jobs, verdicts, known):
    """[(mutant, verdict)] of the first `count` candidates that compile. known: gives verdicts that are not asked for
    again. The others are written into `verdicts` as they come."""
    results = []
    lock = threading.Lock()
    waiting = iter(candidates)
    asked = 0  # candidates in work or judged, but for those that did not compile

    def take():
        nonlocal asked
        with lock:
            mutant = next(waiting, None) if asked < count else None
            asked += mutant is not None
            return mutant

    def note(mutant, verdict, is_new, seconds):
        nonlocal asked
        with lock:
            if is_new:
                verdicts.add(mutant, verdict)
            if verdict == "not compiled":
                asked -= 1
                return
            results.append((mutant, verdict))
            if is_new:
                print(f"{len(results):4} {seconds:4.0f} s {verdict:28} {mutant.kind:10} {mutant.name()}", flush=True)

    def work():
        while (mutant := take()) is not None:
            start = time.monotonic()
            verdict = known(mutant)
            is_new = verdict is None
            if is_new:
                verdict = judge.verdict(mutant)
            note(mutant, verdict, is_new, time.monotonic() - start)

    workers = [threading.Thread(target=work) for _ in range(jobs)]
    for worker in workers:
        worker.start()
    for worker in workers:
        worker.join()
    return results
