#!/usr/bin/env python3
"""Writes the sample library, home/Music/iTunes/iTunes Music Library.xml, as iTunes 12.1 does.

Everything in the file is a function of the three tables beside this script and of one seed: no
clock, no locale, no network, the same bytes on every run and machine.
"""

import argparse
import pathlib
import sys

sys.dont_write_bytecode = True  # no __pycache__ in the source tree
from generator import itunes_xml
from generator.locations import MEDIA_FOLDER, escape_path
from generator.playlists import make_playlists
from generator.tables import persistent_id
from generator.tracks import EXPORTED, make_tracks

SCRIPT = pathlib.Path(__file__).resolve()
LIBRARY_FILE = SCRIPT.parent / "home" / "Music" / "iTunes" / "iTunes Music Library.xml"


def make_library():
    """The whole file, as bytes."""
    tracks = make_tracks()
    playlists = make_playlists(tracks)
    library = {
        "Major Version": 1,
        "Minor Version": 1,
        "Date": EXPORTED,
        "Application Version": "12.1.2.27",
        "Features": 5,
        "Show Content Ratings": True,
        "Music Folder": f"file:///{escape_path(MEDIA_FOLDER)}/",
        "Library Persistent ID": persistent_id("library"),
        "Tracks": {str(t["Track ID"]): itunes_xml.in_track_order(t) for t in tracks},
        "Playlists": [itunes_xml.in_playlist_order(playlist) for playlist in playlists],
    }
    return itunes_xml.property_list(library)


def first_difference(committed, wanted):
    """Where two files part, in words; nothing when they are the same."""
    if committed == wanted:
        return None
    pairs = zip(committed.split(b"\n"), wanted.split(b"\n"))
    for number, (found, right) in enumerate(pairs, 1):
        if found != right:
            found, right = (repr(line.decode("utf-8", "replace")) for line in (found, right))
            return f"line {number}: it has {found}, the tables give {right}"
    return f"it has {len(committed)} bytes, the tables give {len(wanted)}"


def main():
    parser = argparse.ArgumentParser(
        description="Writes the sample library from the tables beside this script.",
        epilog="Exit codes: 0 written, or the same; 1 differs, or a mistake in a table; 2 usage.",
    )
    told = "write nothing; say where the committed file differs from what the tables give"
    parser.add_argument("--check", action="store_true", help=told)
    check = parser.parse_args().check
    library = make_library()
    name = LIBRARY_FILE.relative_to(SCRIPT.parent)
    if not check:
        LIBRARY_FILE.parent.mkdir(parents=True, exist_ok=True)
        LIBRARY_FILE.write_bytes(library)
        return
    if not LIBRARY_FILE.is_file():
        sys.exit(f"{name}: there is no such file; {SCRIPT.name} writes it")
    difference = first_difference(LIBRARY_FILE.read_bytes(), library)
    if difference:
        sys.exit(f"{name}: {difference}")


if __name__ == "__main__":
    main()
