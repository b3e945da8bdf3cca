"""Which suites of tests execute which lines of the library: measured once, with Clang's coverage."""

import json
import pathlib
import subprocess
import tempfile
import time

from mutants import FOLDERS
from trees import PROGRAMS, Tree

COVERED = ("-DCMAKE_C_COMPILER=clang", "-DCMAKE_CXX_COMPILER=clang++",
           "-DCMAKE_CXX_FLAGS=-fprofile-instr-generate -fcoverage-mapping")  # fmt: skip


def executed_lines(tree, binaries, profile):
    """{file: lines} of the library."""
    objects = [argument for binary in binaries[1:] for argument in ("-object", str(binary))]
    sources = [str(tree.root / folder) for folder in FOLDERS]
    answer = subprocess.run(["llvm-cov", "export", "--format=lcov", f"--instr-profile={profile}", str(binaries[0]), *objects, *sources],
                            check=True, capture_output=True, text=True)  # fmt: skip
    lines, file = {}, None
    for entry in answer.stdout.split("\n"):
        kind, _, value = entry.partition(":")
        if kind == "SF":
            file = str(pathlib.Path(value).relative_to(tree.root))
        elif kind == "DA":
            line, count = value.split(",")[:2]
            if int(count) > 0:
                lines.setdefault(file, set()).add(int(line))
    return lines


def measure(checkout, folder):
    """[(program, suite, seconds, {file: lines})]"""
    tree = Tree(checkout, folder, COVERED)
    if not tree.prepare(PROGRAMS):
        raise SystemExit(f"The build failed; its output is in {tree.log}")
    library = tree.build_folder / "lib" / "libTavrel.so"
    found = []
    for program in PROGRAMS:
        for suite in tree.suites(program):
            with tempfile.TemporaryDirectory() as profiles:
                start = time.monotonic()
                tree.test(program, [suite], 600, {"LLVM_PROFILE_FILE": f"{profiles}/%p.profraw"})
                seconds = time.monotonic() - start
                raw = [str(path) for path in pathlib.Path(profiles).glob("*.profraw")]
                if not raw:
                    continue
                merged = f"{profiles}/merged"
                subprocess.run(["llvm-profdata", "merge", "-sparse", "-o", merged, *raw], check=True, capture_output=True)
                found.append((program, suite, seconds, executed_lines(tree, [tree.program(program), library], merged)))
    return found


def load(checkout, folder, version):
    """The same, kept in a file for this version of the sources."""
    path = pathlib.Path(folder) / "reach.json"
    if path.exists():
        kept = json.loads(path.read_text())
        if kept["version"] == version:
            return [(p, s, t, {f: set(lines) for f, lines in files.items()}) for p, s, t, files in kept["reach"]]
    reach = measure(checkout, pathlib.Path(folder) / "reach")
    plain = [(p, s, t, {f: sorted(lines) for f, lines in files.items()}) for p, s, t, files in reach]
    path.write_text(json.dumps({"version": version, "reach": plain}))
    return reach
