"""Whether the tests that a document's tables name are there.

Usage: check_named_tests.py CHECKOUT DOCUMENT

In the last column of a table, `Suite.Test` names a test, with * for any letters; `.Test` one of the suite named
before it.
"""
import fnmatch
import re
import sys

import sources

TEST = re.compile(r"^TEST(?:_F|_P)?\(\s*(\w+),\s*(\w+)", re.M)


def tests_of(root):
    texts = sources.read_all(root, lambda path: path.startswith("tests/") and path.endswith(".cpp"))
    return {f"{suite}.{name}" for text in texts.values() for suite, name in TEST.findall(text)}


def named_in(document):
    for line in document.splitlines():
        if not line.startswith("|"):
            continue
        suite = ""
        for name in re.findall(r"`([\w*]*\.[\w*]+)`", line.strip().strip("|").split("|")[-1]):
            suite = name.split(".")[0] or suite
            yield name if not name.startswith(".") else suite + name


def faults(document, tests):
    named = list(named_in(document))
    missing = [f"names a test that there is not: {name}" for name in named if not fnmatch.filter(tests, name)]
    return missing if named else ["names no test"]


def main(root, place):
    document = "".join(sources.read_all(root, lambda path: path == place).values())
    found = faults(document, tests_of(root))
    for fault in found:
        print(f"{place} {fault}")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
