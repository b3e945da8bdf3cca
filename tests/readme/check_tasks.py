"""Runs every command that docs/tasks.md shows, and compares what it prints and its exit code.

Usage: check_tasks.py TAVREL, in the top folder of the checkout.

A block is a session at a terminal: what follows a command is its output and its messages. A line "…" stands for
any lines, and "$ echo $?" for the exit code of the command before it, which is 0 where nobody asks.
"""
import os
import re
import subprocess
import sys
import tempfile
from pathlib import Path

DOCUMENT = Path("docs/tasks.md")
LEFT_OUT = "…"
ASKS_CODE = "$ echo $?"
EXPORT = "$ export "


def sessions_of(document):
    """The commands of each block, each with the lines that are shown behind it."""
    for block in re.findall(r"^```\n(.*?)^```$", document, re.MULTILINE | re.DOTALL):
        session = []
        for line in block.splitlines():
            if line.startswith("$ "):
                session.append((line, []))
            else:
                session[-1][1].append(line)
        yield session


def fits(shown, printed):
    """Whether the lines are those that were printed, but for what is left out."""
    pieces = "\n".join(shown + [""]).split(LEFT_OUT + "\n")
    text = "\n".join(printed + [""])
    pattern = "(?:.*\n)*?".join(re.escape(piece) for piece in pieces)
    return re.fullmatch(pattern, text) is not None


class Shell:
    """A place to run commands in, beside a link to the samples."""

    def __init__(self, tavrel, folder):
        os.symlink(Path("samples").resolve(), Path(folder, "samples"))
        programs = Path(folder, "programs")
        programs.mkdir()
        os.symlink(Path(tavrel).resolve(), programs / "tavrel")
        self.folder = folder
        self.environment = {**os.environ, "PATH": f"{programs}:{os.environ['PATH']}", "LC_ALL": "C",
                            "PYTHONIOENCODING": "utf-8"}
        for name in ("NO_COLOR", "TAVREL_LIBRARY", "COLUMNS"):
            self.environment.pop(name, None)

    def export(self, settings):
        self.environment.update(setting.split("=") for setting in settings.split())

    def run(self, command):
        done = subprocess.run(["sh", "-c", command], env=self.environment, cwd=self.folder, check=False,
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
        return [line.rstrip("\r") for line in done.stdout.decode().split("\n")[:-1]], done.returncode


def faults_of(session, shell):
    for number, (line, shown) in enumerate(session):
        if line.startswith(EXPORT):
            shell.export(line[len(EXPORT):])
            continue
        if line == ASKS_CODE:
            continue
        printed, code = shell.run(line[2:])
        following = session[number + 1] if number + 1 < len(session) else ("", [])
        wanted = int(following[1][0]) if following[0] == ASKS_CODE else 0
        if code != wanted:
            yield f"{line}\n  ends with {code} and not with {wanted}:\n  " + "\n  ".join(printed)
        elif not fits(shown, printed):
            yield f"{line}\n  prints:\n" + "\n".join(printed[:30])


def structure_faults(document):
    tasks = re.split(r"^### ", document, flags=re.MULTILINE)[1:]
    numbers = [int(task.split(".")[0]) for task in tasks]
    if numbers != list(range(1, len(tasks) + 1)) or len(tasks) < 20:
        yield f"tasks are numbered, and at least twenty: {numbers}"
    for task in tasks:
        if "\n$ tavrel" not in task:
            yield f"a task without a command: {task.splitlines()[0]}"


def main():
    document = DOCUMENT.read_text(encoding="utf-8")
    faults = list(structure_faults(document))
    with tempfile.TemporaryDirectory() as folder:
        shell = Shell(sys.argv[1], folder)
        for session in sessions_of(document):
            faults += faults_of(session, shell)
    for fault in faults:
        print(f"{DOCUMENT}: {fault}")
    return 1 if faults else 0


sys.exit(main())
