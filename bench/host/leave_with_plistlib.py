"""Does with Python's plistlib what three commands of tavrel do that leave with one's music, and prints how long.

Usage: leave_with_plistlib.py LIBRARY MUSIC FOLDER OUR_LISTS OUR_DATABASE OUR_CHECK

MUSIC holds the files of the songs, FOLDER takes the answers. Each time is that of the processor for reading the
library file and for the answer. A line is "export m3u8: seconds". Ends with 1 where an answer differs from ours in
what is counted: songs in all lists, rows of each table, files that are found.
"""
import collections
import os
import plistlib
import re
import sqlite3
import sys
import time
from urllib.parse import unquote



def path_of(track, top, music):
    url = track.get("Location", "")
    if not url.startswith("file://"):
        return None
    path = unquote("/" + url.split("/", 3)[3])
    path = music + path[len(top):] if path.startswith(top) else path
    return path if os.path.exists(path) else None


def export_m3u8(library, top, music, folder):
    tracks = {track["Track ID"]: track for track in library["Tracks"].values()}
    paths = {number: path_of(track, top, music) for number, track in tracks.items()}
    songs = 0
    for number, playlist in enumerate(library["Playlists"]):
        if not playlist.get("Visible", True) or playlist.get("Folder"):
            continue
        lines = ["#EXTM3U"]
        for item in playlist.get("Playlist Items", ()):
            track = tracks.get(item["Track ID"])
            path = track and (paths[item["Track ID"]] or track.get("Location"))
            if path:
                seconds = (track.get("Total Time", 0) + 500) // 1000 or -1
                artist = track["Artist"] + " - " if "Artist" in track else ""
                lines.append(f"#EXTINF:{seconds},{artist}{track.get('Name', '')}\n{path}")
                songs += 1
        with open(os.path.join(folder, f"{number}.m3u8"), "w", encoding="utf-8") as file:
            file.write("\n".join(lines) + "\n")
    return songs


def our_songs(folder):
    count = 0
    for place, _, files in os.walk(folder):
        for name in files:
            with open(os.path.join(place, name), encoding="utf-8") as file:
                count += sum(line.startswith("#EXTINF:") for line in file)
    return count


def value(thing):
    return str(thing) if isinstance(thing, (list, dict)) or not isinstance(thing, (int, float, str, bytes)) else thing


def export_sqlite(library, top, music, folder):
    database = sqlite3.connect(os.path.join(folder, "library.sqlite"))
    database.executescript("PRAGMA journal_mode = OFF; PRAGMA synchronous = OFF;")
    tracks = library["Tracks"].values()
    keys = list(dict.fromkeys(key for track in tracks for key in track))
    columns = ", ".join('"' + key + '"' for key in keys)
    database.execute(f"CREATE TABLE tracks (song INTEGER PRIMARY KEY, path TEXT, {columns})")
    database.execute("CREATE TABLE items (list, position, song)")
    places = ", ".join("?" * (len(keys) + 2))
    database.executemany(f"INSERT INTO tracks VALUES ({places})", (
        [number, path_of(track, top, music)] + [value(track.get(key)) if key in track else None for key in keys]
        for number, track in enumerate(tracks)))
    numbers = {track["Track ID"]: number for number, track in enumerate(tracks)}
    shown = [playlist for playlist in library["Playlists"] if playlist.get("Visible", True)]
    database.executemany("INSERT INTO items VALUES (?, ?, ?)", (
        (number, position, numbers[item["Track ID"]]) for number, playlist in enumerate(shown)
        for position, item in enumerate(playlist.get("Playlist Items", ())) if item["Track ID"] in numbers))
    for name, table, column in (("i1", "tracks", '"Persistent ID"'), ("i2", "tracks", "Artist"),
                                ("i3", "tracks", "Album"), ("i4", "items", "song")):
        database.execute(f"CREATE INDEX {name} ON {table} ({column})")
    database.commit()
    return rows_of(database)


def rows_of(database):
    return [database.execute(f"SELECT count(*) FROM {table}").fetchone()[0] for table in ("tracks", "items")]


def check(library, top, music, folder):
    found = 0
    titles = collections.defaultdict(list)
    ids = collections.Counter()
    claimed = set()
    for track in library["Tracks"].values():
        path = path_of(track, top, music)
        if path:
            found += 1
            claimed.add(path)
        title = tuple(track.get(key, "").casefold() for key in ("Artist", "Album", "Name"))
        titles[title].append(track.get("Total Time", 0))
        ids[track["Track ID"]] += 1
        ids[track.get("Persistent ID")] += 1
    orphans = [os.path.join(place, name) for place, _, files in os.walk(music) for name in files
               if os.path.join(place, name) not in claimed]
    with open(os.path.join(folder, "check"), "w", encoding="utf-8") as file:
        print(found, len(orphans), sum(len(times) > 1 for times in titles.values()), file=file)
    return found


def main():
    file, music, folder, lists, database, checked = sys.argv[1:]
    os.makedirs(folder, exist_ok=True)
    for name in os.listdir(folder):
        os.unlink(os.path.join(folder, name))
    start = time.process_time()
    with open(file, "rb") as stream:
        library = plistlib.load(stream, fmt=plistlib.FMT_XML)
    load = time.process_time() - start
    top = unquote("/" + library["Music Folder"].split("/", 3)[3]).rstrip("/")
    answers = {}
    for name, task in (("export m3u8", export_m3u8), ("export sqlite", export_sqlite), ("check", check)):
        start = time.process_time()
        answers[name] = task(library, top, music, folder)
        print(f"{name}: {load + time.process_time() - start}")
    with open(checked, encoding="utf-8") as stream:
        found = int(re.search(r"([0-9]+) +files found", stream.read()).group(1))
    ours = {"export m3u8": our_songs(lists), "export sqlite": rows_of(sqlite3.connect(database)), "check": found}
    if answers != ours:
        sys.exit(f"the answers differ: {answers}, ours: {ours}")


main()
