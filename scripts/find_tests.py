"""Finds what tests are meant, and what has to be built for them: find_tests.py BUILD NAME...

A name is a test program, a test's source file, a suite, a test ("Suite.Test"), or one that CTest runs
without GoogleTest; case does not count. Prints a line of targets and a regular expression for CTest; ends
with 2, and the names that are near, when there is no such test."""

import difflib
import json
import pathlib
import re
import subprocess
import sys

TEST = re.compile(r"^\s*TEST(?:_F|_P)?\(\s*(\w+),\s*(\w+)\)", re.MULTILINE)


def sources_in(source):
    """Those that are compiled as this one: itself, or several that CMake has joined."""
    if source.parent.name != "Unity":
        return [source]
    return [pathlib.Path(path) for path in re.findall(r'^#include "(.*)"$', source.read_text(), re.MULTILINE)]


def programs_by_source(build):
    """Every test source of ours, and the programs that it is compiled for."""
    programs = {}
    for command in json.loads((build / "compile_commands.json").read_text()):
        found = re.search(r" -o tests/\S*CMakeFiles/(\w+)\.dir/", command["command"])
        if found:
            for source in sources_in(pathlib.Path(command["file"])):
                programs.setdefault(source, set()).add(found[1])
    return programs


def other_tests(build):
    """Those that are no tests of GoogleTest, each with the files of the build that it needs."""
    answer = subprocess.run(["ctest", "--show-only=json-v1"], cwd=build, check=True, capture_output=True)
    tests = {}
    for test in json.loads(answer.stdout)["tests"]:
        command = list(test.get("command", []))
        if not command or any(argument.startswith("--gtest_filter=") for argument in command):
            continue
        for entry in test.get("properties", []):
            if entry["name"] == "REQUIRED_FILES":
                command += entry["value"]
        inside = [pathlib.Path(argument) for argument in command if argument.startswith(f"{build}/")]
        tests[test["name"]] = [str(path.relative_to(build)) for path in inside]
    return tests


def all_names(build):
    """Every name that may be asked for: (targets, regular expressions)."""
    names = {}

    def add(name, targets, expressions):
        known = names.setdefault(name.lower(), (name, set(), set()))
        known[1].update(targets)
        known[2].update(expressions)

    for source, programs in programs_by_source(build).items():
        for suite, test in TEST.findall(source.read_text()):
            # A suite with parameters has something before it, and its tests something behind them. CTest's expressions
            # know no \w.
            whole = rf"^([A-Za-z0-9_]+/)?{suite}(/[A-Za-z0-9_]+)?\."
            add(f"{suite}.{test}", programs, {rf"{whole}{test}(/|$)"})
            add(suite, programs, {whole})
            add(source.stem, programs, {whole})
            for program in programs:
                add(program, {program}, {whole})
    for test, targets in other_tests(build).items():
        add(test, targets, {f"^{re.escape(test)}$"})
        add(test.partition(".")[0], targets, {f"^{re.escape(test)}$"})
    return names


def main():
    build = pathlib.Path(sys.argv[1]).resolve()
    names = all_names(build)
    targets, expressions = set(), set()
    for name in sys.argv[2:]:
        key = re.sub(r"\.cpp$", "", name.rpartition("/")[2]).lower()
        if key not in names:
            near = difflib.get_close_matches(key, names, n=5) or [n for n in names if key in n][:5]
            print(f'There is no test, suite, test program or test file "{name}".', file=sys.stderr)
            if near:
                print("Near: " + ", ".join(names[match][0] for match in near), file=sys.stderr)
            return 2
        targets |= names[key][1]
        expressions |= names[key][2]
    print(" ".join(sorted(targets)))
    print("|".join(sorted(expressions)))
    return 0


if __name__ == "__main__":
    sys.exit(main())
