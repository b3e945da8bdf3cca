"""Makes mutants of the library's sources and counts those that the tests notice: scripts/mutate [OPTIONS]

A seeded sample of small changes is built and tested, several at a time; only what a change can reach is built and
run, the quick tests first, and the first failure ends it. A mutant is killed when a test fails, crashes or hangs.
Survivors are listed, with the reason that tests/mutation/survivors.txt has for them; those that only change speed
are listed apart and not counted.

Examples:
  scripts/mutate                          300 mutants
  scripts/mutate --count 20 --seed 7
  scripts/mutate --files text/Numbers     mutants of these files only
  scripts/mutate --survivors              those alone that survived the last time with this seed
"""

import argparse
import json
import os
import pathlib
import random
import sys
import time

import mutants
import reach
from judge import Judge, judge_sample


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


def report(results, reasons):
    """Prints the share and the survivors; returns the number of those without a reason."""
    survivors = [mutant for mutant, verdict in results if verdict.startswith("survived")]
    speed = [m for m in survivors if reasons.get(m.name(), ("",))[0] == "speed"]
    counted = len(results) - len(speed)
    killed = len(results) - len(survivors)
    unexplained = 0
    for mutant in survivors:
        what, reason = reasons.get(mutant.name(), ("unexplained", ""))
        unexplained += what == "unexplained"
        print(f"\n{mutant.file}:{mutant.line}: {mutant.kind}\n- {mutant.before}\n+ {mutant.after or '(nothing)'}\n  {what}: {reason}")
    print(f"\n{killed} of {counted} mutants killed: {100 * killed / max(counted, 1):.1f} %"
          f" ({len(speed)} more only change speed; {unexplained} survivors without a reason)")  # fmt: skip
    return unexplained


def candidates_of(checkout, folder, options):
    # Files for other processors are not compiled here.
    found = [m for m in mutants.all_mutants(checkout) if m.file.startswith(options.files) and ".neon." not in m.file]
    if options.survivors:
        rows = json.loads((folder / f"results-{options.seed}.json").read_text())
        survived = {row["name"] for row in rows if row["verdict"].startswith("survived")}
        found = [mutant for mutant in found if mutant.name() in survived]
    random.Random(options.seed).shuffle(found)
    return found


def main():
    checkout = pathlib.Path(__file__).resolve().parents[2]
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter, prog="scripts/mutate")
    parser.add_argument("--count", type=int, default=300, help="how many mutants (default: 300)")
    parser.add_argument("--seed", type=int, default=1, help="another number draws another sample (default: 1)")
    parser.add_argument("--files", default="", help="only of files whose path begins so")
    parser.add_argument("--survivors", action="store_true", help="only those that survived the last time with this seed")
    parser.add_argument("--jobs", type=int, default=os.cpu_count(), help="how many at a time (default: as many as processors)")
    options = parser.parse_args()

    folder = checkout / "build" / "mutation"
    folder.mkdir(parents=True, exist_ok=True)
    candidates = candidates_of(checkout, folder, options)
    if not candidates:
        print("There is nothing to change", file=sys.stderr)
        return 2
    start = time.monotonic()
    print(f"{len(candidates)} possible mutants; measuring what the tests reach, and building.", flush=True)
    judge = Judge(checkout, folder, options.jobs, reach.load(checkout, folder, options.jobs))
    prepared = time.monotonic()
    print(f"Prepared in {prepared - start:.0f} s.", flush=True)
    results = judge_sample(judge, candidates, options.count, options.jobs)
    print(f"Judged in {time.monotonic() - prepared:.0f} s.")
    if not judge.unchanged_passes():
        print("Without any change the tests fail now: what stands above is worth nothing", file=sys.stderr)
        return 1
    rows = [{"name": m.name(), "line": m.line, "kind": m.kind, "verdict": verdict} for m, verdict in results]
    (folder / f"results-{options.seed}.json").write_text(json.dumps(rows, indent=1))
    reasons = read_reasons(checkout / "tests" / "mutation" / "survivors.txt")
    return 1 if report(results, reasons) > 0 else 0


if __name__ == "__main__":
    sys.exit(main())
