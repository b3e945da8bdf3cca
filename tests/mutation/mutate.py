"""Makes mutants of the library's sources and counts those that the tests notice: scripts/mutate [OPTIONS]

A seeded sample of small changes is built and tested, several at a time; only what a change can reach is built and
run, the quick tests first, and the first failure ends it. A mutant is killed when a test fails, crashes or hangs.
Survivors are listed, with the reason that tests/mutation/survivors.txt has for them; those that only change speed
are listed apart and not counted. Verdicts are kept as they come: what was interrupted goes on when it is called
again, as long as neither the sources nor the tests change.

Examples:
  scripts/mutate                          300 mutants
  scripts/mutate --count 20 --seed 7
  scripts/mutate --files text/Numbers     mutants of these files only
  scripts/mutate --survivors              the last sample of this seed, of which the survivors alone are judged anew
"""

import argparse
import os
import pathlib
import random
import signal
import sys
import time

import mutants
import reach
import trees
from judge import Judge, judge_sample
from verdicts import Verdicts


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


def candidates_of(checkout, options, verdicts):
    found = [m for m in mutants.all_mutants(checkout) if m.file.startswith(options.files) and ".neon." not in m.file]
    if options.survivors:
        judged = verdicts.judged()
        found = [mutant for mutant in found if mutant.key() in judged]
        if len(found) < len(judged):
            print(f"{len(judged) - len(found)} mutants of that sample are of lines that are no longer there", flush=True)
    random.Random(options.seed).shuffle(found)
    return [mutant for mutant in found if mutant.is_compiled]


def main():
    checkout = pathlib.Path(__file__).resolve().parents[2]
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter, prog="scripts/mutate")
    parser.add_argument("--count", type=int, default=300, help="how many mutants (default: 300)")
    parser.add_argument("--seed", type=int, default=1, help="another number draws another sample (default: 1)")
    parser.add_argument("--files", default="", help="only of files whose path begins so")
    parser.add_argument("--survivors", action="store_true", help="of the last sample of this seed, judge the survivors anew, after tests were added")
    parser.add_argument("--jobs", type=int, default=os.cpu_count(), help="how many at a time (default: as many as processors)")
    options = parser.parse_args()

    folder = checkout / "build" / "mutation"
    folder.mkdir(parents=True, exist_ok=True)
    verdicts = Verdicts(folder / f"verdicts-{options.seed}.jsonl", reach.version_of(checkout))
    candidates = candidates_of(checkout, options, verdicts)
    if not candidates:
        print("There is nothing to change", file=sys.stderr)
        return 2
    start = time.monotonic()
    print(f"{len(candidates)} possible mutants; measuring what the tests reach, and building.", flush=True)
    judge = Judge(checkout, folder, options.jobs, reach.load(checkout, folder, options.jobs), verdicts.version)
    prepared = time.monotonic()
    print(f"Prepared in {prepared - start:.0f} s.", flush=True)
    known = verdicts.if_noticed if options.survivors else verdicts.of_this_version
    before = sum(known(mutant) is not None for mutant in candidates)
    count = len(candidates) if options.survivors else options.count
    results = judge_sample(judge, candidates, count, options.jobs, verdicts, known)
    print(f"Judged in {time.monotonic() - prepared:.0f} s; {before} verdicts are of earlier runs.")
    if not judge.unchanged_passes():
        verdicts.forget()
        print("Without any change the tests fail now: what stands above is worth nothing, and forgotten", file=sys.stderr)
        return 1
    reasons = read_reasons(checkout / "tests" / "mutation" / "survivors.txt")
    return 1 if report(results, reasons) > 0 else 0


def interrupted(number, _):
    trees.end_all()
    print("Interrupted; the verdicts so far are kept, and the same command goes on.", file=sys.stderr, flush=True)
    os._exit(128 + number)


if __name__ == "__main__":
    signal.signal(signal.SIGINT, interrupted)
    signal.signal(signal.SIGTERM, interrupted)
    sys.exit(main())
