// What a page of a large library costs, the program that writes it and the browser that shows it.
//
// node page.mjs LIBRARY [--rounds N]; the environment is that of scripts/page.sh. Prints a table of figures, each
// beside its limit. Times of the program are of its processors' work, as ratios to a bare load in the same round.
import {spawnSync} from "node:child_process";
import {mkdirSync, readFileSync, statSync, writeFileSync} from "node:fs";
import {createRequire} from "node:module";
import {join} from "node:path";
import {pathToFileURL} from "node:url";
import {makeCovers} from "./covers.mjs";

const {TAVREL, PAGE_MODULES, PAGE_FOLDER, CHROMIUM} = process.env;
const {chromium} = createRequire(join(PAGE_MODULES, "package.json"))("playwright-core");
const library = process.argv[2];
const rounds = Number(process.argv[process.argv.indexOf("--rounds") + 1]) || 5;
const file = join(PAGE_FOLDER, "bench.html");
const usualCovers = 2000;

const megabytesOf = (path) => Number((statSync(path).size / 1e6).toFixed(2));
const median = (numbers) => [...numbers].sort((a, b) => a - b)[numbers.length >> 1];
const rows = [];
function tell(figure, value, unit, limit) {
  rows.push({
    figure,
    value: `${value} ${unit}`.trim(),
    limit: limit === undefined ? "" : `${limit} ${unit}`.trim(),
    kept: limit === undefined ? "" : value <= limit ? "yes" : "no",
  });
}

/** Seconds that the program takes, by the clock. @param {string[]} words */
function run(words) {
  const start = process.hrtime.bigint();
  const done = spawnSync(TAVREL, ["-q", "-l", library, ...words], {stdio: ["ignore", "ignore", "inherit"]});
  if (done.status !== 0) throw new Error(`tavrel ${words.join(" ")} ends with ${done.status}`);
  return Number(process.hrtime.bigint() - start) / 1e9;
}

function measureWriting() {
  const ratios = [];
  const times = [];
  for (let i = 0; i < rounds; ++i) {
    const load = run(["playlists"]);
    const page = run(["page", "-o", file, "--covers", "none"]);
    times.push(page);
    ratios.push(page / load);
  }
  tell("written, beside a load that lists the playlists", Number(median(ratios).toFixed(1)), "times", 2);
  tell("written", Number(median(times).toFixed(2)), "s");
  tell("file without covers", megabytesOf(file), "MB", 3);
}

/** What covers add: as many as a page has unless told otherwise. */
async function measureCovers(browser) {
  const page = await browser.newPage();
  await makeCovers(page, TAVREL, library, usualCovers);
  await page.close();
  const withCovers = join(PAGE_FOLDER, "covers.html");
  const times = [];
  const without = run(["page", "-o", withCovers, "--covers", "none"]);
  for (let i = 0; i < rounds; ++i) times.push(run(["page", "-o", withCovers]));
  tell(`written with ${usualCovers} covers`, Number(median(times).toFixed(1)), "s");
  tell("for each of the covers", Number((((median(times) - without) * 1000) / usualCovers).toFixed(1)), "ms");
  tell(`file with ${usualCovers} covers`, megabytesOf(withCovers), "MB", 25);
  await measureOpening(browser, withCovers, `first rows of the table, with ${usualCovers} covers`);
}

/** The middle of several openings: until the first rows of the table stand in the page. */
async function measureOpening(browser, path, figure) {
  const times = [];
  for (let i = 0; i < rounds; ++i) {
    const page = await browser.newPage({viewport: {width: 1280, height: 800}});
    await page.goto(`${pathToFileURL(path).href}#songs`);
    await page.waitForSelector("#rows .row");
    times.push(await page.evaluate(() => new Promise((done) => requestAnimationFrame(() => done(performance.now())))));
    await page.close();
  }
  tell(figure, Number((median(times) / 1000).toFixed(2)), "s", 1.5);
}

