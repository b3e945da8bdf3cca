// What a person does with the page, by mouse, touch and keyboard.
import assert from "node:assert/strict";
import {after, before, test} from "node:test";
import {launch, libraryOf, open, pageOf, samplePage} from "./pages.mjs";

let browser, sample, many;
before(async () => {
  browser = await launch();
  sample = samplePage();
  many = pageOf(
    "many",
    libraryOf(
      "many",
      Array.from({length: 20000}, (_, i) => ({
        Name: `Song ${i}`,
        Artist: `Artist ${i % 700}`,
        Album: `Album ${i >> 3}`,
        Year: 1950 + (i % 70),
        "Total Time": i * 10,
      })),
    ),
  );
});
after(() => browser.close());

/** Opens, does, and looks that nothing went wrong. */
async function visiting(address, does, options) {
  const page = await open(browser, address, options);
  await does(page);
  assert.deepEqual(page.faults, []);
  await page.context().close();
}

const rows = (page) => page.locator("#rows .row:visible");
const names = (page) => page.locator("#rows .row:visible .cell.name").allTextContents();
const count = (page) => page.locator("#songs-count").textContent();
const isSeen = (page, index) =>
  page.evaluate((wanted) => {
    const row = document.querySelector(`#rows [aria-rowindex="${wanted}"]`)?.getBoundingClientRect();
    return row !== undefined && row.top >= 0 && row.bottom <= innerHeight;
  }, index);

test("Without a script the header, the albums and the plots are there, and nothing that does nothing", () =>
  visiting(
    sample,
    async (page) => {
      assert.equal(await page.locator("h1").textContent(), "Music library");
      assert.ok((await page.locator(".album:visible").count()) >= 12);
      assert.ok((await page.locator(".plot:visible").count()) >= 6);
      assert.equal(await page.locator("nav:visible, #view-songs:visible").count(), 0);
      assert.match(await page.locator("noscript").textContent(), /JavaScript/);
    },
    {javaScriptEnabled: false},
  ));

test("A view is opened by its link, and back leads out of it", () =>
  visiting(sample, async (page) => {
    await page.click("#to-songs");
    assert.match(await count(page), /^212 songs/);
    assert.equal(await page.locator("#grid").getAttribute("aria-rowcount"), "213");
    await page.click("#to-albums");
    assert.match(await page.locator("#albums-count").textContent(), /^31 albums/);
    await page.goBack();
    assert.ok(await page.locator("#grid").isVisible());
    await page.goBack();
    assert.ok(await page.locator(".plots").isVisible());
  }));

