import assert from "node:assert/strict";
import {test} from "node:test";
import {fold} from "../../host/page/browser/fold.js";
import {Search} from "../../host/page/browser/search.js";
import {libraryOf} from "./library.mjs";

const songs = [
  {name: "Rusalka", artist: "Antonín Dvořák", album: "Opera", year: 1900},
  {name: "Largo", artist: "New World Orchestra", album: "Dvořák: Symphony No. 9", year: 1973},
  {name: "Nocturne", artist: "Chopin", genre: "Piano"},
  {},
];
const found = (typed) => [...(new Search(libraryOf(songs)).find(typed) ?? [])].flatMap((is, i) => (is ? [i] : []));

test("Every word stands somewhere in the song, not all in one field", () => {
  assert.deepEqual(found("dvorak"), [0, 1]);
  assert.deepEqual(found("dvorak largo"), [1]);
  assert.deepEqual(found("dvorak chopin"), []);
  assert.deepEqual(found("PIANO noct"), [2]);
});

test("A word is found within others, but not across two texts", () => {
  assert.deepEqual(found("salk"), [0]);
  assert.deepEqual(found("rusalka\nlargo"), []);
  assert.deepEqual(found("rusalkalargo"), []);
});

test("A year is found as it is", () => {
  assert.deepEqual(found("1973"), [1]);
  assert.deepEqual(found("197"), []);
});

test("Nothing typed looks for nothing", () => {
  assert.equal(new Search(libraryOf(songs)).find("  "), null);
});

test("Random words are found where the plain search finds them", () => {
  let seed = 7;
  const random = (most) => (seed = (seed * 48271) % 2147483647) % most;
  const word = () => Array.from({length: 1 + random(3)}, () => "abÄ"[random(3)]).join("");
  const many = Array.from({length: 400}, () => ({name: `${word()} ${word()}`, artist: word(), album: word()}));
  const search = new Search(libraryOf(many));
  for (let i = 0; i < 200; ++i) {
    const typed = random(2) ? word() : `${word()} ${word()}`;
    const plain = many.map((song) =>
      typed
        .split(" ")
        .every((one) => [song.name, song.artist, song.album].some((text) => fold(text).includes(fold(one))))
        ? 1
        : 0,
    );
    assert.deepEqual([...search.find(typed)], plain, typed);
  }
});
