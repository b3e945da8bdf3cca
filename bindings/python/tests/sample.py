"""What the tests read: the sample library, with Python's own reader of property lists as the judge."""
import os
import plistlib
import subprocess
import sys
from pathlib import Path

PACKAGE = Path(__file__).resolve().parents[1]
CHECKOUT = PACKAGE.parents[1]
HOME = CHECKOUT / "samples" / "home"
FILE = HOME / "Music" / "iTunes" / "iTunes Music Library.xml"
OTHER_HOME = CHECKOUT / "tests" / "system" / "home"
LIBRARY = os.environ["TAVREL_LIBRARY_PATH"]

if str(PACKAGE / "src") not in sys.path:
    sys.path.insert(0, str(PACKAGE / "src"))


def plist():
    return plistlib.loads(FILE.read_bytes())


SONGS = len(plist()["Tracks"])


def run(code, path=PACKAGE / "src", **variables):
    """Runs code in another Python, which finds the package in `path`; its result, output and errors as text."""
    environment = {**os.environ, "PYTHONPATH": str(path), **variables}
    return subprocess.run([sys.executable, "-B", "-c", code], env=environment, stdout=subprocess.PIPE,
                          stderr=subprocess.PIPE, universal_newlines=True)
