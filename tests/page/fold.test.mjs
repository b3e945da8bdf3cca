import assert from "node:assert/strict";
import {test} from "node:test";
import {fold, foldedWords} from "../../host/page/browser/fold.js";

test("Accents and case do not count, however they are composed", () => {
  for (const text of ["Dvořák", "DVOŘÁK", "Dvor\u030Ca\u0301k"]) assert.equal(fold(text), "dvorak");
  assert.equal(fold("Ёлка"), "елка");
  assert.equal(fold("Ἀθῆναι"), "αθηναι");
});

test("Letters that do not decompose are found by those that are typed for them", () => {
  assert.equal(fold("Straße Łódź Ærø Œuvre Þór Kırmızı"), "strasse lodz aero oeuvre thor kirmizi");
  assert.equal(fold("Don’t “stop”"), 'don\'t "stop"');
});

test("Marks that are part of a syllable count", () => {
  assert.notEqual(fold("が"), fold("か"));
  assert.notEqual(fold("कि"), fold("का"));
});

test("Wide and half-wide forms are one", () => {
  assert.equal(fold("ＡＢＣ１"), "abc1");
  assert.equal(fold("ｶﾞ"), fold("ガ"));
});

test("Words are parted by any blank, each once", () => {
  assert.deepEqual(foldedWords("  Bach\u3000bach\tBWV \n"), ["bach", "bwv"]);
  assert.deepEqual(foldedWords(" "), []);
});
