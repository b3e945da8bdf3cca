#!/usr/bin/env python3
"""Writes the artwork cache of the sample library, home/Music/iTunes/Album Artwork.

Every file is there for something that readers meet; CASES says what. The tracks' persistent IDs are
those that make_sample_library.py writes. No clock, no network: the same pictures on every run.
"""

import argparse
import pathlib
import sys

sys.dont_write_bytecode = True  # no __pycache__ in the source tree
from generator import cache_files, pictures, posters
from generator.tables import persistent_id

ARTWORK = pathlib.Path(__file__).resolve().parent / "home" / "Music" / "iTunes" / "Album Artwork"
LIBRARY = persistent_id("library")
OTHER_LIBRARY = persistent_id("another library")

PNG, JPEG, ARGB, BGRA = pictures.png, pictures.jpeg, pictures.argb, pictures.bgra
OLD_JPEG, NEW_JPEG = b"\x0d\0\0\0", b"\0\0\0\x0d"
NEW_PNG, STREAM_PNG = b"\0\0\0\x0e", b"\0\0\x23\x28"


def track(place):
    return persistent_id("track", place)


def blocks(name, ids, *images):
    """The blocks of several images: (encoder, code, size) with a layout as the fourth, if not 208."""
    made = []
    for encode, code, size, *layout in images:
        picture = encode(posters.cover(name, size))
        made.append(cache_files.block(picture, code, size, ids, *layout))
    return b"".join(made)


def whole(place, *images, library=LIBRARY):
    return cache_files.header() + blocks(place, (library, track(place)), *images)


def usual(place, extension=".itc2", cache="Cache"):
    """The path that iTunes gives the file of a track."""
    return f"{cache_files.folder(LIBRARY, track(place), cache)}/{LIBRARY}-{track(place)}{extension}"


def cases():
    """Path and content of each file."""
    files = {}

    def song(place, *images, **where):
        files[usual(place, **where)] = whole(place, *images)

    # The usual layout, its two codes, several sizes in one file.
    sizes = [(PNG, b"PNGf", size) for size in (256, 128, 64)]
    song("brandenburg/1/1", *sizes)
    song("seasons/1/1", (JPEG, OLD_JPEG, 200), (PNG, b"PNGf", 64))
    song("joplin/1/1", *[(PNG, b"PNGf", size) for size in (32, 64, 160)], extension=".itc")
    # The only song of its album that has a cover, and not the first.
    song("satie/1/3", (PNG, b"PNGf", 128))
    # An album of several artists, each of whose songs has its own.
    song("voices/1/1", (PNG, b"PNGf", 128))
    song("voices/1/2", (JPEG, NEW_JPEG, 160, 196))

    # The other layouts and codes.
    song("new-world/1/1", (JPEG, NEW_JPEG, 200, 196))
    song("slavonic/1/1", (PNG, STREAM_PNG, 128, 196))
    song("months/1/1", (BGRA, b"bGRA", 96, 196))
    song("pictures/1/1", (ARGB, b"ARGb", 96))
    song("nocturnes/1/1", (lambda rows: b"", b"xdat", 0), (PNG, b"PNGf", 128))
    song("hogaku/1/1", (PNG, NEW_PNG, 128))
    song("grieg/1/1", (JPEG, b"PNGf", 128), (PNG, NEW_JPEG, 64))  # the codes are wrong
    song("joachim/1/1", (PNG, b"PNGf", 96, 212))
    song("sarasate/1/1", (JPEG, NEW_JPEG, 96, 216))

    # Names: digits in lower case; two files for one track, of which the first in the order of paths
    # is the song's.
    path = usual("caruso/1/1")
    files[path.lower().replace("cache/", "Cache/")] = whole("caruso/1/1", (PNG, b"PNGf", 128))
    song("serenade/1/1", (PNG, b"PNGf", 128))
    song("serenade/1/1", (PNG, b"PNGf", 32), cache="Download")
    # Names of no song of this library: another library's, an unknown track's, and such as have not
    # two IDs of 16 digits with one "-" between them.
    stray = track("fireworks/1/1")
    for name in (
        f"{OTHER_LIBRARY}-{stray}",
        f"{LIBRARY}-{persistent_id('track', 'streamed')}",
        f"{LIBRARY}-{stray}-2",
        f"{LIBRARY}00-{stray}",
        stray,
    ):
        folder = "Download" if "-" in name else "Custom"
        files[f"{folder}/{name}.itc2"] = whole(name, (JPEG, NEW_JPEG, 96, 196))
    # Not catalogued: upper case, another extension.
    files[f"Cache/{LIBRARY}-{stray}.ITC2"] = whole(stray, (PNG, b"PNGf", 8))
    files["Cache/Album Artwork.plist"] = b""

    # Damaged: cut inside the image; cut inside the header; another tag; a length of 0.
    files[usual("overtures/1/1")] = whole("overtures/1/1", (PNG, b"PNGf", 96))[:-100]
    files[usual("vaccai/1/1")] = cache_files.header()[:20]
    files[usual("overgrown/1/1")] = cache_files.header(tag=b"Itch")
    empty = cache_files.block(b"", b"PNGf", 96, (LIBRARY, track("rossi/1/1")), length=0)
    files[usual("rossi/1/1")] = cache_files.header() + empty
    # A length of 0 behind a good image: the image is read.
    sousa = empty.replace(b"data", b"none")
    files[usual("sousa/1/1")] = whole("sousa/1/1", (PNG, b"PNGf", 96)) + sousa
    return files


def main():
    parser = argparse.ArgumentParser(
        description="Writes the artwork cache of the sample library.",
        epilog="Exit codes: 0 written, or the same; 1 differs; 2 usage.",
    )
    told = "write nothing; say which committed files differ from what this script gives"
    parser.add_argument("--check", action="store_true", help=told)
    check = parser.parse_args().check
    files = cases()
    if not check:
        for name, content in files.items():
            (ARTWORK / name).parent.mkdir(parents=True, exist_ok=True)
            (ARTWORK / name).write_bytes(content)
        return
    there = {str(path.relative_to(ARTWORK)) for path in ARTWORK.rglob("*") if path.is_file()}
    for name in sorted(there | set(files)):
        if name not in there:
            sys.exit(f"{name}: it is missing")
        if name not in files:
            sys.exit(f"{name}: this script does not write it")
        if (ARTWORK / name).read_bytes() != files[name]:
            sys.exit(f"{name}: it differs from what this script gives")


if __name__ == "__main__":
    main()
