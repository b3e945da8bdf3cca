"""Copies of the checkout that are changed, built and tested."""

import os
import pathlib
import re
import resource
import shutil
import subprocess

# The programs whose tests a mutant of the library can fail; the later ones, which link the library in other
# ways, are run where the first ones have not noticed it.
PROGRAMS = ("unit_tests", "system_test", "hostile_test", "fault_test")
LATER_PROGRAMS = ("work_tests", "tavrel_host_tests")
MOST_MEMORY = 4 << 30


def log_of(command, log, **options):
    with open(log, "ab") as output:
        return subprocess.run(command, stdout=output, stderr=output, check=False, **options).returncode


def isolated(command):
    """A process namespace of its own, where there is one: a mutant may kill what it should not."""
    probe = ["unshare", "--pid", "--fork", "--kill-child", "--mount-proc"]
    if shutil.which("unshare") and subprocess.run([*probe, "true"], capture_output=True, check=False).returncode == 0:
        return [*probe, *command]
    return command


def copy_sources(checkout, root):
    """What git knows of; a file that has not changed keeps its time."""
    names = subprocess.run(["git", "ls-files", "-z"], cwd=checkout, check=True, capture_output=True, text=True).stdout
    for name in names.split("\0"):
        source, copy = checkout / name, root / name
        if source.is_file() and not (copy.exists() and copy.read_bytes() == source.read_bytes()):
            copy.parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(source, copy)


class Tree:
    def __init__(self, checkout, folder, options=()):
        self.root = pathlib.Path(folder)
        self.build_folder = self.root / "build" / "mutate"
        self.log = self.root / "build" / "mutate.log"
        (self.root / "build").mkdir(parents=True, exist_ok=True)
        copy_sources(pathlib.Path(checkout), self.root)
        self.configure = ["cmake", "-S", self.root, "-B", self.build_folder, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=Debug",
                          "-DTAVREL_BUILD_BENCH=OFF", *options]  # fmt: skip

    def prepare(self, programs):
        return log_of(self.configure, self.log) == 0 and self.build(programs)

    def build(self, targets):
        return log_of(["ninja", "-C", self.build_folder, "-j1", *targets], self.log) == 0

    def suites(self, program):
        listed = subprocess.run([self.program(program), "--gtest_list_tests"], check=True, capture_output=True, text=True)
        return re.findall(r"^(\S+)\.", listed.stdout, re.MULTILINE)

    def program(self, name):
        return self.build_folder / "tests" / name

    def test(self, program, suites, seconds, environment=None):
        """"passed", "failed" or "hung"."""
        run = [self.program(program), "--gtest_fail_fast", "--gtest_brief=1", f"--gtest_filter={':'.join(f'{s}.*' for s in suites)}"]
        limit = lambda: resource.setrlimit(resource.RLIMIT_AS, (MOST_MEMORY, MOST_MEMORY))
        try:
            result = log_of(isolated(run), self.log, timeout=seconds, cwd=self.root, preexec_fn=limit,
                            stdin=subprocess.DEVNULL, env={**os.environ, **(environment or {})})  # fmt: skip
        except subprocess.TimeoutExpired:
            return "hung"
        return "passed" if result == 0 else "failed"
