"""Songs, playlists and properties are what the library file says."""
import os
import tempfile
import unittest
import urllib.parse
from datetime import timezone

import sample

import tavrel

TWO_YEARS = """<?xml version="1.0" encoding="UTF-8"?>
<plist version="1.0"><dict><key>Tracks</key><dict><key>7</key><dict><key>Track ID</key><integer>7</integer>
<key>Year</key><integer>1901</integer><key>Year</key><integer>1902</integer></dict></dict></dict></plist>
"""


def expected(value):
    """A value of the property list as the library tells it."""
    if isinstance(value, (dict, list, bytes)) or value == "":
        return None
    return value.replace(tzinfo=timezone.utc) if hasattr(value, "tzinfo") else value


class Songs(unittest.TestCase):
    maxDiff = None

    @classmethod
    def setUpClass(cls):
        cls.file = sample.plist()
        cls.tracks = list(cls.file["Tracks"].values())
        cls.library = tavrel.Library(file=sample.FILE)

    @classmethod
    def tearDownClass(cls):
        cls.library.close()

    def test_every_song_of_the_file_is_there_in_its_order(self):
        self.assertEqual(len(self.library.songs), len(self.tracks))
        self.assertEqual([song.name for song in self.library.songs], [track.get("Name") for track in self.tracks])

    def test_fields_are_those_of_the_file(self):
        for song, track in zip(self.library.songs, self.tracks):
            self.assertEqual((song.artist, song.album, song.genre),
                             (track.get("Artist"), track.get("Album"), track.get("Genre")))
            self.assertEqual((song.total_time, song.play_count, song.track_number, song.is_movie),
                             (track.get("Total Time", 0), track.get("Play Count", 0), track.get("Track Number", 0),
                              track.get("Movie", False)))

    def test_locations_are_paths(self):
        compared = 0
        for song, track in zip(self.library.songs, self.tracks):
            url = track.get("Location", "")
            if url.startswith("file:///"):
                self.assertEqual(song.location, urllib.parse.unquote(url[len("file://"):]))
                compared += 1
        self.assertGreater(compared, 100)

    def test_properties_are_those_of_the_file_with_their_types(self):
        for song, track in zip(self.library.songs, self.tracks):
            self.assertEqual(list(song.properties.items()), [(key, expected(value)) for key, value in track.items()])
        self.assertEqual(dict(self.library.properties), {key: expected(value) for key, value in self.file.items()})

    def test_playlists_and_their_songs_are_those_of_the_file(self):
        lists = {playlist["Playlist Persistent ID"]: playlist for playlist in self.file["Playlists"]}
        compared = 0
        for playlist in self.library.playlists:
            of_file = lists.pop(playlist.properties.get("Playlist Persistent ID"), None)
            if of_file is None:
                self.assertEqual((playlist.name, playlist.kind, dict(playlist.properties)), ("Ringtones", 55, {}))
                continue
            self.assertEqual((playlist.name, playlist.kind), (of_file["Name"], of_file.get("Distinguished Kind", 0)))
            items = [item["Track ID"] for item in of_file.get("Playlist Items", [])]
            self.assertEqual([song.properties["Track ID"] for song in playlist.songs], items)
            compared += 1
        self.assertEqual(compared, len(self.library.playlists) - 1)
        self.assertTrue(all(playlist.get("Visible") is False for playlist in lists.values()))

    def test_playlists_stand_in_their_groups(self):
        groups = [playlist.group for playlist in self.library.playlists]
        self.assertEqual(groups, sorted(groups))
        self.assertEqual(set(groups), {0, 1, 2})

    def test_sequences_take_every_kind_of_index(self):
        songs, count = self.library.songs, len(self.tracks)
        self.assertEqual(songs[-1], songs[count - 1])
        self.assertEqual([song.index for song in songs[2:10:3]], [2, 5, 8])
        self.assertEqual([song.index for song in songs[-2:]], [count - 2, count - 1])
        self.assertIn(songs[7], songs)
        self.assertEqual(songs.index(songs[7]), 7)
        self.assertEqual(len({songs[1], songs[1], songs[2]}), 2)
        for bad in (count, -count - 1):
            with self.assertRaises(IndexError):
                songs[bad]
        self.assertEqual(self.library.playlists[0], next(iter(self.library.playlists)))

    def test_ringtones_lie_where_the_user_has_them(self):
        ringtones = [playlist for playlist in self.library.playlists if playlist.kind == 55][0]
        folder = sample.FILE.parent / "iTunes Media" / "Ringtones"
        self.assertEqual(sorted(song.location for song in ringtones.songs),
                         sorted(str(folder / name) for name in os.listdir(folder)
                                if (folder / name).is_file() and name != ".DS_Store"))

    def test_of_equal_keys_the_first_counts(self):
        # Only one library at a time can be open.
        self.library.close()
        self.addCleanup(self.setUpClass)
        with tempfile.TemporaryDirectory() as folder:
            file = os.path.join(folder, "Two.xml")
            with open(file, "w", encoding="utf-8") as text:
                text.write(TWO_YEARS)
            with tavrel.Library(file=file) as library:
                self.assertEqual(dict(library.songs[0].properties), {"Track ID": 7, "Year": 1901})

    def test_what_is_no_number_or_date_stays_a_text(self):
        from tavrel._properties import _value
        self.assertEqual(_value("12 songs", "integer"), "12 songs")
        self.assertEqual(_value("9" * 31, "integer"), "9" * 31)
        self.assertEqual(_value("yesterday", "date"), "yesterday")
        self.assertEqual(_value("0.5", "real"), 0.5)
        self.assertIs(_value(None, "dict"), None)

    def test_a_ringtone_that_cannot_be_added_is_an_error(self):
        path = os.environ["PATH"]
        os.environ["PATH"] = ""
        try:
            with self.assertRaises(tavrel.LibraryError):
                self.library.append_ringtone("/tones/Bell.m4r")
        finally:
            os.environ["PATH"] = path


if __name__ == "__main__":
    unittest.main()
