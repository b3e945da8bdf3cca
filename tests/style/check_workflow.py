"""Whether the workflow for forks runs the project's two scripts and nothing else: what it says anybody can run.

Usage: check_workflow.py CHECKOUT
"""
import re
import sys

import sources

FOLDER = ".github/workflows/"
SCRIPTS = {"scripts/test", "scripts/soak"}
STEP = re.compile(r"^\s*(?:- )?run:[ \t]*(.*)$", re.MULTILINE)


def faults(workflows):
    runs = [(path, step) for path, text in sorted(workflows.items()) for step in STEP.findall(text)]
    found = [f"{path}: runs more than a script: {step}" for path, step in runs if step not in SCRIPTS]
    return found + [f"{FOLDER}: nothing runs {script}" for script in sorted(SCRIPTS - {step for _, step in runs})]


def main():
    found = faults(sources.read_all(sys.argv[1], lambda path: path.startswith(FOLDER)))
    print("\n".join(found) or "the workflow runs the two scripts")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
