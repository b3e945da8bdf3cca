import assert from "node:assert/strict";
import {readFileSync, readdirSync} from "node:fs";
import {test} from "node:test";
import {
  clock,
  counted,
  date,
  hue,
  initial,
  shown,
  size,
  stars,
  start,
  useWords,
  word,
} from "../../host/page/browser/show.js";

const folder = new URL("../../host/page/browser/", import.meta.url);
const read = (name) => readFileSync(new URL(name, folder), "utf8");
const table = Object.fromEntries(
  read("words.en.txt")
    .split("\n")
    .filter((line) => line !== "" && !line.startsWith("#"))
    .map((line) => line.split(/ = (.*)/s, 2)),
);
useWords(table);

test("Every word that the page asks for is in the table, and none is there for nothing", () => {
  const sources = readdirSync(folder)
    .filter((name) => name.endsWith(".js"))
    .map(read)
    .join("\n");
  const host = ["FirstScreen", "Tallies", "PageFile"].map((name) => read(`../${name}.cpp`)).join("\n");
  const markup = [...read("page.html").matchAll(/\{\{([\w.]+)\}\}/g)].map(([, name]) => name);
  const parts = new Set([...host.matchAll(/parts\["(\w+)"\]/g)].map(([, name]) => name));
  const asked = [
    ...sources.matchAll(/(?:word|counted)\("([\w.]+)"/g),
    ...host.matchAll(/words(?:\.Of)?[(,] ?"([\w.]+)"/g),
  ]
    .map(([, name]) => name)
    .concat(markup.filter((name) => !parts.has(name)));
  for (const name of asked.filter((key) => !key.endsWith(".")))
    assert.ok(name in table || `${name}.other` in table, `${name} is not in the table`);
  const all = sources + host + read("page.html");
  for (const name of Object.keys(table)) {
    const stem = name.replace(/\.(one|other)$/, "");
    const family = `${stem.slice(0, stem.indexOf(".") + 1)}`;
    assert.ok(
      all.includes(stem) || (family !== "" && all.includes(`${family}$`)) || all.includes(`"${family}"`),
      `${name} is for nothing`,
    );
  }
});

test("No word has what HTML reads", () => {
  for (const [name, text] of Object.entries(table)) assert.doesNotMatch(text, /[<>&"]/, name);
});

test("Values are put into a word, and what is not known shows itself", () => {
  assert.equal(word("filter.genre", {name: "{n} $& Jazz"}), "genre: {n} $& Jazz");
  assert.equal(word("nothing.of.that"), "nothing.of.that");
  assert.equal(counted("count.songs", 1), "1 song");
  assert.equal(counted("count.songs", 1234), "1,234 songs");
});

test("Numbers are shown as people read them", () => {
  assert.deepEqual([0, 59, 245, 3723].map(clock), ["0:00", "0:59", "4:05", "1:02:03"]);
  assert.deepEqual([0, 50, 59, 100, 255].map(stars), ["", "★★½", "★★★", "★★★★★", "★★★★★"]);
  assert.deepEqual([1, 5000, 3 * 1024 * 1024].map(size), ["1 KB", "4.9 MB", "3.00 GB"]);
  assert.equal(date(0), "1970-01-01");
  const plays = {field: "plays", kind: "number", texts: [], numbers: Int32Array.of(0, 1, 1235)};
  assert.deepEqual(
    [0, 1, 2].map((song) => shown(plays, song)),
    ["", "0", "1,234"],
  );
});

test("A text of any length is cut between characters", () => {
  assert.equal(start("abc", 3), "abc");
  assert.equal(start("ab\u{1F3B5}c", 3), "ab…");
});

test("An initial is the first letter or digit, also beyond the first plane", () => {
  assert.deepEqual(["  «été", "1999", "日本", "\u{1D538}x", "!?", ""].map(initial), [
    "É",
    "1",
    "日",
    "\u{1D538}",
    "",
    "",
  ]);
  assert.equal(hue("Ä"), (0xc3 + 0x84) % 8);
});
