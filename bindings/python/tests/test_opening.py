"""Opening and closing: what is read, what is said when it cannot be, and what is left behind."""
import _decimal
import ctypes
import gc
import os
import shutil
import tempfile
import threading
import tracemalloc
import unittest
from pathlib import Path

import sample

import tavrel
from tavrel import _linked_home, _shared_library


class Opening(unittest.TestCase):
    def setUp(self):
        holder = tempfile.TemporaryDirectory()
        self.addCleanup(holder.cleanup)
        self.folder = Path(holder.name)
        self.temporary = self.folder / "temporary"
        self.temporary.mkdir()
        former, tempfile.tempdir = tempfile.tempdir, str(self.temporary)
        self.addCleanup(setattr, tempfile, "tempdir", former)

    def left(self):
        return os.listdir(self.temporary)

    def set_variable(self, name, value):
        former = os.environ.get(name)
        self.addCleanup(lambda: os.environ.pop(name, None) if former is None else os.environ.update({name: former}))
        if value is None:
            os.environ.pop(name, None)
        else:
            os.environ[name] = str(value)

    def count(self, **place):
        with tavrel.Library(**place) as library:
            return len(library.songs)

    def test_a_home_a_file_and_the_users_own_home_are_read(self):
        self.assertEqual(self.count(home=sample.HOME), sample.SONGS)
        self.assertEqual(self.count(file=str(sample.FILE)), sample.SONGS)
        self.set_variable("HOME", sample.OTHER_HOME)
        self.assertEqual(self.count(), 5)

    def test_a_place_may_be_relative(self):
        former = os.getcwd()
        self.addCleanup(os.chdir, former)
        os.chdir(sample.HOME.parent)
        self.assertEqual(self.count(home="home"), sample.SONGS)
        os.chdir(sample.FILE.parent)
        self.assertEqual(self.count(file=sample.FILE.name), sample.SONGS)

    def test_a_library_follows_another(self):
        for _ in range(3):
            self.assertEqual(self.count(home=sample.HOME), sample.SONGS)
            self.assertEqual(self.count(home=sample.OTHER_HOME), 5)

    def test_a_second_library_at_a_time_is_refused_and_leaves_the_first_alone(self):
        with tavrel.Library(home=sample.HOME) as library:
            with self.assertRaisesRegex(tavrel.AlreadyOpenError, "one at a time: close it"):
                tavrel.Library(file=sample.FILE)
            self.assertEqual(len(library.songs), sample.SONGS)
        self.assertEqual(self.left(), [])

    def test_a_library_that_something_else_has_loaded_is_refused(self):
        loaded = ctypes.CDLL(sample.LIBRARY)
        try:
            with self.assertRaisesRegex(tavrel.AlreadyOpenError, "loaded in this process already"):
                tavrel.Library(file=sample.FILE)
        finally:
            _shared_library._close(loaded._handle)
        self.assertEqual(self.count(file=sample.FILE), sample.SONGS)

    def test_the_home_variable_is_as_before(self):
        getenv = ctypes.CDLL(None).getenv
        getenv.restype = ctypes.c_char_p
        for home in ("/nowhere", None):
            self.set_variable("HOME", home)
            self.count(home=sample.HOME)
            self.assertEqual(os.environ.get("HOME"), home)
            self.assertEqual(getenv(b"HOME"), home and home.encode())
            with self.assertRaises(FileNotFoundError):
                tavrel.Library(home=self.folder)
            self.assertEqual(os.environ.get("HOME"), home)

    def test_what_is_missing_is_named(self):
        with self.assertRaises(FileNotFoundError) as caught:
            tavrel.Library(file=self.folder / "Gone.xml")
        self.assertEqual(caught.exception.filename, str(self.folder / "Gone.xml"))
        with self.assertRaises(FileNotFoundError) as caught:
            tavrel.Library(home=self.folder)
        self.assertEqual(caught.exception.filename, str(self.folder / "Music/iTunes/iTunes Music Library.xml"))
        with self.assertRaises(IsADirectoryError):
            tavrel.Library(file=self.folder)
        self.assertEqual(self.left(), [])

    def test_a_file_that_is_no_library_is_an_error(self):
        (self.folder / "Some.xml").write_bytes(b"\xff\xfe no library")
        with self.assertRaisesRegex(tavrel.LibraryError, "Some.xml"):
            tavrel.Library(file=self.folder / "Some.xml")
        self.assertEqual(self.left(), [])
        self.assertEqual(self.count(file=sample.FILE), sample.SONGS)

    def test_a_place_is_a_home_or_a_file(self):
        with self.assertRaises(TypeError):
            tavrel.Library(home=sample.HOME, file=sample.FILE)

    def test_closed_libraries_refuse_politely(self):
        with tavrel.Library(file=sample.FILE) as library:
            playlist, song, properties = library.playlists[0], library.songs[0], library.songs[0].properties
            songs, playlists, kept = library.songs, library.playlists, library.songs[1].fields
            known = library.songs[1]
            known.name
        library.close()
        for ask in (lambda: song.name, lambda: song.artwork(), lambda: properties["Name"], lambda: playlist.name,
                    lambda: playlist.kind, lambda: len(playlist.songs), lambda: len(songs), lambda: playlists[0],
                    lambda: library.search("a"), lambda: dict(library.properties), lambda: library.songs[0],
                    lambda: library.append_ringtone("/a")):
            with self.assertRaises(tavrel.ClosedError):
                ask()
        self.assertEqual(repr((library, song, playlist, properties)),
                         "(Library(closed), Song(closed), Playlist(closed), Properties(closed))")
        self.assertEqual(kept.name, known.name)

    def test_the_library_is_not_closed_during_a_call(self):
        with tavrel.Library(file=sample.FILE) as library:
            with library._session:
                with self.assertRaises(tavrel.LibraryError):
                    library.close()
            self.assertEqual(len(library.songs), sample.SONGS)

    def test_a_library_that_nothing_refers_to_is_closed(self):
        songs = tavrel.Library(file=sample.FILE).songs
        self.assertEqual(len(songs), sample.SONGS)
        self.assertEqual(len(self.left()), 1)
        del songs
        gc.collect()
        self.assertEqual(self.left(), [])
        self.assertEqual(self.count(home=sample.OTHER_HOME), 5)

    def test_libraries_that_were_closed_leave_no_memory_behind(self):
        def use(times):
            for _ in range(times):
                with tavrel.Library(file=sample.OTHER_HOME / "Music/iTunes/iTunes Music Library.xml") as library:
                    for song in library.search("a"):
                        song.name, dict(song.properties), song.artwork()
            gc.collect()
            return tracemalloc.get_traced_memory()[0]

        tracemalloc.start()
        self.addCleanup(tracemalloc.stop)
        before = use(10)
        self.assertLess(use(50) - before, 50000)  # in bytes; what a library takes here is several thousand

    def test_nothing_is_left_behind_by_a_process_that_does_not_close(self):
        ended = sample.run(f"import tavrel; kept = tavrel.Library(file={str(sample.FILE)!r}); print(kept)",
                           TMPDIR=str(self.temporary))
        self.assertEqual((ended.stdout, ended.stderr), (f"Library({sample.SONGS} songs)\n", ""))
        self.assertEqual(self.left(), [])

    def test_a_child_process_leaves_the_links_to_its_parent(self):
        with tavrel.Library(file=sample.FILE) as library:
            child = os.fork()
            if child == 0:
                library.close()
                os._exit(0)
            os.waitpid(child, 0)
            self.assertEqual(len(self.left()), 1)
            self.assertTrue(any(song.artwork() for song in library.songs))

    def test_the_folder_of_links_is_its_owners_alone_and_what_others_put_there_stays(self):
        home = _linked_home.LinkedHome(str(sample.FILE))
        self.assertEqual(os.stat(home.folder).st_mode & 0o777, 0o700)
        Path(home.folder, "theirs").write_text("")
        home.remove()
        self.assertEqual(os.listdir(home.folder), ["theirs"])

    def test_what_took_the_place_of_the_folder_of_links_is_not_followed(self):
        home = _linked_home.LinkedHome(str(sample.FILE))
        os.rename(home.folder, self.folder / "moved")
        os.symlink(self.folder / "moved", home.folder)
        home.remove()
        self.assertTrue((self.folder / "moved" / "Music").is_dir())
        os.unlink(home.folder)
        (self.folder / "theirs" / "Music").mkdir(parents=True)
        os.symlink(self.folder / "theirs", home.folder)
        home.remove()
        self.assertTrue((self.folder / "theirs" / "Music").is_dir())
        os.unlink(home.folder)
        shutil.copytree(self.folder / "theirs", home.folder)
        home.remove()
        self.assertTrue(Path(home.folder, "Music").is_dir())

    def test_threads_may_ask_at_the_same_time(self):
        with tavrel.Library(file=sample.FILE) as library:
            answers = []

            def ask():
                answers.append([(song.name, song.properties["Track ID"]) for song in library.search("o")])

            threads = [threading.Thread(target=ask) for _ in range(4)]
            for thread in threads:
                thread.start()
            for thread in threads:
                thread.join()
            self.assertEqual(answers, [answers[0]] * 4)
            self.assertGreater(len(answers[0]), 50)


