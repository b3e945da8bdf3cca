"""How iTunes 12.1 for the Mac lays the file out: order of keys, values, references, indents."""

import base64
import datetime
import sys

DATA_WIDTH = 72  # characters of base64 in one line, tabs aside

# The order in which iTunes writes the keys.
TRACK_KEYS = (
    "Track ID", "Name", "Artist", "Album Artist", "Composer", "Album", "Grouping", "Genre", "Kind",
    "Size", "Total Time", "Disc Number", "Disc Count", "Track Number", "Track Count", "Year", "BPM",
    "Date Modified", "Date Added", "Bit Rate", "Sample Rate", "Volume Adjustment",
    "Part Of Gapless Album", "Comments", "Play Count", "Play Date", "Play Date UTC", "Skip Count",
    "Skip Date", "Release Date", "Rating", "Rating Computed", "Album Rating",
    "Album Rating Computed", "Loved", "Compilation", "Artwork Count", "Sort Album", "Sort Album Artist", "Sort Artist", "Sort Composer", "Sort Name",
    "Persistent ID", "Disabled", "Track Type", "Purchased", "Has Video", "HD", "Video Width",
    "Video Height", "Movie", "Podcast", "iTunesU", "Unplayed", "File Type", "Location",
    "File Folder Count", "Library Folder Count",
)
PLAYLIST_KEYS = (
    "Name", "Master", "Playlist ID", "Playlist Persistent ID", "Parent Persistent ID", "Visible",
    "Distinguished Kind", "Music", "Movies", "TV Shows", "Podcasts", "iTunesU", "Audiobooks",
    "Purchased Music", "Party Shuffle", "All Items", "Folder", "Smart Info", "Smart Criteria",
    "Playlist Items",
)


def escape_text(text):
    """iTunes writes references in decimal, and leaves quotes as they are."""
    return text.replace("&", "&#38;").replace("<", "&#60;")


def write_value(key, value, indent):
    """The lines of one pair of a dictionary."""
    tabs = "\t" * indent
    head = f"{tabs}<key>{key}</key>"
    if isinstance(value, bool):
        return [head + ("<true/>" if value else "<false/>")]
    if isinstance(value, int):
        return [f"{head}<integer>{value}</integer>"]
    if isinstance(value, datetime.datetime):
        return [f"{head}<date>{value:%Y-%m-%dT%H:%M:%SZ}</date>"]
    if isinstance(value, str):
        return [f"{head}<string>{escape_text(value)}</string>"]
    if isinstance(value, bytes):
        text = base64.b64encode(value).decode("ascii")
        chunks = [tabs + text[at : at + DATA_WIDTH] for at in range(0, len(text), DATA_WIDTH)]
        return [head, f"{tabs}<data>", *chunks, f"{tabs}</data>"]
    if isinstance(value, list):
        items = [line for item in value for line in write_dict(item, indent + 1)]
        return [head, f"{tabs}<array>", *items, f"{tabs}</array>"]
    return [head, *write_dict(value, indent)]


def write_dict(pairs, indent):
    tabs = "\t" * indent
    inner = [line for key, value in pairs.items() for line in write_value(key, value, indent + 1)]
    return [f"{tabs}<dict>", *inner, f"{tabs}</dict>"]


def in_order(pairs, keys):
    """The pairs in the order of `keys`, which must have a place for each of them."""
    unknown = set(pairs) - set(keys)
    if unknown:
        sys.exit(f"no place in the order of keys for {', '.join(sorted(unknown))}")
    return {key: pairs[key] for key in keys if key in pairs}


def in_track_order(pairs):
    return in_order(pairs, TRACK_KEYS)


def in_playlist_order(pairs):
    return in_order(pairs, PLAYLIST_KEYS)


def property_list(library):
    """The whole file, as bytes."""
    lines = [
        '<?xml version="1.0" encoding="UTF-8"?>',
        '<!DOCTYPE plist PUBLIC "-//Apple Computer//DTD PLIST 1.0//EN"'
        ' "http://www.apple.com/DTDs/PropertyList-1.0.dtd">',
        '<plist version="1.0">',
        *write_dict(library, 0),
        "</plist>",
    ]
    return ("\n".join(lines) + "\n").encode("utf-8")
