"""The tracks of the sample library, from albums.tsv and recordings.tsv."""

import collections
import datetime
import sys
import unicodedata

from generator.formats import FORMATS
from generator.locations import location
from generator.tables import draw, parse_settings, persistent_id, read_table

EXPORTED = datetime.datetime(2015, 5, 18, 7, 42, 11)
FIRST_IMPORT = datetime.datetime(2013, 3, 2, 10, 15, 0)
LAST_IMPORT = datetime.datetime(2015, 5, 10, 16, 40, 0)
EVENLY_SPREAD = 34  # albums that came in between the two; those behind them in the table came a day apart
MAC_EPOCH = datetime.datetime(1904, 1, 1)
LOCAL_TIME = datetime.timedelta(hours=9)  # "Play Date" is in local time, "Play Date UTC" is not


class Track(dict):
    """What iTunes writes of a track, by key, and what only this generator knows of it."""

    def __init__(self, album, row):
        super().__init__()
        self.album, self.row = album, row
        self.key = "/".join(filter(None, (row["album"], row["disc"], row["track"])))
        self.format = FORMATS[album["format"]]
        self.notes = set(album["notes"].split())
        self.more = parse_settings(row["more"])
        self.form = "NFD" if "decomposed" in self.notes | set(self.more) else "NFC"

    def put(self, pairs):
        """Stores the values that there are: no empty text, no zero, no false."""
        for key, value in pairs.items():
            if value:
                text = isinstance(value, str)
                self[key] = unicodedata.normalize(self.form, value) if text else value


def make_tracks():
    albums = {row["id"]: row for row in read_table("albums.tsv")}
    rows = read_table("recordings.tsv")
    tracks, track_id = [], 1021
    for row in rows:
        track = Track(albums[row["album"]], row)
        same_album = tracks and tracks[-1].album is track.album
        track_id += 2 if same_album else 9  # ascending, with gaps
        track["Track ID"] = track_id
        track["Persistent ID"] = persistent_id("track", track.key)
        track["Date Added"] = import_time(row, list(albums))
        put_tags(track)
        put_numbers(track, disc_sizes(row["album"], rows))
        put_sort_fields(track)
        put_sound(track)
        put_history(track)
        put_file(track)
        tracks.append(track)
    put_album_ratings(tracks)
    if len({track["Persistent ID"] for track in tracks}) != len(tracks):
        sys.exit("recordings.tsv: two lines have the same album, disc and track")
    return tracks


def import_time(row, albums):
    """The albums came in one after the other, their tracks seven seconds apart."""
    number = albums.index(row["album"])
    minutes = (LAST_IMPORT - FIRST_IMPORT).days * 24 * 60
    spread = datetime.timedelta(minutes=minutes * number // (EVENLY_SPREAD - 1))
    later = number - EVENLY_SPREAD + 1
    album = LAST_IMPORT + datetime.timedelta(days=later) if later > 0 else FIRST_IMPORT + spread
    return album + datetime.timedelta(seconds=7 * int(row["track"] or 0))


def put_tags(track):
    album, row, more = track.album, track.row, track.more
    track.put({
        "Name": row["name"],
        "Artist": row["artist"] or album["album artist"],
        "Album Artist": album["album artist"],
        "Composer": row["composer"] or album["composer"],
        "Album": album["album"],
        "Grouping": more.get("grouping"),
        "Genre": album["genre"],
        "Year": int(more.get("year") or album["year"] or 0),
        "BPM": int(more.get("bpm", 0)),
        "Comments": more.get("comments"),
        "Part Of Gapless Album": "gapless" in track.notes,
        "Compilation": "compilation" in track.notes,
        "Disabled": "disabled" in more,
    })


def disc_sizes(album, rows):
    """The highest track number of each disc of an album."""
    sizes = collections.Counter()
    for row in rows:
        if row["album"] == album and row["disc"]:
            sizes[row["disc"]] = max(sizes[row["disc"]], int(row["track"]))
    return sizes


def put_numbers(track, sizes):
    disc, number = track.row["disc"], track.row["track"]
    track.put({
        "Disc Number": int(disc or 0),
        "Disc Count": len(sizes),
        "Track Number": int(number or 0),
        "Track Count": sizes[disc],
    })


def put_sort_fields(track):
    """A track with an artist or composer of its own does not inherit the album's sort field."""
    album, row, more = track.album, track.row, track.more
    artist = album["sort album artist"]
    name = row["name"]
    track.put({
        "Sort Album": album["sort album"],
        "Sort Album Artist": artist,
        "Sort Artist": more.get("sort-artist") or ("" if row["artist"] else artist),
        "Sort Composer": more.get("sort-composer")
        or ("" if row["composer"] else album["sort composer"]),
        "Sort Name": more.get("sort-name") or (name[4:] if name.startswith("The ") else ""),
    })


def put_sound(track):
    if track.row["time"]:
        minutes, seconds = map(int, track.row["time"].split(":"))
        milliseconds = (minutes * 60 + seconds) * 1000 + draw(1000, "time", track.key)
        tags = 20000 + draw(60000, "size", track.key)
        track["Total Time"] = milliseconds
        track["Size"] = milliseconds * track.format.rate // 8 + tags
    track.put({
        "Kind": track.format.kind,
        "Bit Rate": track.format.rate,
        "Sample Rate": 0 if track.format.media == "movie" else 44100,
        "Volume Adjustment": int(track.more.get("volume", 0)),
    })


def put_history(track):
    """Plays and skips: most tracks were played seldom or never, a few often."""
    lot = draw(100, "plays", track.key)
    plays = int(track.more.get("plays", 0 if lot < 45 else 1 + (lot - 45) ** 2 // 330))
    if plays:
        played = moment_since_import(track, "played")
        on_the_mac = int((played + LOCAL_TIME - MAC_EPOCH).total_seconds())
        track.update({"Play Count": plays, "Play Date": on_the_mac, "Play Date UTC": played})
    if draw(9, "skipped at all", track.key) == 0:
        track["Skip Count"] = 1 + draw(3, "skips", track.key)
        track["Skip Date"] = moment_since_import(track, "skipped")
    track.put({
        "Rating": int(track.more.get("rating", 0)),
        "Rating Computed": "computed" in track.more,
        "Loved": "loved" in track.more,
    })


def moment_since_import(track, what):
    known = int((EXPORTED - track["Date Added"]).total_seconds())
    return EXPORTED - datetime.timedelta(seconds=draw(known, what, track.key))


def put_album_ratings(tracks):
    """iTunes computes an album's rating from its tracks' and writes it with each of them."""
    ratings = collections.defaultdict(list)
    for track in tracks:
        if "Rating" in track and "Rating Computed" not in track:
            ratings[track.row["album"]].append(track["Rating"])
    for track in tracks:
        given = ratings[track.row["album"]]
        if given:
            track["Album Rating"] = sum(given) // len(given) // 20 * 20
            track["Album Rating Computed"] = True


def put_file(track):
    track["Track Type"] = "File"
    track.update(track.format.marks)
    if "Purchased" in track or "Podcast" in track:
        track["Release Date"] = track["Date Added"].replace(hour=7, minute=0, second=0)
    if "url" in track.more:
        place = (track.more["url"], -1, -1)
    elif track.format.folder:
        place = location(track)
        before = datetime.timedelta(hours=3, seconds=draw(9999, "file", track.key))
        track["Date Modified"] = track["Date Added"] - before
    else:
        return
    track["Location"], track["File Folder Count"], track["Library Folder Count"] = place