class Finding(unittest.TestCase):
    """Where libTavrel is looked for."""

    CODE = f"import tavrel; print(tavrel.Library(file={str(sample.FILE)!r}))"

    def setUp(self):
        holder = tempfile.TemporaryDirectory()
        self.addCleanup(holder.cleanup)
        self.folder = Path(holder.name)

    def assert_found(self, **variables):
        ended = sample.run(self.CODE, **variables)
        self.assertEqual((ended.stdout, ended.stderr), (f"Library({sample.SONGS} songs)\n", ""))

    def copy_to(self, folder):
        shutil.copy(sample.LIBRARY, folder / _shared_library.FILE_NAME)

    def test_it_is_the_file_or_in_the_folder_that_the_variable_names(self):
        self.copy_to(self.folder)
        self.assert_found(TAVREL_LIBRARY_PATH=str(self.folder))
        self.assert_found(TAVREL_LIBRARY_PATH=str(self.folder / _shared_library.FILE_NAME))

    def test_it_lies_beside_the_package(self):
        shutil.copytree(sample.PACKAGE / "src" / "tavrel", self.folder / "tavrel")
        self.copy_to(self.folder / "tavrel")
        self.assert_found(path=self.folder, TAVREL_LIBRARY_PATH="")

    def test_the_loader_finds_it_by_its_name(self):
        self.copy_to(self.folder)
        self.assert_found(TAVREL_LIBRARY_PATH="", LD_LIBRARY_PATH=str(self.folder))

    def test_a_library_that_is_not_there_is_an_error_that_says_what_to_do(self):
        ended = sample.run(self.CODE, TAVREL_LIBRARY_PATH=str(self.folder / "none"))
        self.assertRegex(ended.stderr, r"tavrel\.LibraryError: cannot load libTavrel: .*none.*TAVREL_LIBRARY_PATH")

    def test_a_file_that_is_not_libTavrel_is_an_error_that_says_so(self):
        code = """if True:
            import tavrel
            for _ in range(2):
                try: tavrel.Library()
                except tavrel.AlreadyOpenError: raise
                except tavrel.LibraryError as error: print(error)
        """
        ended = sample.run(code, TAVREL_LIBRARY_PATH=_decimal.__file__)
        self.assertEqual(ended.stderr, "")
        message = f"{_decimal.__file__} has no function AgentInitializer: it is of another version\n"
        self.assertEqual(ended.stdout, message * 2)
        sample.run(self.CODE, TAVREL_LIBRARY_PATH=_decimal.__file__, TMPDIR=str(self.folder))
        self.assertEqual(os.listdir(self.folder), [])


if __name__ == "__main__":
    unittest.main()
