"""Where iTunes keeps the file of a track, and how it writes that down."""

import sys
import unicodedata
import urllib.parse

MEDIA_FOLDER = ("Users", "sample", "Music", "iTunes", "iTunes Media")
EXTERNAL_FOLDER = ("Volumes", "Shellac Archive")
LONGEST_FILE_NAME = 255  # of the Mac's file system, in UTF-16 units


def location(track):
    """The values under "Location", "File Folder Count" and "Library Folder Count"."""
    folders = media_folders(track)
    outside = "external" in track.notes
    scheme = "file://localhost/" if "localhost" in track.more else "file:///"
    root = EXTERNAL_FOLDER if outside else MEDIA_FOLDER
    url = scheme + escape_path(root + folders + (file_name(track),))
    return (url, -1, -1) if outside else (url, 2 + len(folders), 1)


def media_folders(track):
    """The folders that lead from the media folder to the track's file."""
    folder = track.format.folder
    if folder == "Movies":
        return (folder, file_safe(track["Name"]))
    album = file_safe(track.get("Album", "Unknown Album"))
    if folder in ("Podcasts", "iTunes U"):
        return (folder, album)
    if "Compilation" in track:
        return (folder, "Compilations", album)
    return (folder, file_safe(track.get("Album Artist", "Unknown Artist")), album)


def file_name(track):
    number = ""
    if "Track Number" in track:
        disc = f"{track['Disc Number']}-" if track.get("Disc Count", 1) > 1 else ""
        number = f"{disc}{track['Track Number']:02} "
    name = f"{number}{file_safe(track['Name'])}.{track.format.extension}"
    if len(unicodedata.normalize("NFD", name).encode("utf-16-le")) // 2 > LONGEST_FILE_NAME:
        sys.exit(f"recordings.tsv: the name makes too long a file name: {track['Name']}")
    return name


def file_safe(name):
    """A name as iTunes makes a file or folder of it."""
    return "".join("_" if character in '/\\:*?"<>|' else character for character in name)


def escape_path(parts):
    """Percent-encodes a path whose names the Mac's file system keeps decomposed."""
    path = unicodedata.normalize("NFD", "/".join(parts))
    return urllib.parse.quote(path, safe="/!$&'()*+,=@~")
