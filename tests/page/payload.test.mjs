import assert from "node:assert/strict";
import {execFileSync} from "node:child_process";
import {mkdtempSync, rmSync, writeFileSync} from "node:fs";
import {tmpdir} from "node:os";
import {join} from "node:path";
import {test} from "node:test";
import {bytesOfBlock, unpack} from "../../host/page/browser/payload.js";

const {TAVREL, TAVREL_SAMPLE} = process.env;

/** The songs of the page that the program writes. @param {string[]} library */
async function songsOf(library) {
  const page = execFileSync(TAVREL, [...library, "page", "-o", "-", "--covers", "none"], {
    maxBuffer: 1 << 26,
  }).toString();
  const [, form, text] = /id="songs-data" data-form="(\w+)">([^<]*)</.exec(page);
  return {form, library: unpack(await bytesOfBlock(text, form))};
}

/** What `tavrel songs` tells of them. @param {string[]} library */
function toldOf(library) {
  return JSON.parse(
    execFileSync(TAVREL, [...library, "songs", "--json", "--fields", "name,artist,year,plays"], {
      maxBuffer: 1 << 26,
    }).toString(),
  );
}

/** @param {Awaited<ReturnType<typeof songsOf>>["library"]} library */
function compared(library) {
  const text = (field, song) => library.byField.get(field).texts[library.byField.get(field).numbers[song]];
  const number = (field, song) => (library.byField.get(field)?.numbers[song] || 0) - 1;
  return Array.from({length: library.count}, (_, song) => ({
    name: text("name", song),
    artist: text("artist", song),
    year: number("year", song),
    plays: number("plays", song),
  }));
}

async function checkAgainstTold(library, form) {
  const page = await songsOf(library);
  const told = toldOf(library).map(({name, artist, year, plays}) => ({
    name: (name ?? "").normalize(),
    artist: (artist ?? "").normalize(),
    year: year ?? -1,
    plays: plays ?? -1,
  }));
  assert.equal(page.form, form);
  assert.deepEqual(compared(page.library), told);
  return page.library;
}

test("The sample's songs are those that the program lists", async () => {
  const library = await checkAgainstTold(["--home", TAVREL_SAMPLE], "plain");
  assert.ok(library.playlists.some((list) => list.type === "folder" && list.songs.length > 0));
});

test("Many songs come out of gzip as they went in", async () => {
  const folder = mkdtempSync(join(tmpdir(), "page-"));
  const file = join(folder, "library.xml");
  const track = (i) =>
    `<key>${i}</key><dict><key>Track ID</key><integer>${i}</integer><key>Name</key><string>N ${(i * 7) % 5501}</string>` +
    `<key>Artist</key><string>A ${i >> 4}</string><key>Year</key><integer>${i % 3 ? 1900 + (i % 120) : i * 7e7}</integer>` +
    `${i % 5 ? "" : "<key>Name</key><string>of equal keys the first counts</string><key>Play Count</key><array/>"}</dict>`;
  writeFileSync(
    file,
    `<?xml version="1.0"?><plist version="1.0"><dict><key>Tracks</key><dict>${Array.from({length: 6000}, (_, i) =>
      track(i + 1),
    ).join("\n")}</dict></dict></plist>`,
  );
  await checkAgainstTold(["-l", file], "gzip").finally(() => rmSync(folder, {recursive: true}));
});

test("Damaged songs are told, not shown", () => {
  assert.throws(() => unpack(new Uint8Array(3)));
  const head = new TextEncoder().encode(
    '{"songs":2,"columns":[{"field":"year","kind":"number","bytes":1,"differences":false}]}',
  );
  const bytes = new Uint8Array(5 + head.length);
  new DataView(bytes.buffer).setUint32(0, head.length, true);
  bytes.set(head, 4);
  assert.throws(() => unpack(bytes));
});
