"""Runs the hosts of examples/ on the sample library.

Usage: check_examples.py Compiled|Bound LIBRARY COVER_C COVER_CPP PLAYLISTS_CPP TWO_HOMES_C [NODE]

$TAVREL_NODE_MODULE is the folder of the Node module.
"""
import csv
import os
import plistlib
import struct
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

CHECKOUT = Path(__file__).resolve().parents[2]
EXAMPLES = CHECKOUT / "examples"
HOME = CHECKOUT / "samples" / "home"
OTHER_HOME = CHECKOUT / "tests" / "system" / "home"
FILE = HOME / "Music" / "iTunes" / "iTunes Music Library.xml"
TEXT = "La Primavera"

SUITE, LIBRARY, COVER_C, COVER_CPP, PLAYLISTS_CPP, TWO_HOMES_C, *NODE = sys.argv[1:]


def run(*command, expected=0, **variables):
    """(output, errors) of a host that sees the sample library."""
    environment = {**os.environ, "HOME": str(HOME), "PYTHONPATH": str(CHECKOUT / "bindings/python/src"),
                   "PYTHONIOENCODING": "utf-8", "TAVREL_LIBRARY_PATH": LIBRARY, **variables}
    ended = subprocess.run(command, env=environment, stdout=subprocess.PIPE, stderr=subprocess.PIPE)
    output, errors = ended.stdout.decode(), ended.stderr.decode()
    if ended.returncode != expected:
        raise AssertionError(f"{command} ended with {ended.returncode}:\n{output}{errors}")
    return output, errors


class Examples(unittest.TestCase):
    maxDiff = None

    def setUp(self):
        holder = tempfile.TemporaryDirectory()
        self.addCleanup(holder.cleanup)
        self.folder = Path(holder.name)

    def covers(self, *commands, **variables):
        """What the commands, the same host each, print and write; all of them the same."""
        results = []
        for number, command in enumerate(commands):
            path = self.folder / str(number)
            results.append((run(*command, TEXT, str(path), **variables)[0], path.read_bytes()))
            _, errors = run(*command, expected=2, **variables)
            self.assertTrue(errors.startswith("usage: cover"), errors)
            _, errors = run(*command, "no such words", str(self.folder / "none"), expected=1, **variables)
            self.assertEqual(errors, "no song with a cover holds no such words\n")
            self.assertFalse((self.folder / "none").exists())
        self.assertEqual(results, [results[0]] * len(results))
        return results[0]


class Compiled(Examples):
    def test_playlists_a_song_and_its_cover(self):
        output, cover = self.covers([COVER_C], [COVER_CPP])
        *playlists, song, picture = output.splitlines()
        file = plistlib.loads(FILE.read_bytes())
        shown = [f"{len(playlist.get('Playlist Items', [])):5}  {playlist['Name']}"
                 for playlist in file["Playlists"] if playlist.get("Visible", True)]
        ringtones = [line for line in playlists if line.endswith("  Ringtones")]
        self.assertEqual(sorted(playlists), sorted(shown + ringtones))
        self.assertEqual(len(playlists), len(shown) + 1)
        name, artist = next((track["Name"], track["Artist"]) for track in file["Tracks"].values()
                            if TEXT.lower() in track["Name"].lower())
        self.assertEqual(song, f"{name} by {artist}")
        self.assertEqual(picture, self.description(cover))

    def description(self, cover):
        """As the host describes it, of a picture's bytes: from the frame of a JPEG file, or a PNG file's head."""
        if cover.startswith(b"\x89PNG"):
            kind, (width, height) = "png", struct.unpack(">II", cover[16:24])
        else:
            self.assertEqual((cover[:2], cover[-2:]), (b"\xff\xd8", b"\xff\xd9"))
            frame = cover.index(b"\xff\xc0")
            kind, (height, width) = "jpeg", struct.unpack(">HH", cover[frame + 5:frame + 9])
        return f"{kind}, {width} x {height}, {len(cover)} bytes"

    def test_the_librarys_own_playlists(self):
        output, _ = run(PLAYLISTS_CPP)
        self.assertTrue(output.endswith("  Ringtones\n"), output)
        self.assertEqual(output, "".join(self.covers([COVER_C])[0].splitlines(True)[:output.count("\n")]))

    def test_one_home_after_the_other(self):
        output, errors = run(TWO_HOMES_C, LIBRARY, str(HOME), str(OTHER_HOME), str(self.folder), str(HOME))
        songs = len(plistlib.loads(FILE.read_bytes())["Tracks"])
        self.assertEqual(output, f"{songs:5}  {HOME}\n    5  {OTHER_HOME}\n   -1  {self.folder}\n{songs:5}  {HOME}\n")
        self.assertEqual(len(errors.splitlines()), 1, errors)


class Bound(Examples):
    def setUp(self):
        super().setUp()
        self.node, = NODE
        (self.folder / "modules").mkdir()
        (self.folder / "modules" / "tavrel").symlink_to(os.environ["TAVREL_NODE_MODULE"])
        self.variables = {"NODE_PATH": str(self.folder / "modules")}

    def test_the_host_is_the_same_in_every_language(self):
        self.covers([COVER_C], [sys.executable, "-B", str(EXAMPLES / "cover.py")],
                    [self.node, str(EXAMPLES / "cover.js")], **self.variables)

    def test_songs_as_a_table(self):
        output, _ = run(sys.executable, "-B", str(EXAMPLES / "songs_csv.py"), str(FILE))
        head, *rows = csv.reader(output.splitlines(True))
        self.assertEqual(head, ["name", "artist", "album", "milliseconds", "plays", "rating"])
        keys = ("Name", "Artist", "Album", "Total Time", "Play Count", "Rating")
        defaults = {"Total Time": 0, "Play Count": 0}
        self.assertEqual(rows, [[str(track.get(key, defaults.get(key, ""))) for key in keys]
                                for track in plistlib.loads(FILE.read_bytes())["Tracks"].values()])

    def test_ratings(self):
        output, _ = run(self.node, str(EXAMPLES / "ratings.js"), str(FILE), **self.variables)
        tracks = plistlib.loads(FILE.read_bytes())["Tracks"].values()
        lines = [f"{track.get('Name', 'null')} {track.get('Artist', 'null')} {track.get('Rating', 'not rated')}\n"
                 for track in tracks]
        self.assertEqual(output, "".join(lines))


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], SUITE])
