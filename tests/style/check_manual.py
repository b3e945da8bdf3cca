"""Whether docs/tavrel.3 declares exactly what the public header declares, shows the example that is built, and is
read by groff, where there is one, without a warning.

Usage: check_manual.py CHECKOUT
"""
import re
import shutil
import subprocess
import sys
from pathlib import Path

FUNCTION = re.compile(r"^TAVREL_API ([^;]*?) TAVREL_NOEXCEPT;", re.MULTILINE)
CALLBACK = re.compile(r"^(typedef [^;{]*\(\*[^;]*);", re.MULTILINE)
BOLD = re.compile(r'^\.B "(.*)"$', re.MULTILINE)


def words(declaration):
    return " ".join(declaration.split())


def of_header(header):
    return {words(declaration) for pattern in (FUNCTION, CALLBACK) for declaration in pattern.findall(header)}


def of_manual(manual):
    synopsis = manual.partition(".SH SYNOPSIS")[2].partition(".SH ")[0]
    lines = [line for line in BOLD.findall(synopsis) if not line.startswith("#")]
    return {words(declaration) for declaration in " ".join(lines).split(";") if declaration.strip()}


def example_of(manual):
    return manual.partition(".EX\n")[2].partition(".EE\n")[0].replace(r"\e", "\\")


def faults(manual, header, example):
    declared, shown = of_header(header), of_manual(manual)
    found = [f"does not declare: {declaration}" for declaration in sorted(declared - shown)]
    found += [f"declares what the header does not: {declaration}" for declaration in sorted(shown - declared)]
    if not declared:
        found.append("there is nothing in the header")
    if example_of(manual) != example:
        found.append("the example is not examples/playlists.c")
    return found


def warnings(manual):
    if not shutil.which("groff"):
        return []
    command = ("groff", "-ww", "-man", "-Tutf8", "-z")
    read = subprocess.run(command, input=manual.encode(), stderr=subprocess.PIPE, check=False)
    return read.stderr.decode().splitlines()


def main():
    root = Path(sys.argv[1])
    manual, header, example = ((root / name).read_text(encoding="utf-8")
                               for name in ("docs/tavrel.3", "include/tavrel/tavrel.h", "examples/playlists.c"))
    found = faults(manual, header, example) + warnings(manual)
    for fault in found:
        print("docs/tavrel.3", fault)
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
