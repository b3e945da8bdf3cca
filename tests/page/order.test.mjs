import assert from "node:assert/strict";
import {test} from "node:test";
import {Order} from "../../host/page/browser/order.js";
import {libraryOf} from "./library.mjs";

const songs = [
  {name: "b", artist: "Bach", album: "Two", track: 2, plays: 3},
  {name: "Ä", artist: "Bach", album: "Two", track: 1, plays: 12},
  {name: "", artist: "Ärzte", album: "One", track: 1},
  {name: "10", plays: 0},
  {name: "9", artist: "bach", album: "One", track: 5, plays: 3},
];
const order = new Order(libraryOf(songs), "en");
const all = Int32Array.from(songs, (_, i) => i);

test("Texts are sorted without case and accents, numbers in them by their size", () => {
  assert.deepEqual([...order.sorted(all, ["name"])], [4, 3, 1, 0, 2]);
});

test("Songs that do not have it stand behind the others, up and down", () => {
  assert.deepEqual([...order.sorted(all, ["plays"])], [3, 0, 4, 1, 2]);
  assert.deepEqual([...order.sorted(all, ["plays"], true)], [1, 0, 4, 3, 2]);
});

test("A column that is not there leaves the order, and what is sorted stays as it is", () => {
  const some = Int32Array.of(3, 1, 2);
  assert.deepEqual([...order.sorted(some, ["bpm"])], [3, 1, 2]);
  order.sorted(some, ["name"]);
  assert.deepEqual([...some], [3, 1, 2]);
});

test("The shelf goes by artist, album, disc and track", () => {
  assert.deepEqual([...order.shelved()], [2, 4, 1, 0, 3]);
});

test("So many texts that no alphabet is asked are sorted by their folded letters", () => {
  const many = Array.from({length: 20100}, (_, i) => ({name: `Söng ${String((i * 7919) % 20100).padStart(6, "0")}`}));
  const sorted = new Order(libraryOf(many), "en").sorted(
    Int32Array.from(many, (_, i) => i),
    ["name"],
  );
  for (let i = 1; i < sorted.length; ++i) assert.ok(many[sorted[i - 1]].name < many[sorted[i]].name);
});
