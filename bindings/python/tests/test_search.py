"""The search finds what the library finds, and goes no further than it is asked to."""
import unicodedata
import unittest

import sample

import tavrel
from tavrel._functions import FindSongsCallback
from tavrel._session import call_back


def folded(text):
    return unicodedata.normalize("NFD", unicodedata.normalize("NFD", text or "").casefold())


class Search(unittest.TestCase):
    def setUp(self):
        self.library = tavrel.Library(file=sample.FILE)
        self.addCleanup(self.library.close)

    def found(self, *arguments, **terms):
        return [song.index for song in self.library.search(*arguments, **terms)]

    def watch(self):
        """How many matches each search of the library goes through from now on."""
        functions, results = self.library._session._functions, []
        find = functions.FindSongs
        functions.FindSongs = lambda *arguments: results.append(find(*arguments))
        return results

    def test_a_text_is_looked_for_in_names_artists_and_albums(self):
        expected = [song.index for song in self.library.songs
                    if any("violin" in folded(text) for text in (song.name, song.artist, song.album))]
        self.assertEqual(self.found("Violin"), expected)
        self.assertGreater(len(expected), 4)

    def test_terms_are_alternatives(self):
        expected = [song.index for song in self.library.songs
                    if "sonata" in folded(song.name) or "band" in folded(song.artist)]
        self.assertEqual(self.found(name="Sonata", artist="BAND"), expected)

    def test_a_term_of_its_own_goes_before_the_text(self):
        self.assertEqual(self.found("violin", name="\u00a7", artist="\u00a7", album="\u00a7"), [])

    def test_composed_and_decomposed_texts_find_each_other(self):
        composed = unicodedata.normalize("NFC", "Dvo\u0159\u00e1k")
        self.assertEqual(self.found(composed), self.found(unicodedata.normalize("NFD", composed)))
        self.assertGreater(len(self.found(composed)), 0)

    def test_the_library_searches_no_further_than_the_caller_goes(self):
        results = self.watch()
        found = self.library.search("a")
        next(found)
        self.assertEqual(results, [1])
        for _ in range(4):
            next(found)
        self.assertEqual(results, [1, 4, 16])
        found.close()
        self.assertEqual(results, [1, 4, 16])

    def test_every_match_comes_once_and_in_order_however_many_searches_it_takes(self):
        results = self.watch()
        found = self.found("a")
        self.assertEqual(found, sorted(set(found)))
        self.assertEqual(len(found), results[-1])
        self.assertGreater(len(results), 3)

    def test_nothing_to_search_for_is_an_error_at_once(self):
        with self.assertRaises(TypeError):
            self.library.search()
        with self.assertRaises(ValueError):
            self.library.search("a\0b")

    def test_a_text_that_cannot_be_UTF_8_is_never_found(self):
        self.assertEqual(self.found("\udcff"), [])

    def test_a_search_goes_no_further_when_the_library_is_closed(self):
        found = self.library.search("a")
        next(found)
        self.library.close()
        with self.assertRaises(tavrel.ClosedError):
            next(found)
        with self.assertRaises(tavrel.ClosedError):
            self.library.search("a")

    def test_what_a_callback_raises_ends_the_search_and_comes_out(self):
        calls = []

        def body(index, _):
            calls.append(index)
            raise KeyboardInterrupt

        terms = tavrel._functions.SongInfo(name=b"a")
        with self.library._session as functions:
            with self.assertRaises(KeyboardInterrupt):
                call_back(lambda pointer: functions.FindSongs(terms, pointer, None), FindSongsCallback, body)
        self.assertEqual(len(calls), 1)


if __name__ == "__main__":
    unittest.main()
