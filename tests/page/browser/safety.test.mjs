// What texts of any kind may not do to the page, and what it owes to those who cannot see it.
import assert from "node:assert/strict";
import {readFileSync} from "node:fs";
import {after, before, test} from "node:test";
import {axePath, launch, libraryOf, open, pageOf, samplePage} from "./pages.mjs";

const HOSTILE = [
  "</script><script>alert(1)</script>",
  "<img src=x onerror=alert(1)>",
  "\"'><svg onload=alert(1)>",
  "${alert(1)}",
  "\u202Egnirts",
  "\u2066open",
  "e" + "\u0301".repeat(300),
  "javascript:alert(1)",
  "__proto__",
  "constructor",
  "x".repeat(1 << 20),
  "עברית ABC",
  "日本語",
  "&amp;",
  "%00%FF",
  "]]>",
  "{{title}}",
  "\u{1F3B5}".repeat(200),
];

let browser, hostile, sample;
before(async () => {
  browser = await launch();
  sample = samplePage();
  hostile = pageOf(
    "hostile",
    libraryOf(
      "hostile",
      HOSTILE.map((text, i) => ({
        Name: text,
        Artist: text,
        Album: text,
        Genre: text,
        Comments: text,
        "Play Count": i + 1,
        "Total Time": 1000,
      })),
    ),
  );
});
after(() => browser.close());

test("Texts stay texts, in every view", async () => {
  const page = await open(browser, hostile);
  for (const hash of ["#overview", "#albums", "#songs", "#songs?sort=-name", "#songs?q=alert"]) {
    await page.goto(hostile + hash);
    await page.waitForTimeout(100);
    assert.equal(await page.locator("img[src=x], svg[onload], main script").count(), 0);
  }
  await page.goto(`${hostile}#songs`);
  const shown = await page.locator("#rows .row:visible .cell.name").allTextContents();
  for (const text of HOSTILE.filter((one) => one.length < 100 && /^[\x20-\x7E]*$/.test(one)))
    assert.ok(shown.includes(text), text);
  assert.ok(Math.max(...shown.map((text) => text.length)) < 400);
  for (let i = 0; i < HOSTILE.length; ++i) {
    await page.goto(`${hostile}#songs`);
    await page.locator("#rows .row:visible").nth(i).click();
    await page.locator("#details dd a").first().click();
    assert.match(await page.locator("#songs-count").textContent(), /^1 song/);
  }
  assert.ok(await page.evaluate(() => document.documentElement.scrollWidth <= innerWidth), "it scrolls sideways");
  assert.deepEqual(page.faults, []);
  await page.context().close();
});

test("A script that is put into the page does not run", async () => {
  const page = await open(browser, sample);
  const ran = await page.evaluate(() => {
    const script = document.createElement("script");
    script.textContent = "window.ran = true";
    document.body.append(script);
    return window.ran === true;
  });
  assert.equal(ran, false);
  assert.ok(
    page.faults.some((fault) => fault.includes("Content Security Policy")),
    "the browser says so",
  );
  await page.context().close();
});

for (const colorScheme of ["light", "dark"]) {
  for (const width of [1280, 390]) {
    test(`axe finds nothing: ${colorScheme}, ${width} pixels`, async () => {
      const page = await open(browser, sample, {colorScheme, viewport: {width, height: 900}, bypassCSP: true});
      await page.evaluate(readFileSync(axePath, "utf8"));
      const ask = async () =>
        (await page.evaluate(() => window.axe.run())).violations.map(
          (one) => `${one.id}: ${one.nodes.map((node) => node.html.slice(0, 150)).slice(0, 3)}`,
        );
      for (const hash of ["#overview", "#albums", "#songs?sort=name&playlist=2"]) {
        await page.evaluate((to) => {
          location.hash = to;
        }, hash);
        await page.waitForTimeout(150);
        assert.deepEqual(await ask(), [], hash);
      }
      await page.locator("#rows .row:visible").first().click();
      assert.deepEqual(await ask(), [], "details");
      await page.context().close();
    });
  }
}
