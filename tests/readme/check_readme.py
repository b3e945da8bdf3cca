"""Compares what README.md shows with what the programs print.

Usage: check_readme.py TAVREL EXAMPLE, in the top folder of the checkout.
"""
import os
import re
import subprocess
import sys
from pathlib import Path


def blocks_of(readme):
    return re.findall(r"^```[a-z]*\n(.*?)^```$", readme, re.MULTILINE | re.DOTALL)


def output_of(command, home=None):
    environment = {k: v for k, v in os.environ.items() if k not in ("COLUMNS", "NO_COLOR")}
    if home:
        environment["HOME"] = str(home)
    return subprocess.run(command, env=environment, check=True, stdout=subprocess.PIPE).stdout.decode()


def main():
    tavrel, example = sys.argv[1:]
    sample = Path("samples/home").resolve()
    blocks = blocks_of(Path("README.md").read_text(encoding="utf-8"))
    failures = []

    overview = "$ scripts/run\n" + output_of([tavrel, "--home", "samples/home"])
    if overview not in blocks:
        failures.append("the overview of the sample library is not the one that scripts/run prints:\n" + overview)
    if Path("examples/playlists.c").read_text(encoding="utf-8") not in blocks:
        failures.append("the C host is not the one in examples/playlists.c")
    if "  204  Music\n" not in output_of([example], home=sample):
        failures.append("the C host does not list the sample library's playlists")

    for failure in failures:
        print("README.md:", failure)
    return 1 if failures else 0


sys.exit(main())
