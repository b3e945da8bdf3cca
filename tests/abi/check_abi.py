"""Compares the interface of the built library with the stored description of its SONAME's.

Usage: check_abi.py check|alarms|store LIBRARY FOLDER ABIDW ABIDIFF READELF

check:  functions, data and records are those of FOLDER/SONAME.abi. Hosts that were built for a SONAME run with
        every library of that name: what changes takes a new one.
alarms: what is planted into the description is heard.
store:  writes the description; new names may join one that stands, everything else takes a new SONAME.
"""
import re
import subprocess
import sys
import tempfile
from pathlib import Path

IGNORED = str(Path(__file__).with_name("exported.abignore"))
DESCRIBE = ("--suppressions", IGNORED, "--no-corpus-path", "--no-comp-dir-path", "--no-show-locs", "--no-elf-needed",
            "--drop-undefined-syms", "--no-parameter-names")

# How abidiff ends.
CHANGED, INCOMPATIBLE = 4, 8

# (what is planted, pattern in the description, what takes its place)
PLANTED = (
    ("a function that is gone", r"\bFindSongs\b", "FindSomething"),
    ("a variable that is gone", r"\bXMLEntities\b", "XMLNames"),
    ("a function with another result", r"(name='GetSongCount'[^>]*>\s*<parameter[^>]*>\s*<return type-id=')[^']*",
     r"\1type-id-1"),
    ("a field of another type", r"(name='trackNumber' type-id=')[^']*", r"\1type-id-1"),
    ("a field at another place", r"(layout-offset-in-bits=')768(')", r"\g<1>800\2"),
    ("a record of another size", r"(name='SongInfo' size-in-bits=')768", r"\g<1>800"),
    ("another version of the names", r"\bTAVREL_1\b", "TAVREL_0"),
)


def output_of(*command):
    return subprocess.run(command, check=True, stdout=subprocess.PIPE).stdout.decode()


def soname_of(library, readelf):
    return re.search(r"soname: \[([^\]]+)\]", output_of(readelf, "-d", library))[1]


def description_of(library, abidw):
    """Source files are named as they stand in the checkout, wherever it was built."""
    return re.sub(r"( path=')(?:\.\./)*", r"\1", output_of(abidw, *DESCRIBE, library))


def difference(abidiff, description, library, *options):
    """What abidiff says, and nothing when both are the same. That it cannot compare is no difference."""
    ended = subprocess.run([abidiff, "--suppressions", IGNORED, *options, str(description), library],
                           stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
    said = ended.stdout.decode()
    if ended.returncode not in (0, CHANGED, CHANGED | INCOMPATIBLE):
        raise RuntimeError(f"abidiff ends with {ended.returncode}: {said}")
    return said if ended.returncode else ""


def check(library, stored, abidiff):
    if not stored.exists():
        return [f"there is no {stored.name} yet: build the target store_abi"]
    found = difference(abidiff, stored, library)
    if found and not difference(abidiff, stored, library, "--no-added-syms"):
        return [found, f"names have joined: build the target store_abi, and keep what it writes to {stored.name}"]
    return [found, "hosts that were built for this SONAME would no longer run: it takes a new major version"] * bool(found)


def alarms(library, stored, abidiff):
    """Planted into a copy, each fault makes a difference."""
    description, found = stored.read_text(), []
    for what, pattern, replacement in PLANTED:
        planted, count = re.subn(pattern, replacement, description)
        with tempfile.NamedTemporaryFile("w", suffix=".abi") as copy:
            copy.write(planted)
            copy.flush()
            if not count or not check(library, Path(copy.name), abidiff):
                found.append(f"not heard: {what}")
    with tempfile.TemporaryDirectory() as folder:
        if not check(library, Path(folder) / stored.name, abidiff):
            found.append("not heard: a description that is not there")
    return found


def store(library, stored, abidw, abidiff):
    if stored.exists():
        found = difference(abidiff, stored, library, "--no-added-syms")
        if found:
            return [found, f"{stored.name} stays: this takes a new major version"]
    stored.write_text(description_of(library, abidw))
    return []


def main():
    what, library, folder, abidw, abidiff, readelf = sys.argv[1:]
    stored = Path(folder) / f"{soname_of(library, readelf)}.abi"
    if what == "store":
        found = store(library, stored, abidw, abidiff)
    else:
        found = check(library, stored, abidiff) if what == "check" else alarms(library, stored, abidiff)
    print("\n".join(found) or f"{stored.name}: {what}: nothing to tell")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
