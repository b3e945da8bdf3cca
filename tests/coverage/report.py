"""Which branches of the library no test takes, beside the list of those that none can.

Usage: report.py CHECKOUT EXPORT EXCEPTIONS

EXPORT is what `llvm-cov export` writes. Prints a table of the library's folders and every branch that is
neither taken nor listed; ends with 1 when there is one, or when the list names one that is taken or not there.

A line of the list, which survives changes elsewhere in the file:

    text/Numbers.cpp: ReadDigits: `digit >= base` is never true: the reason
"""
import collections
import json
import os
import re
import subprocess
import sys

FOLDERS = ("system", "text", "codecs", "xml", "library", "agent")
ENTRY = re.compile(r"^(?P<place>(?P<file>[\w./]+): .+?: `.+` is never (?:true|false)): (?P<reason>.+)$")


def base_names(mangled):
    """{mangled name: the function's own name}, of functions of files without linkage too."""
    plain = [name.split(":")[-1] for name in mangled]  # FILE.cpp:_ZN...
    shown = subprocess.run(["c++filt", "--no-params"], input="\n".join(plain), text=True, check=True,
                           stdout=subprocess.PIPE).stdout.splitlines()
    names = {}
    for name, full in zip(mangled, shown):
        if "{lambda" in full or "'lambda" in full or "$_" in full:
            full = re.split(r"::(?:\{lambda|'lambda|\$_)", full)[0]
        full = re.sub(r"<.*>|\[abi:\w+\]", "", re.sub(r"\(anonymous namespace\)::", "", full.replace("operator()", "call")))
        names[name] = full.split("::")[-1].split(" ")[-1]
    return names


def text_between(lines, start, end):
    """The source of a branch's condition, blanks joined."""
    if start[0] == end[0]:
        text = lines[start[0] - 1][start[1] - 1:end[1] - 1]
    else:
        text = "\n".join([lines[start[0] - 1][start[1] - 1:], *lines[start[0]:end[0] - 1], lines[end[0] - 1][:end[1] - 1]])
    return " ".join(text.split())


class Branches:
    """Every condition of the library with how often it was true and false, all its instances together."""

    def __init__(self, root, export):
        self.root = root
        self.counts = collections.defaultdict(lambda: [0, 0])
        self.functions = {}
        functions = export["data"][0]["functions"]
        names = base_names([function["name"] for function in functions])
        for function in functions:
            for branch in function["branches"]:
                self._add(function["filenames"][branch[6]], branch, names[function["name"]])

    def _add(self, path, branch, name):
        path = os.path.relpath(path, self.root)
        if path.split("/")[0] not in FOLDERS:
            return
        place = (path, *branch[:4])
        self.counts[place][0] += branch[4]
        self.counts[place][1] += branch[5]
        self.functions.setdefault(place, name)

    def never_taken(self):
        """{"FILE: FUNCTION: `CONDITION` is never true": [lines]}"""
        missing, texts = collections.defaultdict(list), {}
        for place, counts in sorted(self.counts.items()):
            if all(counts):
                continue
            path = place[0]
            if path not in texts:
                with open(os.path.join(self.root, path), encoding="utf-8") as file:
                    texts[path] = file.read().split("\n")
            condition = text_between(texts[path], place[1:3], place[3:5])
            for count, way in zip(counts, ("true", "false")):
                if count == 0:
                    missing[f"{path}: {self.functions[place]}: `{condition}` is never {way}"].append(place[1])
        return missing

    def table(self):
        """Rows of folder, branches, taken branches."""
        rows = collections.defaultdict(lambda: [0, 0])
        for place, counts in self.counts.items():
            rows[place[0].split("/")[0]][0] += 2
            rows[place[0].split("/")[0]][1] += sum(count > 0 for count in counts)
        return [(folder, *rows[folder]) for folder in FOLDERS]


def read_exceptions(path):
    """The places of the list, and what is wrong with its lines."""
    places, wrong = [], []
    with open(path, encoding="utf-8") as file:
        for number, line in enumerate(file, 1):
            if not line.strip() or line.startswith("#"):
                continue
            entry = ENTRY.match(line.rstrip("\n"))
            if entry:
                places.append(entry["place"])
            else:
                wrong.append(f"{path}:{number}: this is not \"FILE: FUNCTION: `CONDITION` is never true: REASON\"")
    return places, wrong


def main():
    root, export, exceptions = sys.argv[1:]
    with open(export, encoding="utf-8") as file:
        branches = Branches(os.path.abspath(root), json.load(file))
    missing = branches.never_taken()
    listed, wrong = read_exceptions(exceptions)
    for place, lines in missing.items():
        if place not in listed:
            wrong.append(f"{place} (line {', '.join(map(str, lines))})")
    wrong += [f"listed, but taken or not there: {place}" for place in listed if place not in missing]

    total = [0, 0]
    print(f"{'folder':<10}{'branches':>10}{'taken':>10}{'':>9}")
    for folder, count, taken in branches.table():
        print(f"{folder:<10}{count:>10}{taken:>10}{taken / max(count, 1):>9.2%}")
        total = [total[0] + count, total[1] + taken]
    print(f"{'all':<10}{total[0]:>10}{total[1]:>10}{total[1] / max(total[0], 1):>9.2%}")
    print(f"{sum(len(lines) for place, lines in missing.items() if place in listed)} branches are listed as exceptions")
    print("\n".join(wrong))
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