test("What is typed narrows the songs, without accents and case, and stands in the address", () =>
  visiting(sample, async (page) => {
    await page.fill("#search", "dvorak SLOVANSKY");
    assert.ok((await rows(page).count()) > 0);
    assert.match(await page.evaluate(() => location.hash), /^#songs\?q=dvorak/);
    const found = await count(page);
    await page.reload();
    await page.waitForSelector(":root[data-ready]");
    assert.equal(await count(page), found);
    assert.equal(await page.inputValue("#search"), "dvorak SLOVANSKY");
    await page.fill("#search", "no such song");
    assert.match(await count(page), /^Nothing found/);
    assert.equal(await rows(page).count(), 0);
    await page.click("#clear");
    assert.match(await count(page), /^212 songs/);
  }));

test("A heading sorts up, then down, then not at all", () =>
  visiting(`${sample}#songs`, async (page) => {
    const plain = await names(page);
    const head = page.locator("#grid-head .plays button");
    await head.click();
    assert.equal(await page.locator("#grid-head .plays").getAttribute("aria-sort"), "ascending");
    await head.click();
    assert.equal((await names(page))[0], 'Violin Concerto in E Major, RV 269 "La primavera": I. Allegro');
    assert.equal(await page.locator("#grid-head .plays").getAttribute("aria-sort"), "descending");
    await page.keyboard.press("Enter");
    assert.deepEqual(await names(page), plain);
  }));

test("A playlist is chosen in the tree, by mouse and by keyboard", () =>
  visiting(`${sample}#songs`, async (page) => {
    await page.getByRole("treeitem", {name: "Genius"}).click();
    assert.match(await count(page), /^25 songs in Genius/);
    await page.keyboard.press("Home");
    await page.keyboard.press("Enter");
    assert.match(await count(page), /^212 songs$/);
    const folder = page.getByRole("treeitem", {name: "Composers"});
    await folder.click();
    assert.equal(await folder.getAttribute("aria-expanded"), "true");
    await page.keyboard.press("ArrowDown");
    await page.keyboard.press("Enter");
    assert.match(await count(page), /songs? in /);
    await page.keyboard.press("ArrowLeft");
    await page.keyboard.press("ArrowLeft");
    assert.equal(await folder.getAttribute("aria-expanded"), "false");
  }));

test("Albums, plots and what is missing lead to their songs", () =>
  visiting(sample, async (page) => {
    await page.locator(".top .album").first().click();
    assert.match(await count(page), /^\d+ songs on The Four Seasons/);
    await page.goBack();
    await page.locator(".genres a").first().click();
    assert.match(await count(page), /^51 songs genre: Baroque/);
    await page.goBack();
    await page.locator(".missing a").first().click();
    assert.match(await count(page), /without: Artist/);
    await page.goto(`${sample}#albums`);
    await page.locator("#wall .album:visible").first().click();
    assert.match(await count(page), /songs? on /);
  }));

test("A song opens with everything that is known of it, and its links lead on", () =>
  visiting(`${sample}#songs?q=primavera`, async (page) => {
    await rows(page).first().click();
    assert.match(await page.locator("#details h2").textContent(), /La primavera/);
    assert.ok((await page.locator("#details dt").count()) > 10);
    await page.locator("#details dd a").first().click();
    assert.equal(await page.locator("dialog[open]").count(), 0);
    assert.match(await count(page), /songs by /);
  }));

test("The keyboard alone reaches the search, the last row and a song, and comes back", () =>
  visiting(many, async (page) => {
    await page.keyboard.press("/");
    assert.equal(await page.evaluate(() => document.activeElement.id), "search");
    await page.keyboard.type("song");
    await page.keyboard.press("ArrowDown");
    assert.equal(await page.evaluate(() => document.activeElement.getAttribute("aria-rowindex")), "2");
    for (const [key, row] of [
      ["ArrowDown", 3],
      ["End", 20001],
      ["ArrowUp", 20000],
      ["Home", 2],
      ["PageDown", 19],
    ]) {
      await page.keyboard.press(key);
      const focused = Number(await page.evaluate(() => document.activeElement.getAttribute("aria-rowindex")));
      assert.ok(key === "PageDown" ? focused > 5 : focused === row, `${key}: ${focused}`);
      assert.ok(await isSeen(page, focused), `${key}: the row is not seen`);
      assert.equal(await page.locator("#rows .row[tabindex='0']").count(), 1);
    }
    await page.keyboard.press("Enter");
    assert.equal(await page.locator("dialog[open]").count(), 1);
    await page.keyboard.press("Escape");
    assert.equal(await page.locator("dialog[open]").count(), 0);
    assert.match(await page.evaluate(() => document.activeElement.className), /row/);
  }));

test("While it scrolls, rows stand in order, without gaps, and few at a time", () =>
  visiting(`${many}#songs`, async (page) => {
    for (const by of [1000, 30000, 600000, -300, -200000, 37, -37]) {
      await page.mouse.move(700, 500);
      await page.evaluate((step) => scrollBy(0, step), by);
      await page.evaluate(() => new Promise((done) => requestAnimationFrame(() => requestAnimationFrame(done))));
      const seen = await page.evaluate(() =>
        [...document.querySelectorAll("#rows .row:not([hidden])")].map((row) => [
          Number(row.getAttribute("aria-rowindex")),
          row.getBoundingClientRect().top,
        ]),
      );
      for (let i = 1; i < seen.length; ++i) {
        assert.equal(seen[i][0], seen[i - 1][0] + 1);
        assert.ok(Math.abs(seen[i][1] - seen[i - 1][1] - 36) < 1);
      }
      assert.ok(seen[0][1] <= 200 && seen.at(-1)[1] >= 700, `${by}: the window is not filled`);
    }
    assert.ok((await page.evaluate(() => document.querySelectorAll("*").length)) < 1500);
  }));

test("A finger opens a song and the playlists on a small screen", () =>
  visiting(
    `${sample}#songs`,
    async (page) => {
      await rows(page).nth(1).tap();
      assert.equal(await page.locator("dialog[open]").count(), 1);
      await page.locator("#details .close").tap();
      await page.locator("#lists-button").tap();
      await page.getByRole("treeitem", {name: "Genius"}).tap();
      assert.match(await count(page), /^25 songs/);
      assert.ok(await page.evaluate(() => document.documentElement.scrollWidth <= innerWidth), "it scrolls sideways");
    },
    {viewport: {width: 360, height: 740}, hasTouch: true, isMobile: true},
  ));

test("Columns are chosen, and the table keeps to the window", () =>
  visiting(`${sample}#songs`, async (page) => {
    await page.click("#columns-button");
    await page.locator("#columns input[name=composer]").check();
    await page.locator("#columns input[name=album]").uncheck();
    await page.keyboard.press("Escape");
    assert.equal(await page.locator("#grid-head .composer").count(), 1);
    assert.equal(await page.locator("#grid-head .album").count(), 0);
    assert.ok((await page.locator("#rows .row .composer").allTextContents()).some((text) => text !== ""));
  }));

test("Paper has the songs that were looked at", () =>
  visiting(`${sample}#songs?q=dvorak`, async (page) => {
    await page.evaluate(() => window.dispatchEvent(new Event("beforeprint")));
    await page.emulateMedia({media: "print"});
    assert.ok((await page.locator("#printed li:visible").count()) > 3);
    assert.equal(await page.locator("nav:visible, #grid:visible").count(), 0);
    await page.evaluate(() => window.dispatchEvent(new Event("afterprint")));
    assert.equal(await page.locator("#printed li").count(), 0);
  }));
