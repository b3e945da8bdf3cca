"""Compares every format of songs, counts and playlists with what Python's plistlib, csv and json read.

Usage: check_formats.py TAVREL FIELDS_DOCUMENT
"""
import collections
import csv
import datetime
import io
import json
import plistlib
import re
import subprocess
import sys
import tempfile
from pathlib import Path

TEXTS = ("plain", "", "blank  within", "comma, quote \" both\"", "two\nlines", "tab\there", "=1+1", "+1", "-1", "@x",
         "ř é 日本", "&<>'", "a,b\n\nc", "\u202e", "'")


def make_library():
    tracks = {}
    for number, text in enumerate(TEXTS, 1):
        tracks[str(number)] = {"Track ID": number, "Name": text, "Comments": text, "Persistent ID": f"{number:016X}",
                               "Sort Name": text, "Total Time": number * 1010, "Year": 1990 + number, "Rating": 20,
                               "Size": 5 * 10 ** 9 + number, "Compilation": number % 2 == 0, "Disabled": False,
                               "Date Added": datetime.datetime(2015, 5, number, 7, 8, 9), "Volume Adjustment": -number,
                               "Purchased": True, "Location": f"http://localhost:80/{number}", "Track Type": "URL"}
    tracks["90"] = {"Track ID": 90, "Album": "bare"}
    tracks["91"] = {"Track ID": 91, "Location": "file:///no%20folder/x.mp3", "Year": "n", "Date Added": "yesterday"}
    tracks["92"] = {"Track ID": 92, "Location": "file://localhost/C:/Music/x.mp3", "Track Type": "File"}
    # Keys that are called like fields, or like what such keys are called.
    tracks["93"] = {"Track ID": 93, "id": "own", "lists": "own too", "key:id": "and this"}
    return {"Tracks": tracks, "Playlists": make_playlists()}


def make_playlists():
    def one(name, **more):
        return {"Name": name, "Playlist Items": [{"Track ID": 1}, {"Track ID": 2}], **more}
    folder = one("Folder", Folder=True, **{"Playlist Persistent ID": "F1"})
    inside = [one(text, **{"Playlist Persistent ID": f"A{number}", "Parent Persistent ID": "F1"})
              for number, text in enumerate(TEXTS)]
    return [folder, *inside, one("bare")]


def wanted_playlists(library):
    """In the order of the tree, which is that of the file here; the sample has no built-in list."""
    lists = []
    for position, playlist in enumerate(library["Playlists"]):
        lists.append({"id": playlist.get("Playlist Persistent ID"), "name": playlist["Name"],
                      "type": "folder" if playlist.get("Folder") else "list",
                      "folder": playlist.get("Parent Persistent ID"), "group": 2, "position": position, "kind": 0,
                      "songs": 2, "seconds": 3})
    return lists