async function measureSearch(page) {
  const worst = await page.evaluate(async () => {
    const input = document.getElementById("search");
    const times = [];
    for (const typed of ["corazon love", "the night", "zz qq"]) {
      for (let i = 1; i <= typed.length; ++i) {
        const start = performance.now();
        input.value = typed.slice(0, i);
        input.dispatchEvent(new Event("input"));
        document.body.getBoundingClientRect();
        times.push(performance.now() - start);
        await new Promise((done) => setTimeout(done, 30));
      }
    }
    input.value = "";
    input.dispatchEvent(new Event("input"));
    return times;
  });
  tell("search of two words, slowest key", Math.round(Math.max(...worst)), "ms", 60);
  tell("search of two words, middle key", Math.round(median(worst)), "ms");
}

async function measureSorting(page) {
  const times = await page.evaluate(async () => {
    const taken = {};
    for (const field of ["name", "artist", "plays", "added"]) {
      const start = performance.now();
      document.querySelector(`#grid-head button[data-field="${field}"]`)?.click();
      document.body.getBoundingClientRect();
      taken[field] = performance.now() - start;
      await new Promise((done) => setTimeout(done, 50));
    }
    return taken;
  });
  tell(
    "sorted for the first time, by the slowest of four columns",
    Math.round(Math.max(...Object.values(times))),
    "ms",
  );
}

/** The longest time between two frames in which the page itself was busy, while it scrolls. */
async function measureScrolling(page) {
  const longest = await page.evaluate(async () => {
    scrollTo(0, 0);
    const busy = [];
    const observer = new PerformanceObserver((list) => busy.push(...list.getEntries().map((entry) => entry.duration)));
    observer.observe({entryTypes: ["longtask"]});
    const frames = [];
    let last = performance.now();
    for (let i = 0; i < 240; ++i) {
      scrollBy(0, i % 80 < 40 ? 160 : 2400);
      await new Promise((done) => requestAnimationFrame(done));
      frames.push(performance.now() - last);
      last = performance.now();
    }
    observer.disconnect();
    return {frames, tasks: busy};
  });
  const frames = longest.frames.slice(2);
  tell("longest frame while scrolling", Math.round(Math.max(...frames)), "ms", 50);
  tell("middle frame while scrolling", Math.round(median(frames)), "ms");
}

async function measureMemory(browser, page) {
  const session = await page.context().newCDPSession(page);
  await session.send("HeapProfiler.collectGarbage");
  await session.send("Performance.enable");
  const {metrics} = await session.send("Performance.getMetrics");
  tell("nodes, all that the browser counts", metrics.find((one) => one.name === "Nodes").value, "", 3000);
  const all = await (await browser.newBrowserCDPSession()).send("SystemInfo.getProcessInfo");
  const sizes = all.processInfo
    .filter((one) => one.type === "renderer")
    .map((one) => Number(/^VmRSS:\s*(\d+)/m.exec(readFileSync(`/proc/${one.id}/status`, "utf8"))[1]) / 1024);
  tell("memory of the renderer, resident", Math.round(Math.max(...sizes)), "MB", 300);
}

mkdirSync(PAGE_FOLDER, {recursive: true});
measureWriting();
const browser = await chromium.launch({executablePath: CHROMIUM, args: ["--no-sandbox"]});
await measureCovers(browser);
await measureOpening(browser, file, "first rows of the table");
const page = await browser.newPage({viewport: {width: 1280, height: 800}});
await page.goto(`${pathToFileURL(file).href}#songs`);
await page.waitForSelector(":root[data-ready]");
await page.waitForTimeout(1500);
await measureSearch(page);
await measureSorting(page);
await measureScrolling(page);
await measureMemory(browser, page);
await browser.close();
console.table(rows);
writeFileSync(join(PAGE_FOLDER, "figures.json"), JSON.stringify(rows, null, 1));
