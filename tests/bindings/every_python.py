"""Runs the tests of the Python package with every Python from 3.8 on that is here: one of each version, among those
of $PATH and of pyenv. Then opens and closes a library six hundred times with each, which must keep no memory.

Usage: every_python.py LIBRARY
"""
import os
import re
import subprocess
import sys
from pathlib import Path

CHECKOUT = Path(__file__).resolve().parents[2]
PACKAGE = CHECKOUT / "bindings" / "python"
TESTS = ("header", "opening", "songs", "search", "artwork")
OLDEST = (3, 8)
LARGEST_GROWTH = 150000  # in bytes; a library of the sample takes several times as much

# What is allocated is counted, not the memory that the system has given for it, which grows as it likes.
CYCLES = """
import ctypes, gc, tavrel

class Allocated(ctypes.Structure):
    _fields_ = [(name, ctypes.c_size_t) for name in "arena ordblks smblks hblks hblkhd usmblks fsmblks uordblks "
                "fordblks keepcost".split()]

ask = ctypes.CDLL(None).mallinfo2
ask.restype = Allocated

def use(times):
    for _ in range(times):
        with tavrel.Library(home="samples/home") as library:
            for song in library.search("violin"):
                song.name, song.artwork()
    gc.collect()
    allocated = ask()
    return allocated.uordblks + allocated.hblkhd

before = use(100)
print(use(500) - before)
"""


def pythons():
    """{version: program}"""
    folders = [Path(folder) for folder in os.environ["PATH"].split(os.pathsep)]
    folders += Path(os.environ.get("PYENV_ROOT", Path.home() / ".pyenv")).glob("versions/*/bin")
    found = {}
    for program in (program for folder in folders for program in sorted(folder.glob("python3*"))):
        if re.fullmatch(r"python3(\.\d+)?", program.name):
            asked = subprocess.run([str(program), "-c", "import sys; print(*sys.version_info[:2])"],
                                   stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, universal_newlines=True)
            version = tuple(map(int, asked.stdout.split()))
            if asked.returncode == 0 and version >= OLDEST:
                found.setdefault(version, str(program))
    return found


def run(environment, *command):
    return subprocess.run(command, cwd=CHECKOUT, env=environment, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                          universal_newlines=True)


def main():
    environment = {**os.environ, "TAVREL_LIBRARY_PATH": os.path.realpath(sys.argv[1]),
                   "PYTHONPATH": str(PACKAGE / "src"), "PYTHONMALLOC": "malloc"}
    failed = 0
    for version, program in sorted(pythons().items()):
        passed = 0
        for test in TESTS:
            ended = run(environment, program, "-B", str(PACKAGE / "tests" / f"test_{test}.py"))
            counted = re.search(r"^Ran (\d+) tests", ended.stderr, re.MULTILINE)
            if ended.returncode != 0 or not counted:
                failed = 1
                print(ended.stderr)
            else:
                passed += int(counted[1])
        ended = run(environment, program, "-B", "-c", CYCLES)
        growth = int(ended.stdout) if ended.returncode == 0 else None
        if growth is None or growth > LARGEST_GROWTH:
            failed = 1
            print(ended.stderr)
        name = ".".join(map(str, version))
        print(f"figure: Python {name}: {passed} tests passed; the last 500 of 600 libraries kept {growth} bytes")
    return failed


sys.exit(main())
