import assert from "node:assert/strict";
import {test} from "node:test";
import {placeOf} from "../../host/page/browser/address.js";
import {songsOf} from "../../host/page/browser/filters.js";
import {libraryOf} from "./library.mjs";

const day = (text) => Date.parse(text) / 86400000;
const library = libraryOf(
  [
    {name: "a", artist: "A", album: "Hits", genre: "Jazz", year: 1959, rating: 100, plays: 7, added: day("2013-05-31")},
    {name: "b", artist: "B", album: "Hits", genre: "Rock", year: 1960, rating: 59, plays: 1, added: day("2013-06-01")},
    {name: "c", artist: "A", album: "Other", year: 1969, added: day("2014-01-01"), status: "missing"},
    {name: "d"},
  ],
  {
    playlists: [
      {name: "One", id: "ABC", type: "list", depth: 0, songs: Int32Array.of(3, 0, 0)},
      {name: "Two", id: "", type: "list", depth: 0, songs: Int32Array.of(1)},
    ],
  },
);
const shelved = Int32Array.of(3, 2, 1, 0);
const asked = (address, found = null) => [...songsOf(library, placeOf(address).values, shelved, found)];

test("Without a filter all songs are there, as they are shelved", () => {
  assert.deepEqual(asked("#songs"), [3, 2, 1, 0]);
});

test("A playlist keeps its order and what it holds twice, by its ID or its place", () => {
  assert.deepEqual(asked("#songs?playlist=ABC"), [3, 0, 0]);
  assert.deepEqual(asked("#songs?playlist=1"), [1]);
  for (const none of ["7", "-1", "abc", "1e0", "__proto__"]) assert.deepEqual(asked(`#songs?playlist=${none}`), []);
});

test("Texts are taken whole", () => {
  assert.deepEqual(asked("#songs?artist=A"), [2, 0]);
  assert.deepEqual(asked("#songs?genre=Jaz"), []);
  assert.deepEqual(asked("#songs?genre="), []);
  assert.deepEqual(asked("#songs?status=missing"), [2]);
});

test("An album is one by its title and artist", () => {
  assert.deepEqual(asked("#songs?album=Hits&by=A"), [1, 0]);
  assert.deepEqual(asked("#songs?album=Hits&by=C"), []);
});

test("Decades, years and months have their first and their last day", () => {
  assert.deepEqual(asked("#songs?decade=1960"), [2, 1]);
  assert.deepEqual(asked("#songs?year=1959"), [0]);
  assert.deepEqual(asked("#songs?added=2013"), [1, 0]);
  assert.deepEqual(asked("#songs?added=2013-05"), [0]);
});

test("Ratings and plays count songs that say nothing as none", () => {
  assert.deepEqual(asked("#songs?rating=5"), [0]);
  assert.deepEqual(asked("#songs?rating=2"), [1]);
  assert.deepEqual(asked("#songs?rating=0"), [3, 2]);
  assert.deepEqual(asked("#songs?plays=0"), [3, 2]);
  assert.deepEqual(asked("#songs?plays=2-10"), [0]);
  assert.deepEqual(asked("#songs?plays=2-"), [0]);
});

test("What is missing is found, also where no song has it", () => {
  assert.deepEqual(asked("#songs?without=genre"), [3, 2]);
  assert.deepEqual(asked("#songs?without=bpm"), [3, 2, 1, 0]);
});

test("Filters and words narrow together; a name that is no filter does nothing", () => {
  assert.deepEqual(asked("#songs?artist=A&without=genre"), [2]);
  assert.deepEqual(asked("#songs?artist=A", Uint8Array.of(1, 1, 0, 0)), [0]);
  assert.deepEqual(asked("#songs?constructor=x"), [3, 2, 1, 0]);
});
