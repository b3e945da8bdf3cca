"""Looks into the library's object files for what it must not need, whatever the sources look like.

Usage: check_objects.py needs|arrows NM READELF CHECKOUT BUILD_FOLDER LIST_OF_OBJECTS

needs:
- nothing is constructed when the library is loaded, destroyed when it goes, or made on first use;
- no unique symbol, which would keep it loaded;
- nothing that asks the locale;
- memory only where tests can make it fail.
arrows:
- no folder needs a function of one that docs/architecture.md does not let it reach;
- no files need each other's functions: each is declared beside its body.
"""
import re
import subprocess
import sys
from pathlib import Path

import check_includes
import sources

# Its constructor and destructor are the loader's entry points.
ENTRY = "agent/LoaderEntry.cpp"

CHARACTER_CLASSES = "alpha|alnum|space|digit|xdigit|punct|print|cntrl|graph|upper|lower|blank"
LOCALE = re.compile(
    rf"(isw?({CHARACTER_CLASSES})|tow?(upper|lower)|__ctype_\w+|strn?casecmp|strcoll|strxfrm|wcs\w+"
    r"|(__isoc\d+_)?strto(l|ll|ul|ull|d|f|ld|imax|umax|q|uq)|ato[ifl]l?|\w*scanf\w*|v?f?printf|v?asprintf"
    r"|setlocale|localeconv|nl_langinfo|newlocale|uselocale|duplocale|strftime|strfmon|strerror\w*|perror"
    r"|mb\w*towcs?\w*|wc\w*tombs?|wc\w*tomb|mbrlen|mblen|_ZNSt6locale.*|_ZNKSt6locale.*|_ZNKSt5ctype.*"
    r"|_ZNSt8ios_base.*|_ZSt\w*from_chars.*|_ZNSt.*basic_[io]?stream.*)(_l)?$")
MEMORY = re.compile(r"(malloc|calloc|realloc|reallocarray|free|strn?dup|aligned_alloc|posix_memalign|mmap|mremap"
                    r"|getline|asprintf|vasprintf|open_memstream)$")
# The second maps a page that it shares with a process of its own, and asks tests first.
MEMORY_HOMES = ("system/Memory.cpp", "system/ScriptRunner.cpp")

# (pattern of a symbol that is defined or needed, rule)
SYMBOLS = (
    (re.compile(r"_GLOBAL__(sub_)?[ID]_"), "static storage is constructed at load"),
    (re.compile(r"(__cxa_atexit|atexit|on_exit|__cxa_thread_atexit\w*)$"), "something is to be destroyed at the end"),
    (re.compile(r"(_ZGV|__cxa_guard_)"), "a function-local static is made on first use"),
    (re.compile(r"(__tls_get_addr|__emutls_\w+|_ZTH|_ZTW)"), "a thread's storage"),
    (re.compile(r"_Z.*(_Sp_counted|7__cxx1111basic_regex)"), "std::make_shared or std::regex"),
)


class ObjectFile:
    """One object file: the source that it comes from, and the names that it defines and needs."""

    def __init__(self, source):
        self.source = source
        self.defined = {}   # name -> nm's letter
        self.needed = set()
        self.sections = set()


def source_of(path, build):
    """agent/Exports.cpp for BUILD/CMakeFiles/objects.dir/agent/Exports.cpp.o"""
    relative = Path(path).resolve().relative_to(Path(build).resolve()).as_posix()
    return re.sub(r"\.(o|obj)$", "", re.sub(r"(^|/)CMakeFiles/[^/]+\.dir/", r"\1", relative))


def output_of(*command):
    return subprocess.run(command, check=True, stdout=subprocess.PIPE).stdout.decode()


def read_objects(nm, readelf, source_by_path):
    """All of the object files at once, since starting a tool takes longer than what it does for one."""
    objects = {path: ObjectFile(source) for path, source in source_by_path.items()}
    if not objects:
        return []
    # Said of each symbol: the file, a colon, the name, its letter.
    for line in output_of(nm, "-A", "-P", *objects).splitlines():
        path, symbol = line.split(": ", 1)
        name, letter = symbol.split()[:2]
        if letter in "Uwv":
            objects[path].needed.add(name)
        else:
            objects[path].defined[name] = letter
    # "File: PATH" stands above what is said of a file, unless there is only one.
    path = next(iter(objects))
    for line in output_of(readelf, "-SW", *objects).splitlines():
        if line.startswith("File: "):
            path = line[len("File: "):]
        objects[path].sections |= set(re.findall(
            r"\s(\.(?:preinit_array|init_array|fini_array|ctors|dtors)\S*)\s", line))
    return list(objects.values())


def symbol_faults(read):
    found = []
    if read.sections and read.source != ENTRY:
        found.append(f"{read.source}: runs when the library is loaded or goes: {', '.join(sorted(read.sections))}")
    for name in sorted(set(read.defined) | read.needed):
        found += [f"{read.source}: {name}: {rule}" for pattern, rule in SYMBOLS if pattern.match(name)]
        if read.defined.get(name) == "u":
            found.append(f"{read.source}: {name}: a unique symbol keeps the library loaded")
    for name in sorted(read.needed):
        if LOCALE.match(name):
            found.append(f"{read.source}: {name}: its result depends on the locale")
        if MEMORY.match(name) and read.source not in MEMORY_HOMES:
            found.append(f"{read.source}: {name}: memory that no test can refuse")
    return found


def reach_of(folder, table):
    """All folders that can be reached; None when that is anything."""
    reached, open_ends = set(), [folder]
    while open_ends:
        current = open_ends.pop()
        if current in reached:
            continue
        reached.add(current)
        if table.get(current, set()) is None:
            return None
        open_ends += table.get(current, ())
    return reached


def arrow_faults(objects, table):
    """Calls across folders that includes need not show: a function may be declared anywhere."""
    homes = {name: read.source for read in objects
             for name, letter in read.defined.items() if letter in "TDBRC"}
    examples, arrows = {}, []
    for read in objects:
        arrows += [(read.source, homes[name]) for name in read.needed & set(homes)]
        source = check_includes.folder_of(read.source, table)
        for name in sorted(read.needed & set(homes)):
            target = check_includes.folder_of(homes[name], table)
            examples.setdefault((source, target), f"{read.source} needs {name} of {homes[name]}")
    found = []
    for (source, target), example in sorted(examples.items()):
        reach = reach_of(source, table)
        if reach is not None and target not in reach:
            found.append(f"{source} may not reach {target}, but {example}")
    for circle in check_includes.circles_in(check_includes.between(arrows, check_includes.unit_of)):
        found.append("files need each other: " + " -> ".join(circle))
    return found


def main():
    what, nm, readelf, root, build, listed = sys.argv[1:]
    paths = [path for path in Path(listed).read_text().splitlines() if path]
    objects = read_objects(nm, readelf, {path: source_of(path, build) for path in paths})
    if what == "needs":
        found = [fault for read in objects for fault in symbol_faults(read)]
    else:
        document = "".join(sources.read_all(root, lambda path: path == "docs/architecture.md").values())
        found = arrow_faults(objects, check_includes.table_of(document))
    if len(objects) < 2:
        found.append("there are no object files to look into")
    print("\n".join(found) or f"{len(objects)} object files need nothing that they must not")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
