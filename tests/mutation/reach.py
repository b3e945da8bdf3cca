"""Which suites of tests execute which lines of the library: measured once, with Clang's coverage."""

import concurrent.futures
import hashlib
import json
import pathlib
import subprocess
import tempfile
import time

from mutants import FOLDERS
from trees import PROGRAMS, Build, log_of


def executed_lines(tree, binary, profile):
    """{file: lines} of the library."""
    sources = [str(tree.root / folder) for folder in FOLDERS]
    answer = subprocess.run(["llvm-cov", "export", "--format=lcov", f"--instr-profile={profile}", str(binary), *sources],
                            check=True, capture_output=True, text=True)  # fmt: skip
    lines, file = {}, None
    for entry in answer.stdout.split("\n"):
        kind, _, value = entry.partition(":")
        if kind == "SF":
            file = str(pathlib.Path(value).relative_to(tree.root))
        elif kind == "DA":
            line, count = value.split(",")[:2]
            if int(count) > 0:
                lines.setdefault(file, []).append(int(line))
    return lines


def measure_suite(tree, program, suite):
    """(program, suite, seconds, {file: lines})"""
    with tempfile.TemporaryDirectory() as profiles:
        start = time.monotonic()
        tree.test(program, [(suite, 0)], 600, {"LLVM_PROFILE_FILE": f"{profiles}/%p-%m.profraw"})
        seconds = time.monotonic() - start
        raw = [str(path) for path in pathlib.Path(profiles).glob("*.profraw") if path.stat().st_size > 0]
        if not raw:
            return program, suite, seconds, {}
        merged = f"{profiles}/merged"
        subprocess.run(["llvm-profdata", "merge", "-sparse", "-o", merged, *raw], check=True, capture_output=True)
        library = tree.build_folder / "lib" / "libTavrel.so"
        opens_it = program in ("system_test", "hostile_test")
        return program, suite, seconds, executed_lines(tree, library if opens_it else tree.program(program), merged)


def measure(checkout, jobs):
    """In the build folder of scripts/coverage, whose counters these are."""
    tree = Build(checkout, checkout / "build" / "coverage", checkout / "build" / "coverage.log")
    configure = ["cmake", "--preset", "coverage", "-DTAVREL_BUILD_TESTS=ON"]
    if log_of(configure, tree.log, cwd=checkout) != 0 or not tree.make([*PROGRAMS, "Tavrel"], jobs):
        raise SystemExit(f"The build failed; its output is in {tree.log}")
    suites = [(program, suite) for program in PROGRAMS for suite in tree.suites(program)]
    with concurrent.futures.ThreadPoolExecutor(jobs) as pool:
        return list(pool.map(lambda pair: measure_suite(tree, *pair), suites))


def version_of(checkout):
    """Of everything that decides what the tests reach and notice."""
    digest = hashlib.sha256()
    names = subprocess.run(["git", "ls-files", "-z", "--", *FOLDERS, "include", "cmake", "tests", "CMakeLists.txt", ":!tests/mutation"],
                           cwd=checkout, check=True, capture_output=True, text=True).stdout  # fmt: skip
    for name in filter(None, names.split("\0")):
        path = checkout / name
        digest.update(name.encode() + b"\0" + (path.read_bytes() if path.is_file() else b""))
    return digest.hexdigest()


def load(checkout, folder, jobs):
    """[(program, suite, seconds, {file: lines})], kept in a file for this version of the sources."""
    path = pathlib.Path(folder) / "reach.json"
    version = version_of(checkout)
    kept = json.loads(path.read_text()) if path.exists() else {"version": None}
    if kept["version"] != version:
        kept = {"version": version, "reach": measure(checkout, jobs)}
        path.write_text(json.dumps(kept))
    return [(p, s, t, {f: set(lines) for f, lines in files.items()}) for p, s, t, files in kept["reach"]]
