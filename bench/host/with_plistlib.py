"""Does with Python's plistlib what five commands of tavrel do, and prints how long each took.

Usage: with_plistlib.py LIBRARY FOLDER FIELDS_DOCUMENT WORD...

Answers are written into FOLDER. Each time is that of the processor for reading the file and for the answer; the
start of the interpreter is not counted. A line is a command, a blank and seconds.
"""
import collections
import csv
import datetime
import json
import os
import plistlib
import re
import sys
import time
import unicodedata
from urllib.parse import unquote

MADE = {"path", "status"}
FLAGS = {"ratingComputed", "disabled", "compilation", "explicit", "loved", "podcast", "movie", "tvShow"}
WORD_KEYS = ("Name", "Artist", "Album Artist", "Album", "Composer")
KIND_OF_GIVEN_LISTS = 200


def fields_of(document):
    """The names of the fields with their keys, in the order of the columns."""
    with open(document, encoding="utf-8") as stream:
        return dict(re.findall(r"^\| `(\w+)` \| *([^|]*?) *\|", stream.read(), re.MULTILINE))


def composed(text):
    return text if text.isascii() else unicodedata.normalize("NFC", text)


def accentless(text):
    if text.isascii():
        return text.lower()
    parts = unicodedata.normalize("NFD", text).casefold()
    return "".join(part for part in parts if not unicodedata.combining(part))


def overview(library, _):
    tracks = library["Tracks"].values()
    sums = {"artists": collections.defaultdict(lambda: [0, 0]), "genres": collections.defaultdict(lambda: [0, 0])}
    answer = {"songs": len(tracks), "movies": 0, "podcasts": 0, "totalTime": 0}
    albums = collections.Counter()
    for track in tracks:
        length = track.get("Total Time", 0)
        answer["totalTime"] += length
        if track.get("Podcast"):
            answer["podcasts"] += 1
        elif track.get("Movie"):
            answer["movies"] += 1
        for name, key in (("artists", "Artist"), ("genres", "Genre")):
            if track.get(key):
                entry = sums[name][composed(track[key])]
                entry[0] += 1
                entry[1] += length
        albums[composed(track.get("Album", "")), composed(track.get("Album Artist", track.get("Artist", "")))] += 1
    for name, entries in sums.items():
        ranked = sorted(entries.items(), key=lambda entry: (-entry[1][0], -entry[1][1], entry[0].encode()))
        answer[name] = [{"name": name, "songs": songs, "totalTime": length} for name, (songs, length) in ranked[:5]]
    albums.most_common(5)
    sorted(tracks, key=lambda track: -track.get("Play Count", 0))[:5]
    return json.dumps(answer)


def cell(value):
    if value is None or isinstance(value, (bytes, list, dict)):
        return ""
    if isinstance(value, bool):
        return "true" if value else "false"
    if isinstance(value, datetime.datetime):
        return value.strftime("%Y-%m-%dT%H:%M:%SZ")
    return value if isinstance(value, str) else str(value)


def path_and_status(track):
    url = track.get("Location")
    if url is None or not url.startswith("file:"):
        return "", "remote" if url or track.get("Track Type") in ("Remote", "URL") else "none"
    path = unquote("/" + url.split("/", 3)[3])
    return (path, "found") if os.path.exists(path) else ("", "missing")


def songs(library, fields):
    tracks = library["Tracks"].values()
    known = set(fields.values())
    others = list(dict.fromkeys(key for track in tracks for key in track if key not in known))
    with open(answer_file("songs"), "w", encoding="utf-8", newline="") as file:
        writer = csv.writer(file, lineterminator="\r\n")
        writer.writerow(list(fields) + others)
        for track in tracks:
            row = [cell(track.get(key, False if name in FLAGS else None)) for name, key in fields.items()
                   if name not in MADE]
            names = [name for name in fields if name not in MADE]
            place = names.index("seconds")
            if row[place]:
                row[place] = f"{int(row[place]) / 1000:.3f}".rstrip("0").rstrip(".")
            writer.writerow(row + list(path_and_status(track)) + [cell(track.get(key)) for key in others])


def search(library, words):
    found = []
    for track in library["Tracks"].values():
        text = "\0".join(accentless(track.get(key, "")) for key in WORD_KEYS)
        if all(word in text for word in words):
            found.append("\t".join(cell(track.get(key)) for key in ("Name", "Artist", "Album", "Year", "Genre",
                                                                    "Total Time")))
    return "\n".join(found)


def stats(library, _):
    years = collections.defaultdict(lambda: [0, 0, 0])
    for track in library["Tracks"].values():
        entry = years[track.get("Year")]
        entry[0] += 1
        entry[1] += track.get("Total Time", 0)
        entry[2] += track.get("Play Count", 0)
    ranked = sorted(years.items(), key=lambda entry: (entry[0] is None, entry[0] or 0))
    return json.dumps([{"year": year, "songs": count, "seconds": length // 1000, "plays": plays}
                       for year, (count, length, plays) in ranked])


def is_own(playlist):
    kind = playlist.get("Distinguished Kind", 0)
    is_built_in = playlist.get("Master") or 0 < kind < KIND_OF_GIVEN_LISTS
    return playlist.get("Visible", True) and (playlist.get("Folder") or not is_built_in)


def playlists(library, _):
    times = {track["Track ID"]: track.get("Total Time", 0) for track in library["Tracks"].values()}
    answer = []
    for playlist in library["Playlists"]:
        items = [item["Track ID"] for item in playlist.get("Playlist Items", ()) if item["Track ID"] in times]
        if items and is_own(playlist):
            answer.append({"name": playlist["Name"], "songs": len(items),
                           "seconds": sum(times[item] for item in items) // 1000})
    return json.dumps(answer)


def answer_file(name):
    return os.path.join(sys.argv[2], name)


def main():
    file, _, document, *words = sys.argv[1:]
    fields = fields_of(document)
    words = [accentless(word) for word in words]
    start = time.process_time()
    with open(file, "rb") as stream:
        library = plistlib.load(stream, fmt=plistlib.FMT_XML)
    load = time.process_time() - start
    for task, argument in ((overview, None), (songs, fields), (search, words), (stats, None), (playlists, None)):
        start = time.process_time()
        answer = task(library, argument)
        if answer is not None:
            with open(answer_file(task.__name__), "w", encoding="utf-8") as stream:
                stream.write(answer)
        print(task.__name__, load + time.process_time() - start)


main()
