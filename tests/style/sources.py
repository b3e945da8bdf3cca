"""The sources of a checkout, for the checks beside this file."""
import re
import subprocess
from pathlib import Path

# What is built into the library. The host and the rest have more freedom.
SHIPPED = ("system", "text", "codecs", "xml", "library", "agent", "include")

CODE = (".h", ".c", ".cpp")

# Longest first where one begins another; what is neither comment nor literal is skipped byte by byte.
TOKEN = re.compile(r'//[^\n]*|/\*.*?\*/|R"([^(\s]*)\(.*?\)\1"|"(?:\\.|[^"\\\n])*"|(?<![0-9A-Fa-f])\'(?:\\.|[^\'\\\n])+\'',
                   re.DOTALL)


def tracked(root):
    """Paths below `root` that git knows or would add, as text, sorted; links and what is gone left out."""
    listed = subprocess.run(["git", "ls-files", "-z", "--cached", "--others", "--exclude-standard"],
                            cwd=root, check=True, stdout=subprocess.PIPE).stdout.decode()
    paths = sorted(set(filter(None, listed.split("\0"))))
    return [path for path in paths if (Path(root) / path).is_file() and not (Path(root) / path).is_symlink()]


def read_all(root, wanted):
    """{path: text} of the tracked files whose path `wanted` accepts; those that are not UTF-8 are no texts."""
    texts = {}
    for path in tracked(root):
        if wanted(path):
            try:
                texts[path] = (Path(root) / path).read_text(encoding="utf-8")
            except UnicodeDecodeError:
                pass
    return texts


def is_code(path):
    return path.endswith(CODE)


def is_shipped(path):
    return is_code(path) and path.split("/")[0] in SHIPPED


def without_comments_and_literals(text):
    """The same lines, comments and the contents of literals taken out."""
    def blank(match):
        kept = "" if match.group().startswith("/") else '""'
        return kept + "\n" * match.group().count("\n")
    return TOKEN.sub(blank, text)
