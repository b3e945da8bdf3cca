"""Compares every format of songs with what Python's plistlib, csv and json read.

Usage: check_formats.py TAVREL FIELDS_DOCUMENT
"""
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
    return {"Tracks": tracks, "Playlists": []}


def table_of(document):
    rows = re.findall(r"^\| `(\w+)` \|([^|]*)\| (\w+) \|", Path(document).read_text(encoding="utf-8"), re.MULTILINE)
    return [(name, key.strip(), kind) for name, key, kind in rows]


def wanted_value(track, name, key, kind):
    value = track.get(key)
    if name == "path":
        url = track.get("Location", "")
        return {"file:///no%20folder/x.mp3": "/no folder/x.mp3",
                "file://localhost/C:/Music/x.mp3": "/C:/Music/x.mp3"}.get(url)
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
        song.update({key: track.get(key) for key in others})
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


def main():
    tavrel, document = sys.argv[1:]
    fields = table_of(document)
    library = make_library()
    others = ["Track ID", "Sort Name", "Volume Adjustment", "Purchased"]
    songs = wanted_songs(plistlib.loads(plistlib.dumps(library, sort_keys=False)), fields, others)
    plain = [{name: song[name] for name, _, _ in fields} for song in songs]
    header = [name for name, _, _ in fields]
    failures = []

    with tempfile.TemporaryDirectory() as folder:
        file = Path(folder, "library.xml")
        file.write_bytes(plistlib.dumps(library, sort_keys=False))

        def run(*arguments):
            command = [tavrel, "--library", str(file), "songs", *arguments]
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
            compare(name, rows, [header + others] + cells_of(songs, change))
        if not re.search(r"[^\r]\r\n\Z", text):
            failures.append("csv: rows end in CR LF")
        rows = [line.split("\t") for line in run("--format", "tsv").split("\n")]
        compare("tsv", rows, [header] + cells_of(plain, on_one_line) + [[""]])
        chosen = json.loads(run("--json", "--fields", "year,name", "--sort", "year", "--reverse"))
        years = [song["year"] for song in chosen]
        compare("order", years, [1990 + n for n in range(len(TEXTS), 0, -1)] + [None] * 3)
        compare("choice", list(chosen[0]), ["year", "name"])

    print("\n".join(failures))
    return 1 if failures else 0


sys.exit(main())