def wanted_counts(library, field, key, value_of=lambda value: value):
    """What `stats` counts, in the order of the values, those without one last."""
    sums = collections.defaultdict(lambda: [0, 0])
    for track in library["Tracks"].values():
        value = track.get(key)
        sum_of = sums[None if value in (None, "", "n") else value_of(value)]
        sum_of[0] += 1
        sum_of[1] += track.get("Total Time", 0)
    values = sorted((value for value in sums if value is not None)) + [None]
    return [{field: value, "songs": sums[value][0], "seconds": sums[value][1] // 1000, "plays": 0} for value in values]


def table_of(document):
    rows = re.findall(r"^\| `(\w+)` \|([^|]*)\| (\w+) \|", Path(document).read_text(encoding="utf-8"), re.MULTILINE)
    return [(name, key.strip(), kind) for name, key, kind in rows]


def wanted_value(track, name, key, kind):
    value = track.get(key)
    if name == "path":
        return None  # no file is here
    if name == "status":
        url = track.get("Location", "")
        return "missing" if url.startswith("file:") else "remote" if url else "none"
    if kind == "flag":
        return bool(value)
    if isinstance(value, datetime.datetime):
        return value.strftime("%Y-%m-%dT%H:%M:%SZ")
    if kind in ("number", "seconds", "date") and isinstance(value, str):
        return None
    return value / 1000 if kind == "seconds" and value is not None else value


def wanted_songs(library, fields, others):
    songs = []
    for track in library["Tracks"].values():
        song = {name: wanted_value(track, name, key, kind) for name, key, kind in fields}
        song.update({name: track.get(key) for key, name in others.items()})
        songs.append(song)
    return songs


def as_cell(value):
    if value is None:
        return ""
    if isinstance(value, bool):
        return "true" if value else "false"
    return f"{value:.3f}".rstrip("0").rstrip(".") if isinstance(value, float) else str(value)


def cells_of(songs, change=str):
    return [[change(as_cell(value)) for value in song.values()] for song in songs]


def guarded(cell):
    return "'" + cell if cell[:1] in ("=", "+", "-", "@") else cell


def on_one_line(cell):
    return re.sub(r"[\t\r\n]+", " ", cell)


def read_all(run, wanted, compare):
    """Each format of what `run` prints."""
    names = list(wanted[0])
    compare("json", json.loads(run("--format", "json")), wanted)
    compare("--json", json.loads(run("--json")), wanted)
    compare("order", list(json.loads(run("--json"))[0]), names)
    for options, change in (((), str), (("--spreadsheet",), guarded)):
        rows = list(csv.reader(io.StringIO(run("--format", "csv", *options), newline=""), strict=True))
        compare(f"csv {options}", rows, [names] + cells_of(wanted, change))
    rows = [line.split("\t") for line in run("--format", "tsv").split("\n")]
    compare("tsv", rows, [names] + cells_of(wanted, on_one_line) + [[""]])


def main():
    tavrel, document = sys.argv[1:]
    fields = table_of(document)
    library = make_library()
    others = {key: key for key in ("Track ID", "Sort Name", "Volume Adjustment", "Purchased")}
    others.update({"id": "key:id", "lists": "key:lists", "key:id": "key:key:id"})
    songs = wanted_songs(plistlib.loads(plistlib.dumps(library, sort_keys=False)), fields, others)
    plain = [{name: song[name] for name, _, _ in fields} for song in songs]
    header = [name for name, _, _ in fields]
    failures = []

    with tempfile.TemporaryDirectory() as folder:
        file = Path(folder, "library.xml")
        file.write_bytes(plistlib.dumps(library, sort_keys=False))

        def run(*arguments, command="songs"):
            command = [tavrel, "--library", str(file), command, *arguments]
            return subprocess.run(command, check=True, stdout=subprocess.PIPE).stdout.decode()

        def compare(what, found, wanted):
            for line, (one, other) in enumerate(zip(found, wanted)):
                if one != other:
                    failures.append(f"{what}, {line}:\n  found  {str(one)[:2000]}\n  wanted {str(other)[:2000]}")
                    return
            if len(found) != len(wanted):
                failures.append(f"{what}: {len(found)} and not {len(wanted)}")

        compare("json", json.loads(run("--format", "json")), plain)
        compare("--json", json.loads(run("--json")), plain)
        compare("order", list(json.loads(run("--json"))[0]), header)
        compare("jsonl", [json.loads(line) for line in run("--format", "jsonl").splitlines()], plain)
        compare("all", json.loads(run("--json", "--fields", "all")), songs)
        for name, options, change in (("csv", (), str), ("spreadsheet", ("--spreadsheet",), guarded)):
            text = run("--format", "csv", "--fields", "all", *options)
            rows = list(csv.reader(io.StringIO(text, newline=""), strict=True))
            compare(name, rows, [header + list(others.values())] + cells_of(songs, change))
        if not re.search(r"[^\r]\r\n\Z", text):
            failures.append("csv: rows end in CR LF")
        rows = [line.split("\t") for line in run("--format", "tsv").split("\n")]
        compare("tsv", rows, [header] + cells_of(plain, on_one_line) + [[""]])
        for command, options, wanted in (
                ("stats", ("--by", "year"), wanted_counts(library, "year", "Year")),
                ("stats", ("--by", "decade"), wanted_counts(library, "decade", "Year", lambda year: year // 10 * 10)),
                ("playlists", (), wanted_playlists(library))):
            read_all(lambda *more: run(*options, *more, command=command), wanted, compare)
        chosen = json.loads(run("--json", "--fields", "year,name", "--sort", "year", "--reverse"))
        years = [song["year"] for song in chosen]
        compare("order", years, [1990 + n for n in range(len(TEXTS), 0, -1)] + [None] * 4)
        compare("choice", list(chosen[0]), ["year", "name"])

    print("\n".join(failures))
    return 1 if failures else 0


sys.exit(main())
