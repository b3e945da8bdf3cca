import assert from "node:assert/strict";
import {test} from "node:test";
import {moved} from "../../host/page/browser/keys.js";

test("Arrows lead one on and stop at the ends", () => {
  assert.equal(moved("ArrowDown", 0, 3), 1);
  assert.equal(moved("ArrowDown", 2, 3), null);
  assert.equal(moved("ArrowUp", 0, 3), null);
  assert.equal(moved("ArrowRight", 0, 3), null);
  assert.equal(moved("x", 0, 3), null);
  assert.equal(moved("constructor", 0, 3), null);
});

test("Within rows they also lead aside", () => {
  assert.equal(moved("ArrowRight", 0, 10, 4), 1);
  assert.equal(moved("ArrowDown", 1, 10, 4), 5);
  assert.equal(moved("ArrowDown", 7, 10, 4), null);
});

test("Pages end where the list ends", () => {
  assert.equal(moved("PageDown", 5, 8, 1, 20), 7);
  assert.equal(moved("PageUp", 5, 8, 1, 20), 0);
  assert.equal(moved("End", 0, 0), null);
});
