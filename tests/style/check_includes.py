"""Compares the includes with the table "Who may include whom" of docs/architecture.md, and looks for circles of
files and of folders at any depth.

Usage: check_includes.py CHECKOUT

A row of the table names a folder, or a folder within one, and what it includes; "anything" leaves it free.
The table is exact: an include that it does not name is an error, and so is a name that no include needs.
"""
import os
import re
import sys

import sources

HEADING = "## Who may include whom"
INCLUDE = re.compile(r'^[ \t]*#[ \t]*include[ \t]*(?:"([^"\n]+)"|<(tavrel/[^>\n]+)>)', re.MULTILINE)
ROOTS = ("", "include/", "tests/")


def table_of(document):
    """{folder: set of the folders that it includes, or None for anything}, of the table below the heading."""
    if HEADING not in document:
        return {}
    section = document.split(HEADING, 1)[1].split("\n## ", 1)[0]
    table = {}
    for row in re.findall(r"^\|(.*)\|\s*$", section, re.MULTILINE):
        folders, included = (row.split("|") + [""])[:2]
        for folder in re.findall(r"`([\w/]+)/?`", folders):
            free = "anything" in included
            table[folder] = None if free else set(re.findall(r"`([\w/]+)/?`", included))
    return table


def resolve(name, includer, files):
    """The path of the included file of ours; None when there is none."""
    candidates = [root + name for root in ROOTS] + [os.path.join(os.path.dirname(includer), name)]
    return next((path for path in candidates if path in files), None)


def includes_of(texts):
    """[(including file, included file or None, the name as written)]"""
    found = []
    for path, text in texts.items():
        for quoted, ours in INCLUDE.findall(text):
            found.append((path, resolve(quoted or ours, path, texts), quoted or ours))
    return found


def folder_of(path, table):
    """The longest folder of the table that holds the file; its top folder when there is none."""
    holding = [folder for folder in table if path.startswith(folder + "/")]
    return max(holding, key=len, default=path.split("/")[0])


def circle_in(arrows):
    """A list of nodes that lead from the first back to it; empty when there is none. arrows: {node: set}"""
    finished, path = set(), []

    def walk(node):
        if node in path:
            return path[path.index(node):] + [node]
        if node in finished:
            return []
        path.append(node)
        circle = next(filter(None, map(walk, sorted(arrows.get(node, ())))), [])
        path.pop()
        finished.add(node)
        return circle

    return next(filter(None, map(walk, sorted(arrows))), [])


def circles_in(arrows):
    """Circles until, without the last arrow of each, there is none."""
    left = {node: set(targets) for node, targets in arrows.items()}
    found = []
    while circle := circle_in(left):
        found.append(circle)
        left[circle[-2]].discard(circle[-1])
    return found


def between(arrows, home):
    """The arrows between the homes of files: {home: set of homes}"""
    joined = {}
    for source, target in arrows:
        if home(source) != home(target):
            joined.setdefault(home(source), set()).add(home(target))
    return joined


def unit_of(path):
    """A header and the sources with its body are one: the path up to the first dot of the file's name."""
    folder, name = os.path.split(path)
    return os.path.join(folder, name.split(".")[0])


def units_of(arrows, files):
    """{file: unit}. A header without a source of its own that one unit alone includes is part of that unit."""
    units = {path: unit_of(path) for path in files}
    with_source = {unit for path, unit in units.items() if not path.endswith(".h")}
    for header in sorted(path for path in files if path.endswith(".h") and units[path] not in with_source):
        users = {units[source] for source, target in arrows if target == header and source != header}
        if len(users) == 1:
            units[header] = users.pop()
    return units


def faults(document, texts):
    table = table_of(document)
    if not table:
        return [f'docs/architecture.md has no table below "{HEADING}"']
    found, used, arrows = [], {}, []
    for path, included, name in includes_of(texts):
        if included is None:
            found.append(f'{path} includes "{name}", which is not in the checkout')
            continue
        arrows.append((path, included))
        used.setdefault((folder_of(path, table), folder_of(included, table)), f"{path} includes {name}")
    for (source, target), example in used.items():
        if source not in table:
            found.append(f"the table has no row for {source}, but {example}")
        elif source != target and table[source] is not None and target not in table[source]:
            found.append(f"the table does not let {source} include {target}, but {example}")
    for source, targets in table.items():
        for target in sorted(targets or ()):
            if (source, target) not in used:
                found.append(f"the table lets {source} include {target}, but no file does")
    bound = {source: targets for source, targets in table.items() if targets is not None}
    units = units_of(arrows, texts)
    inside = [arrow for arrow in arrows if bound.keys() >= {folder_of(path, table) for path in arrow}]
    for what, graph in (("the table makes", bound), ("files make", between(arrows, units.get)),
                        ("folders make", between(inside, os.path.dirname))):
        found += [f"{what} a circle: " + " -> ".join(circle) for circle in circles_in(graph)]
    return found


def main():
    root = sys.argv[1]
    texts = sources.read_all(root, sources.is_code)
    document = sources.read_all(root, lambda path: path == "docs/architecture.md")
    found = faults("".join(document.values()), texts)
    print("\n".join(found) or f"{len(texts)} files include each other as the table says")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
