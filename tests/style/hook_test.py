"""What scripts/hooks/pre-commit does to a commit, in a checkout made for it.

Usage: hook_test.py CHECKOUT
"""
import os
import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

UNFORMATTED = "int  Planted( ) ;\n"
FORMATTED = "int Planted();\n"


class Hook(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)
        self.root = Path(self.folder.name)
        shutil.copy(CHECKOUT / ".clang-format", self.root)
        self.git("init", "-q")
        self.git("config", "core.hooksPath", str(CHECKOUT / "scripts/hooks"))

    def git(self, *arguments, check=True):
        environment = {name: value for name, value in os.environ.items() if not name.startswith("GIT_")}
        identity = ("-c", "user.name=Test", "-c", "user.email=test@localhost")
        return subprocess.run(("git", *identity, *arguments), cwd=self.root, env=environment, check=check,
                              stdout=subprocess.PIPE, stderr=subprocess.PIPE).stdout.decode()

    def stage(self, name, text):
        (self.root / name).write_text(text)
        self.git("add", name)

    def commits(self):
        self.git("commit", "-q", "-m", "Test", check=False)
        return self.git("rev-list", "--all").count("\n")

    def test_what_is_staged_is_formatted(self):
        self.stage("with blank.cpp", UNFORMATTED)
        self.assertEqual(self.commits(), 1)
        self.assertEqual(self.git("show", "HEAD:with blank.cpp"), FORMATTED)
        self.assertEqual((self.root / "with blank.cpp").read_text(), FORMATTED)

    def test_other_files_are_left_alone(self):
        self.stage("notes.md", "a   b\n")
        self.stage("a.h", FORMATTED)
        (self.root / "b.h").write_text(UNFORMATTED)
        self.assertEqual(self.commits(), 1)
        self.assertEqual((self.root / "b.h").read_text(), UNFORMATTED)
        self.assertEqual(self.git("show", "HEAD:notes.md"), "a   b\n")

    def test_a_file_that_is_staged_in_part_stops_the_commit_and_stays(self):
        self.stage("a.cpp", UNFORMATTED)
        (self.root / "a.cpp").write_text(UNFORMATTED + "int  Later( );\n")
        self.assertEqual(self.commits(), 0)
        self.assertEqual((self.root / "a.cpp").read_text(), UNFORMATTED + "int  Later( );\n")
        self.assertEqual(self.git("show", ":a.cpp"), UNFORMATTED)

    def test_what_is_staged_formatted_is_committed_whatever_follows(self):
        self.stage("a.cpp", FORMATTED)
        (self.root / "a.cpp").write_text(FORMATTED + "int  Later( );\n")
        self.assertEqual(self.commits(), 1)

    def test_a_deleted_file_is_no_fault(self):
        self.stage("a.cpp", FORMATTED)
        self.assertEqual(self.commits(), 1)
        self.git("rm", "-q", "a.cpp")
        self.assertEqual(self.commits(), 2)


if __name__ == "__main__":
    CHECKOUT = Path(sys.argv[1]).resolve()
    unittest.main(argv=sys.argv[:1])
