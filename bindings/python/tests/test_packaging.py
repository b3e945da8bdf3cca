"""The wheel and the source archive are built and installed without a network, and work; types come with them.

Usage: test_packaging.py [MYPY]
"""
import os
import shutil
import subprocess
import sys
import tarfile
import tempfile
import unittest
import zipfile
from pathlib import Path

import sample

MYPY = sys.argv[1] if len(sys.argv) > 1 else None
ENVIRONMENT = {key: value for key, value in os.environ.items() if key != "PYTHONPATH"}
ENVIRONMENT.update(PIP_NO_INDEX="1", PIP_DISABLE_PIP_VERSION_CHECK="1", PIP_NO_CACHE_DIR="1")

# What a program may rely on, types included.
USER = f"""
from typing import List, Optional
import tavrel

with tavrel.Library(file={str(sample.FILE)!r}) as library:
    names: List[Optional[str]] = [song.name for song in library.songs[:3]]
    data: List[bytes] = [picture.data for song in library.songs for picture in song.artwork()]
    times: int = sum(song.total_time for song in library.search("violin"))
    lists: List[str] = [playlist.name or "" for playlist in library.playlists]
    print(len(names), len(data) > 0, times > 0, lists[0], tavrel.__file__)
"""
BUILD = "from setuptools import build_meta as backend; backend.build_sdist('..'); backend.build_wheel('..')"


def run(*command, folder, expected=0):
    ended = subprocess.run(command, cwd=folder, env=ENVIRONMENT, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                           universal_newlines=True)
    if ended.returncode != expected:
        raise AssertionError(f"{command} ended with {ended.returncode}:\n{ended.stdout}")
    return ended.stdout


class Packaging(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        holder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(holder.cleanup)
        cls.folder = Path(holder.name)
        package = cls.folder / "package"
        shutil.copytree(sample.PACKAGE, package, ignore=shutil.ignore_patterns("__pycache__", "*.egg-info"))
        run(sys.executable, "-c", BUILD, folder=package)
        cls.wheel = next(cls.folder.glob("*.whl"))
        cls.archive = next(cls.folder.glob("*.tar.gz"))
        # The system's packages are seen from within: the archive is built with its setuptools.
        run(sys.executable, "-m", "venv", "--without-pip", "--system-site-packages", "there", folder=cls.folder)
        cls.python = str(cls.folder / "there/bin/python")
        (cls.folder / "user.py").write_text(USER)

    def install(self, file):
        run(sys.executable, "-m", "pip", "--python", self.python, "install", "--no-deps", "--no-build-isolation",
            "--force-reinstall", "--no-compile", file, folder=self.folder)

    def check_use(self):
        output = run(self.python, "-B", "user.py", folder=self.folder).strip()
        self.assertTrue(output.startswith(f"3 True True Music {self.folder}/there/"), output)

    def check_types(self):
        """Of two programs that differ in one type only the one that is wrong is refused."""
        (self.folder / "wrong.py").write_text(USER.replace("lists: List[str]", "lists: List[bytes]"))
        output = run(MYPY, "--strict", "--python-version", "3.8", "--python-executable", self.python, "user.py",
                     "wrong.py", folder=self.folder, expected=1)
        self.assertIn("List comprehension has incompatible type", output)
        self.assertIn("Found 1 error in 1 file", output)

    def test_the_wheel_can_be_installed_and_used_with_its_types(self):
        self.install(self.wheel)
        self.check_use()
        if MYPY:
            self.check_types()

    def test_the_source_archive_can_be_installed_and_used(self):
        self.install(self.archive)
        self.check_use()

    def test_both_hold_the_licence_and_the_mark_of_typed_packages(self):
        names = zipfile.ZipFile(self.wheel).namelist() + tarfile.open(self.archive).getnames()
        for wanted in ("LICENSE", "py.typed"):
            self.assertEqual(sum(name.endswith("/" + wanted) for name in names), 2, names)
        self.assertTrue(self.wheel.name.endswith("-py3-none-any.whl"), self.wheel.name)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
