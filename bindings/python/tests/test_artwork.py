"""Covers come as bytes, with their format and size."""
import os
import shutil
import struct
import tempfile
import unittest
from pathlib import Path

import sample

import tavrel


class Artwork(unittest.TestCase):
    def test_a_cover_is_a_whole_file_of_its_format(self):
        formats = set()
        with tavrel.Library(home=sample.HOME) as library:
            descriptors = len(os.listdir("/dev/fd"))
            for song in library.songs:
                for picture in song.artwork():
                    formats.add(picture.format)
                    if picture.format == "png":
                        self.assertEqual(picture.data[:8], b"\x89PNG\r\n\x1a\n")
                        self.assertEqual(struct.unpack(">II", picture.data[16:24]), (picture.width, picture.height))
                    elif picture.format == "jpeg":
                        self.assertEqual((picture.data[:2], picture.data[-2:]), (b"\xff\xd8", b"\xff\xd9"))
                    else:
                        self.assertEqual(len(picture.data), 4 * picture.width * picture.height)
            self.assertEqual(len(os.listdir("/dev/fd")), descriptors)
        self.assertLessEqual({"png", "jpeg"}, formats)

    def test_covers_lie_beside_a_file_of_any_name(self):
        with tempfile.TemporaryDirectory() as folder:
            shutil.copy(sample.FILE, Path(folder) / "Old library.xml")
            shutil.copytree(sample.FILE.parent / "Album Artwork", Path(folder) / "Album Artwork")
            with tavrel.Library(file=Path(folder) / "Old library.xml") as library:
                self.assertTrue(any(song.artwork() for song in library.songs))

    def test_a_song_without_a_cover_has_no_pictures(self):
        with tavrel.Library(home=sample.OTHER_HOME) as library:
            self.assertEqual(library.songs[0].artwork(), [])

    def test_a_picture_that_is_cut_short_is_left_out(self):
        with tempfile.TemporaryDirectory() as folder:
            home = Path(folder) / "home"
            shutil.copytree(sample.HOME, home)
            whole = self.pictures(home)
            for file in home.rglob("*.itc*"):
                file.write_bytes(file.read_bytes()[:-1])
            cut = self.pictures(home)
        self.assertLess(cut, whole)
        self.assertGreater(cut, 0)

    def pictures(self, home):
        with tavrel.Library(home=home) as library:
            return sum(len(song.artwork()) for song in library.songs)


if __name__ == "__main__":
    unittest.main()
