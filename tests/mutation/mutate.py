"""Makes mutants of the library's sources and counts those that the tests notice: scripts/mutate [OPTIONS]

A seeded sample of small changes is built and tested, one at a time; only what a change can reach is built and
run. A mutant is killed when a test fails, crashes or hangs. Survivors are listed, with the reason that
tests/mutation/survivors.txt has for them; those that only change speed are listed apart and not counted.

Examples:
  scripts/mutate                          300 mutants; about an hour on two processors
  scripts/mutate --count 20 --seed 7
  scripts/mutate --files text/Numbers     mutants of these files only
"""

import argparse
import concurrent.futures
import json
import pathlib
import queue
import random
import subprocess
import sys
import threading

import mutants
import reach
from trees import LATER_PROGRAMS, PROGRAMS, Tree


def read_reasons(path):
    """{name of a mutant: (what it changes, reason)}; the lines of the file are described in it."""
    reasons = {}
    entry = None
    for line in path.read_text().split("\n"):
        if line.startswith("#") or not line.strip():
            continue
        if line.startswith("  "):
            what, _, reason = line.strip().partition(": ")
            reasons[entry] = (what, reason)
        else:
            entry = line
    return reasons


class Judge:
    """Builds and tests mutants, each worker in a tree of its own."""

    def __init__(self, checkout, folder, jobs, reached):
        self.reached = reached
        self.trees = queue.Queue()
        with concurrent.futures.ThreadPoolExecutor(jobs) as pool:
            trees = list(pool.map(lambda n: Tree(checkout, folder / f"tree{n}"), range(jobs)))
            if not all(pool.map(lambda tree: tree.prepare([*PROGRAMS, *LATER_PROGRAMS]), trees)):
                raise SystemExit(f"The build failed; its output is in {trees[0].log}")
        for tree in trees:
            self.trees.put(tree)
        self.later_seconds = 300

    def verdict(self, mutant):
        tree = self.trees.get()
        undo = mutants.apply(tree.root, mutant)
        try:
            return self.verdict_in(tree, mutant)
        finally:
            undo()
            self.trees.put(tree)

    def verdict_in(self, tree, mutant):
        suites = {}
        for program, suite, seconds, files in self.reached:
            if mutant.line in files.get(mutant.file, ()):
                suites.setdefault(program, []).append((suite, seconds))
        if not tree.build(["Tavrel"]):
            return "not compiled"
        for program in PROGRAMS:
            if program not in suites:
                continue
            if not tree.build([program]):
                return "not compiled"
            seconds = 20 + 4 * sum(seconds for _, seconds in suites[program])
            verdict = tree.test(program, [suite for suite, _ in suites[program]], seconds)
            if verdict != "passed":
                return f"killed ({program} {verdict})"
        for program in LATER_PROGRAMS:
            if not tree.build([program]):
                return "not compiled"
            if tree.test(program, ["*"], self.later_seconds) != "passed":
                return f"killed ({program})"
        return "survived" if suites else "survived (no test reaches it)"


def judge_sample(judge, candidates, count, jobs):
    """The verdicts of the first `count` candidates that compile."""
    results = []
    lock = threading.Lock()
    waiting = iter(candidates)

    def work():
        while True:
            with lock:
                mutant = next(waiting, None)
                if mutant is None or len(results) >= count:
                    return
            verdict = judge.verdict(mutant)
            if verdict == "not compiled":
                continue
            with lock:
                results.append((mutant, verdict))
                print(f"{len(results):4} {verdict:28} {mutant.kind:10} {mutant.name()}", flush=True)

    workers = [threading.Thread(target=work) for _ in range(jobs)]
    for worker in workers:
        worker.start()
    for worker in workers:
        worker.join()
    return results[:count]


def report(results, reasons):
    """Prints the share and the survivors; returns the number of those without a reason."""
    survivors = [mutant for mutant, verdict in results if verdict.startswith("survived")]
    speed = [m for m in survivors if reasons.get(m.name(), ("",))[0] == "speed"]
    counted = len(results) - len(speed)
    killed = len(results) - len(survivors)
    print(f"\n{killed} of {counted} mutants killed: {100 * killed / max(counted, 1):.1f} %"
          f" ({len(speed)} more only change speed)")  # fmt: skip
    unexplained = 0
    for mutant in survivors:
        what, reason = reasons.get(mutant.name(), ("unexplained", ""))
        unexplained += what == "unexplained"
        print(f"\n{mutant.file}:{mutant.line}: {mutant.kind}\n- {mutant.before}\n+ {mutant.after or '(nothing)'}\n  {what}: {reason}")
    return unexplained


def main():
    checkout = pathlib.Path(__file__).resolve().parents[2]
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter, prog="scripts/mutate")
    parser.add_argument("--count", type=int, default=300, help="how many mutants (default: 300)")
    parser.add_argument("--seed", type=int, default=1, help="another number draws another sample (default: 1)")
    parser.add_argument("--files", default="", help="only of files whose path begins so")
    parser.add_argument("--jobs", type=int, default=2, help="how many at a time (default: 2)")
    options = parser.parse_args()

    folder = checkout / "build" / "mutation"
    folder.mkdir(parents=True, exist_ok=True)
    version = subprocess.run(["git", "rev-parse", "HEAD"], cwd=checkout, check=True, capture_output=True, text=True).stdout.strip()
    # Files for other processors are not compiled here.
    candidates = [m for m in mutants.all_mutants(checkout) if m.file.startswith(options.files) and ".neon." not in m.file]
    if not candidates:
        print(f'There is nothing to change in "{options.files}"', file=sys.stderr)
        return 2
    random.Random(options.seed).shuffle(candidates)
    print(f"{len(candidates)} possible mutants; measuring what the tests reach, and building.", flush=True)
    judge = Judge(checkout, folder, options.jobs, reach.load(checkout, folder, version))
    results = judge_sample(judge, candidates, options.count, options.jobs)
    rows = [{"name": m.name(), "line": m.line, "kind": m.kind, "verdict": verdict} for m, verdict in results]
    (folder / f"results-{options.seed}.json").write_text(json.dumps(rows, indent=1))
    reasons = read_reasons(checkout / "tests" / "mutation" / "survivors.txt")
    return 1 if report(results, reasons) > 0 else 0


if __name__ == "__main__":
    sys.exit(main())
