// What the tests in the browser share: pages that the program writes, and a browser that opens them.
import {execFileSync} from "node:child_process";
import {mkdirSync, writeFileSync} from "node:fs";
import {createRequire} from "node:module";
import {join} from "node:path";
import {pathToFileURL} from "node:url";

const {TAVREL, TAVREL_SAMPLE, PAGE_FOLDER, PAGE_MODULES, CHROMIUM} = process.env;
const require = createRequire(join(PAGE_MODULES, "package.json"));

export const axePath = require.resolve("axe-core/axe.min.js");
export const {chromium, devices} = require("playwright-core");

export const folder = PAGE_FOLDER;
mkdirSync(folder, {recursive: true});

/** Writes a page; its address. @param {string} name @param {string[]} library @param {string[]} more */
export function pageOf(name, library, more = []) {
  const file = join(folder, `${name}.html`);
  execFileSync(TAVREL, [...library, "page", "-q", "-o", file, ...more]);
  return pathToFileURL(file).href;
}

export const samplePage = () => pageOf("sample", ["--home", TAVREL_SAMPLE]);

const escaped = (text) => String(text).replace(/&/g, "&amp;").replace(/</g, "&lt;");

/** A library file of songs. @param {string} name @param {Record<string, string|number>[]} songs */
export function libraryOf(name, songs) {
  const value = (one) => (typeof one === "number" ? `<integer>${one}</integer>` : `<string>${escaped(one)}</string>`);
  const tracks = songs.map(
    (song, i) =>
      `<key>${i + 1}</key><dict><key>Track ID</key><integer>${i + 1}</integer>${Object.entries(song)
        .map(([key, one]) => `<key>${key}</key>${value(one)}`)
        .join("")}</dict>`,
  );
  const file = join(folder, `${name}.xml`);
  writeFileSync(
    file,
    `<?xml version="1.0" encoding="UTF-8"?><plist version="1.0"><dict><key>Tracks</key><dict>${tracks.join(
      "\n",
    )}</dict><key>Playlists</key><array/></dict></plist>`,
  );
  return ["-l", file];
}

export const launch = () => chromium.launch({executablePath: CHROMIUM, args: ["--no-sandbox"]});

/**
 * Opens a page and keeps what goes wrong in it, and whatever it asks the network for.
 * @param {import("playwright-core").Browser} browser @param {string} address
 * @param {import("playwright-core").BrowserContextOptions} options
 */
export async function open(browser, address, options = {}) {
  const context = await browser.newContext({viewport: {width: 1280, height: 800}, ...options});
  const page = await context.newPage();
  const faults = [];
  page.on("console", (message) => {
    if (["error", "warning"].includes(message.type())) faults.push(message.text());
  });
  page.on("pageerror", (error) => faults.push(String(error)));
  page.on("dialog", (dialog) => {
    faults.push(`dialog: ${dialog.message()}`);
    void dialog.dismiss();
  });
  page.on("request", (request) => {
    if (!/^(file|data|blob):/.test(request.url())) faults.push(`request: ${request.url()}`);
  });
  await page.goto(address);
  if (options.javaScriptEnabled !== false) await page.waitForSelector(":root[data-ready]");
  return Object.assign(page, {faults});
}
