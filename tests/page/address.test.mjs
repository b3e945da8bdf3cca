import assert from "node:assert/strict";
import {test} from "node:test";
import {VIEWS, addressOf, placeOf, placeWith} from "../../host/page/browser/address.js";

test("An address leads back to the place that it was made of", () => {
  for (const view of VIEWS) {
    for (const value of ["", "a b", "&=#?%+", "日本", "\u202E</script>", "x".repeat(5000)]) {
      const values = new Map(
        value === ""
          ? []
          : [
              ["q", value],
              ["sort", "-plays"],
            ],
      );
      assert.deepEqual(placeOf(addressOf({view, values})), {view, values});
    }
  }
});

test("What is no view is the overview", () => {
  for (const hash of ["", "#", "#nothing", "#songs2?q=x", "#__proto__"]) assert.equal(placeOf(hash).view, "overview");
  assert.equal(placeOf("#songs?%zz&&&=").view, "songs");
});

test("A value is changed without the others, and an empty one goes", () => {
  const place = placeOf("#songs?q=x&sort=name");
  assert.equal(addressOf(placeWith(place, "sort", "")), "#songs?q=x");
  assert.equal(addressOf(placeWith(place, "q", "y")), "#songs?q=y&sort=name");
  assert.equal(addressOf(place), "#songs?q=x&sort=name");
});
