"""The playlists of the sample library, from playlists.tsv."""

import sys
import unicodedata

from generator.smart_rule import SmartRule
from generator.tables import draw, persistent_id, read_table
from generator.tracks import EXPORTED


def make_playlists(tracks):
    rows = read_table("playlists.tsv")
    if len({(row["folder"], row["name"]) for row in rows}) != len(rows):
        sys.exit("playlists.tsv: two playlists of one folder have the same name")
    playlists, playlist_id, names = [], tracks[-1]["Track ID"] + 27, set()
    for row in rows:
        items = choose(row, rows, tracks)
        place = (row["folder"], row["name"]) if row["name"] in names else (row["name"],)
        names.add(row["name"])
        playlists.append(make_playlist(row, persistent_id("playlist", *place), playlist_id, items))
        playlist_id += 3 + len(items)  # iTunes numbers the items as well
    return playlists


def make_playlist(row, identity, playlist_id, items):
    form = "NFD" if "decomposed" in row["notes"] else "NFC"
    playlist = {
        "Name": unicodedata.normalize(form, row["name"]),
        "Playlist ID": playlist_id,
        "Playlist Persistent ID": identity,
        "All Items": True,
    }
    if "hidden" in row["notes"]:
        playlist["Visible"] = False
    if row["kind"]:
        playlist["Distinguished Kind"] = int(row["kind"])
    if row["mark"]:
        playlist[row["mark"]] = True
    if row["folder"]:
        playlist["Parent Persistent ID"] = persistent_id("playlist", row["folder"])
    rule = smart_rule(row)
    if rule:
        playlist["Smart Info"], playlist["Smart Criteria"] = rule.info(), rule.criteria()
    if items:
        playlist["Playlist Items"] = [{"Track ID": track["Track ID"]} for track in items]
    return playlist


def smart_rule(row):
    word, _, rule = row["contents"].partition(" ")
    return SmartRule(rule) if word == "smart" else None


def choose(row, rows, tracks):
    """The tracks of a playlist, in its order."""
    word, _, argument = row["contents"].partition(" ")
    if word == "nothing":
        return []
    if word == "everything":
        return sorted(tracks, key=display_order)
    if word == "media":
        return sorted((t for t in tracks if t.format.media == argument), key=display_order)
    if word == "purchased":
        return [track for track in tracks if "Purchased" in track]
    if word == "draw":
        music = [track for track in tracks if track.format.media == "music"]
        return sorted(music, key=lambda t: draw(1 << 64, row["name"], t.key))[: int(argument)]
    if word == "children":
        return folder_items(row, rows, tracks)
    if word == "smart":
        return smart_rule(row).choose(tracks, EXPORTED)
    return [track for key in row["contents"].split() for track in find_tracks(key, tracks)]


def folder_items(folder, rows, tracks):
    """A folder holds what its children hold, each track once."""
    children = [row for row in rows if row["folder"] == folder["name"]]
    held = {t["Track ID"]: t for child in children for t in choose(child, rows, tracks)}
    return list(held.values())


def find_tracks(key, tracks):
    """The track, disc or album that `key` names, as "album/disc/track", "album/disc" or "album"."""
    found = [track for track in tracks if track.key == key or track.key.startswith(key + "/")]
    if not found:
        sys.exit(f"playlists.tsv: nothing in recordings.tsv is {key}")
    return found


def display_order(track):
    """The order in which the Library playlist stands: by artist, album and number."""
    artist = track.get("Sort Artist", track.get("Artist", ""))
    album = track.get("Sort Album", track.get("Album", ""))
    disc, number = track.get("Disc Number", 0), track.get("Track Number", 0)
    return without_accents(artist), without_accents(album), disc, number, track["Track ID"]


def without_accents(text):
    parts = unicodedata.normalize("NFD", text).casefold()
    return "".join(part for part in parts if not unicodedata.combining(part))
