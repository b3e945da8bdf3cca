"""Copies of the checkout that are changed, built and tested."""

import contextlib
import os
import pathlib
import re
import resource
import shutil
import signal
import subprocess
import threading

# The programs whose tests a mutant of the library can fail; the last one, which has a copy of the library of its
# own, is run where the others have not noticed it.
PROGRAMS = ("unit_tests", "system_test", "hostile_test", "fault_test")
LAST_PROGRAM = "work_tests"
MOST_MEMORY = 4 << 30

# As a release is built, where a warning is an error: such a mutant does not compile. What the tests are is asked
# when they are run: a program that is broken fails then.
OPTIONS = ("-DCMAKE_BUILD_TYPE=Release", "-DTAVREL_WARNINGS_AS_ERRORS=ON", "-DTAVREL_BUILD_BENCH=OFF", "-DTAVREL_BUILD_HOST=OFF",
           "-DCMAKE_GTEST_DISCOVER_TESTS_DISCOVERY_MODE=PRE_TEST")  # fmt: skip
COMPILED = re.compile(r"Building \w+ object (\S+)")
LINKED = re.compile(r"Linking \w+ (?:static library|shared library|executable) (\S+)")


running = set()  # the groups of processes that this one has started
running_lock = threading.RLock()  # a signal may come while it is held


def end_all():
    """Ends everything that is built and tested; from then on nothing more is started, and no verdict given."""
    running_lock.acquire()  # for ever: whoever waits for it ends with this process
    for group in running:
        with contextlib.suppress(ProcessLookupError):
            os.killpg(group, signal.SIGKILL)


def is_working(group):
    """Whether one of these processes has a processor or waits for one, which may take long on a busy machine."""
    for stat in pathlib.Path("/proc").glob("[0-9]*/stat"):
        with contextlib.suppress(OSError):  # it has just ended
            state, _, its_group = stat.read_text().rpartition(")")[2].split()[:3]
            if state == "R" and int(its_group) == group:
                return True
    return False


def wait_for(process, timeout):
    while True:
        try:
            return process.wait(timeout)
        except subprocess.TimeoutExpired:
            if not is_working(process.pid):
                raise


def log_of(command, log, timeout=None, limit=lambda: None, **options):
    """The exit code of a command. It runs in a group of its own: what is judged may signal its whole group, and an
    interrupt from the keyboard would otherwise end what is judged, and be taken for a verdict on it. No session of its
    own: Linux would give that the usual priority, also where this is to run behind everything else. limit: called in
    the new process."""

    def prepare():
        os.setpgid(0, 0)
        limit()

    with open(log, "ab") as output:
        with running_lock:
            process = subprocess.Popen(command, stdout=output, stderr=output, preexec_fn=prepare, **options)
            running.add(process.pid)
        try:
            return wait_for(process, timeout)
        finally:
            with running_lock:
                running.remove(process.pid)
                if process.returncode is None:
                    os.killpg(process.pid, signal.SIGKILL)
                    process.wait()


def isolation():
    """What goes before a command for a process namespace of its own, where there is one: a mutant may kill what
    it should not. The shell is its first process, which takes in what loses its parent; tests ask what is left."""
    words = ["unshare", "--pid", "--fork", "--kill-child", "--mount-proc", "sh", "-c", '"$@"; exit "$?"', "sh"]
    if shutil.which("unshare") and subprocess.run([*words, "true"], capture_output=True, check=False).returncode == 0:
        return words
    return []


def copy_sources(checkout, root):
    """What git knows of; a file that has not changed keeps its time."""
    names = subprocess.run(["git", "ls-files", "-z"], cwd=checkout, check=True, capture_output=True, text=True).stdout
    for name in names.split("\0"):
        source, copy = checkout / name, root / name
        if source.is_file() and not (copy.exists() and copy.read_bytes() == source.read_bytes()):
            copy.parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(source, copy)


class Build:
    """What was built of a checkout, and its test programs."""

    def __init__(self, root, build_folder, log):
        self.root, self.build_folder, self.log = root, build_folder, log
        self.isolation = isolation()

    def make(self, targets, jobs=1):
        return log_of(["ninja", "-C", self.build_folder, f"-j{jobs}", *targets], self.log) == 0

    def suites(self, program):
        listed = subprocess.run([self.program(program), "--gtest_list_tests"], check=True, capture_output=True, text=True,
                                env={**os.environ, "LLVM_PROFILE_FILE": os.devnull})  # fmt: skip
        return re.findall(r"^(\S+)\.", listed.stdout, re.MULTILINE)

    def program(self, name):
        return self.build_folder / "tests" / name

    def test(self, program, suites, seconds, environment=None):
        """"passed", "failed" or "hung". suites: [(name, seconds)]. seconds: of the processor; tests that wait may take longer."""
        run = [self.program(program), "--gtest_fail_fast", "--gtest_brief=1", f"--gtest_filter={':'.join(f'{name}.*' for name, _ in suites)}"]

        def limit():
            resource.setrlimit(resource.RLIMIT_AS, (MOST_MEMORY, MOST_MEMORY))
            resource.setrlimit(resource.RLIMIT_CPU, (int(seconds), int(seconds)))

        try:
            result = log_of([*self.isolation, *run], self.log, timeout=10 * seconds, cwd=self.root, limit=limit,
                            stdin=subprocess.DEVNULL, env={**os.environ, **(environment or {})})  # fmt: skip
        except subprocess.TimeoutExpired:
            return "hung"
        return "passed" if result == 0 else "failed"


class Tree(Build):
    """A copy of the checkout, to be changed."""

    def __init__(self, checkout, folder):
        super().__init__(folder, folder / "build" / "mutate", folder / "build" / "mutate.log")
        shutil.rmtree(self.root / "build" / "kept", ignore_errors=True)
        (self.root / "build" / "kept").mkdir(parents=True)
        copy_sources(pathlib.Path(checkout), self.root)
        self.kept = {}
        self.linked = set()

    def prepare(self, targets):
        configure = ["cmake", "-S", self.root, "-B", self.build_folder, "-G", "Ninja", *OPTIONS]
        return log_of(configure, self.log) == 0 and self.make(targets)

    def steps(self, targets):
        """The objects that would be compiled, and what would be linked."""
        plan = subprocess.run(["ninja", "-C", self.build_folder, "-n", *targets], capture_output=True, text=True, check=False).stdout
        if "Re-running CMake" in plan:
            raise SystemExit("The trees look for files anew in each build, and so cannot tell what a build takes")
        return COMPILED.findall(plan), LINKED.findall(plan)

    def build(self, targets):
        """Builds what the changed file is a part of, and keeps what has to come back afterwards."""
        compiled, linked = self.steps(targets)
        for name in compiled:
            if name not in self.kept:
                if not (self.build_folder / name).exists():
                    raise SystemExit(f"{name} was not built before a change; the build's output is in {self.log}")
                kept = self.root / "build" / "kept" / str(len(self.kept))
                shutil.copy2(self.build_folder / name, kept)
                self.kept[name] = kept
        self.linked.update(linked)
        return self.make(targets)

    def come_back(self):
        """The objects are again what they were, without a compiler; what was linked with others is linked anew."""
        for name, kept in self.kept.items():
            path = self.build_folder / name
            if path.exists():
                # Ninja believes what it has noted of an object as long as its time stays.
                time = path.stat().st_mtime_ns
                shutil.copyfile(kept, path)
                os.utime(path, ns=(time, time))
            else:
                shutil.copy2(kept, path)
            kept.unlink()
        for name in self.linked:
            (self.build_folder / name).unlink(missing_ok=True)
        self.kept, self.linked = {}, set()
