"""A name finds the tests that it means, and what is built for them: find_tests_test.py CHECKOUT

Asked in a build of three programs, one of them from joined sources; what it answers is given to CTest."""

import json
import pathlib
import subprocess
import sys
import tempfile

SOURCES = {
    "PlainTest.cpp": "TEST(Plain, Holds) {}\nTEST_F(Plain, HoldsTwice) {}\nTEST(PlainTexts, Hold) {}\n",
    "PathsTest.cpp": "TEST_P(Paths, Agree) {}\nINSTANTIATE_TEST_SUITE_P(All, Paths, Values(1));\n",
    "SharedTest.cpp": "TEST(Shared, Holds) {}\n",
}
PROGRAMS = {"unit_tests": ["PlainTest.cpp", "PathsTest.cpp"], "first_test": ["SharedTest.cpp"], "second_test": ["SharedTest.cpp"]}
# As gtest_discover_tests() registers them, and two that are no tests of GoogleTest.
TESTS = ["Plain.Holds", "Plain.HoldsTwice", "PlainTexts.Hold", "All/Paths.Agree/0", "All/Paths.Agree/Last_1", "Shared.Holds"]
OTHERS = ["Documents.AreTrue", "Documents.AreShort"]

# A name, the programs that are built for it, and the tests that CTest runs then.
MEANT = [
    ("Plain", "unit_tests", ["Plain.Holds", "Plain.HoldsTwice"]),
    ("plain.holds", "unit_tests", ["Plain.Holds"]),
    ("Paths", "unit_tests", ["All/Paths.Agree/0", "All/Paths.Agree/Last_1"]),
    ("Paths.Agree", "unit_tests", ["All/Paths.Agree/0", "All/Paths.Agree/Last_1"]),
    ("tests/unit/PlainTest.cpp", "unit_tests", ["Plain.Holds", "Plain.HoldsTwice", "PlainTexts.Hold"]),
    ("Shared", "first_test second_test", ["Shared.Holds"]),
    ("first_test", "first_test", ["Shared.Holds"]),
    ("Documents", "bin/program", OTHERS),
    ("Documents.AreTrue", "bin/program", ["Documents.AreTrue"]),
]


def make_build(build):
    commands = []
    for program, sources in PROGRAMS.items():
        for source in sources:
            (build / source).write_text(SOURCES[source])
        joined = build / "Unity" / f"{program}.cxx"
        joined.parent.mkdir(exist_ok=True)
        joined.write_text("".join(f'#include "{build / source}"\n' for source in sources))
        file = joined if len(sources) > 1 else build / sources[0]
        commands.append({"file": str(file), "command": f"c++ -o tests/CMakeFiles/{program}.dir/x.o -c {file}"})
    (build / "compile_commands.json").write_text(json.dumps(commands))
    for program in ("tests/x", "bin/program"):  # CTest tells the commands of those that are there
        (build / program).parent.mkdir()
        (build / program).touch(0o755)
    lines = [f'add_test([=[{test}]=] "{build}/tests/x" "--gtest_filter={test}")\n' for test in TESTS]
    lines += [f'add_test([=[{test}]=] "{build}/bin/program")\n' for test in OTHERS]
    (build / "CTestTestfile.cmake").write_text("".join(lines))


def find(checkout, build, *names):
    command = [sys.executable, "-B", str(checkout / "scripts/find_tests.py"), str(build), *names]
    return subprocess.run(command, capture_output=True, text=True)


def tests_that_run(build, expression):
    answer = subprocess.run(["ctest", "--show-only=json-v1", "-R", expression], cwd=build, check=True, capture_output=True)
    return [test["name"] for test in json.loads(answer.stdout)["tests"]]


def main():
    checkout = pathlib.Path(sys.argv[1])
    failures = []
    with tempfile.TemporaryDirectory() as folder:
        build = pathlib.Path(folder).resolve()
        make_build(build)
        for name, targets, tests in MEANT:
            answer = find(checkout, build, name)
            lines = answer.stdout.splitlines() or ["", ""]
            found = tests_that_run(build, lines[1])
            if lines[0] != targets or found != tests:
                failures.append(f"{name}: builds {lines[0]}, runs {found}; {answer.stderr}")
        unknown = find(checkout, build, "Plane")
        if unknown.returncode != 2 or unknown.stdout or "Near: Plain" not in unknown.stderr:
            failures.append(f"Plane: {unknown}")
    print(*failures, sep="\n")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
