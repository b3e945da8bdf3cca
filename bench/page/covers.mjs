// Covers for a library file: an artwork cache beside it, with a picture for each of its first albums.
import {execFileSync} from "node:child_process";
import {closeSync, existsSync, mkdirSync, openSync, readSync, writeFileSync} from "node:fs";
import {dirname, join} from "node:path";

const SIDE = 500; // pixels, about what caches hold
const DIFFERENT = 250; // pictures; the albums take turns

/** Draws a picture that costs a JPEG file what printed covers do. Runs in the browser. */
async function draw([number, side]) {
  let state = (number + 1) * 2654435761;
  const random = () => (state = (Math.imul(state, 1664525) + 1013904223) >>> 0) / 2 ** 32;
  const canvas = new OffscreenCanvas(side, side);
  const context = canvas.getContext("2d");
  const colour = (alpha) => `hsl(${random() * 360} ${20 + random() * 60}% ${15 + random() * 70}% / ${alpha})`;
  const ground = context.createLinearGradient(0, 0, random() * side, side);
  ground.addColorStop(0, colour(1));
  ground.addColorStop(1, colour(1));
  context.fillStyle = ground;
  context.fillRect(0, 0, side, side);
  for (let i = 0; i < 40; ++i) {
    context.fillStyle = colour(0.35);
    context.beginPath();
    context.ellipse(
      random() * side,
      random() * side,
      random() * side * 0.3,
      random() * side * 0.15,
      random() * 3,
      0,
      7,
    );
    context.fill();
  }
  context.fillStyle = colour(1);
  context.font = `${side / 8}px serif`;
  context.fillText(`Album ${number}`, side / 12, side / 5, side * 0.8);
  const pixels = context.getImageData(0, 0, side, side);
  for (let i = 0; i < pixels.data.length; ++i) if (i % 4 !== 3) pixels.data[i] += random() * 24 - 12; // grain
  context.putImageData(pixels, 0, 0);
  const bytes = new Uint8Array(await (await canvas.convertToBlob({type: "image/jpeg", quality: 0.85})).arrayBuffer());
  return btoa(Array.from(bytes, (byte) => String.fromCharCode(byte)).join(""));
}

/** A cache file of one JPEG picture. @param {Buffer} picture */
function cacheFile(picture) {
  const header = Buffer.alloc(284);
  header.writeUInt32BE(284);
  header.write("itch", 4);
  const block = Buffer.alloc(208);
  block.writeUInt32BE(208 + picture.length);
  block.write("item", 4);
  block.writeUInt32BE(208, 8);
  block.writeUInt32BE(0x0d000000, 48);
  block.write("data", 204);
  return Buffer.concat([header, block, picture]);
}

/** The ID that stands at the start of a library file. @param {string} library */
function libraryId(library) {
  const start = Buffer.alloc(8192);
  const file = openSync(library, "r");
  readSync(file, start);
  closeSync(file);
  return /<key>Library Persistent ID<\/key><string>([0-9A-F]{16})/.exec(start.toString("latin1"))[1];
}

/** The ID of the first song of each album. @param {string} tavrel @param {string} library @param {number} most */
function firstSongs(tavrel, library, most) {
  const lines = execFileSync(
    tavrel,
    ["-q", "-l", library, "--paths", "raw", "songs", "--format", "jsonl", "--fields", "id,album,artist,albumArtist"],
    {maxBuffer: 2 ** 30},
  )
    .toString()
    .trim()
    .split("\n");
  const songs = new Map();
  for (const line of lines) {
    const {id, album, artist, albumArtist} = JSON.parse(line);
    const key = `${albumArtist ?? artist}\n${album}`;
    if (album && songs.size < most && !songs.has(key)) songs.set(key, id);
  }
  return [...songs.values()];
}

/**
 * Writes the cache, unless it is there.
 * @param {import("playwright-core").Page} page @param {string} tavrel @param {string} library @param {number} count
 */
export async function makeCovers(page, tavrel, library, count) {
  const folder = join(dirname(library), "Album Artwork");
  const done = join(folder, `${count} covers`);
  if (existsSync(done)) return;
  const pictures = [];
  for (let i = 0; i < DIFFERENT; ++i)
    pictures.push(cacheFile(Buffer.from(await page.evaluate(draw, [i, SIDE]), "base64")));
  const id = libraryId(library);
  firstSongs(tavrel, library, count).forEach((song, i) => {
    const levels = [...song.slice(-3)].reverse().map((digit) => String(parseInt(digit, 16)).padStart(2, "0"));
    const place = join(folder, "Cache", id, ...levels);
    mkdirSync(place, {recursive: true});
    writeFileSync(join(place, `${id}-${song}.itc2`), pictures[i % DIFFERENT]);
  });
  writeFileSync(done, "");
}
