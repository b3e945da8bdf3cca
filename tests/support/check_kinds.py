"""Fails unless tests of every kind are registered: check_kinds.py BUILD KIND...

A test whose tools are missing is not registered, with a message that nobody reads. KIND is how names of tests
begin."""

import json
import subprocess
import sys


def main():
    build, kinds = sys.argv[1], sys.argv[2:]
    answer = subprocess.run(["ctest", "--show-only=json-v1"], cwd=build, check=True, capture_output=True)
    names = [test["name"] for test in json.loads(answer.stdout)["tests"]]
    missing = [kind for kind in kinds if not any(name.startswith(kind) for name in names)]
    if missing:
        print(f"No test of these is registered, for want of a program or a library (scripts/test installs all): {' '.join(missing)}")
    return 1 if missing or not kinds else 0


if __name__ == "__main__":
    sys.exit(main())
