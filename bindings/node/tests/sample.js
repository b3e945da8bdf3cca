'use strict';
// What the tests read: the sample library, with a small reader of its lines as the judge.

const assert = require('node:assert');
const { spawnSync } = require('node:child_process');
const fs = require('node:fs');
const os = require('node:os');
const path = require('node:path');

const checkout = process.env.TAVREL_CHECKOUT ?? path.resolve(__dirname, '../../..');
const home = path.join(checkout, 'samples/home');
const file = path.join(home, 'Music/iTunes/iTunes Music Library.xml');
const otherHome = path.join(checkout, 'tests/system/home');
const main = path.resolve(__dirname, '../lib/index.js');

/** The dictionaries of the file's tracks, as pairs of a key and {type, text}, in its order. */
function tracks() {
  const all = fs.readFileSync(file, 'utf8').split('<key>Tracks</key>')[1].split('<key>Playlists</key>')[0];
  return [...all.matchAll(/<key>\d+<\/key>\s*<dict>(.*?)<\/dict>/gs)].map((match) => pairs(match[1]));
}

function pairs(text) {
  const found = text.matchAll(/<key>([^<]*)<\/key>\s*<(\w+)(?:\/>|>(.*?)<\/\2>)/gs);
  return new Map([...found].map(([, key, type, value]) => [decode(key), { type, text: decode(value ?? '') }]));
}

function decode(text) {
  return text.replace(/&(?:#(\d+)|#x([0-9a-fA-F]+)|(\w+));/g, (_, decimal, hexadecimal, name) =>
    name ? { amp: '&', lt: '<', gt: '>', quot: '"', apos: "'" }[name]
      : String.fromCodePoint(decimal ? Number(decimal) : parseInt(hexadecimal, 16)));
}

/** A new folder, which goes when the test `t` ends. */
function folder(t) {
  const made = fs.mkdtempSync(path.join(os.tmpdir(), 'tavrel-test-'));
  t.after(() => fs.rmSync(made, { recursive: true }));
  return made;
}

/** Another $TMPDIR, empty, until the test `t` ends. */
function temporaryFolder(t) {
  const made = folder(t);
  setVariable(t, 'TMPDIR', made);
  return made;
}

function setVariable(t, name, value) {
  const former = process.env[name];
  const set = (text) => {
    if (text === undefined) delete process.env[name];
    else process.env[name] = text;
  };
  set(value);
  t.after(() => set(former));
}

/** Runs code in another Node, with `tavrel` standing for the module; [output, errors]. */
function run(code, variables = {}, module = main) {
  const whole = `const tavrel = require(${JSON.stringify(module)}); ${code}`;
  const ended = spawnSync(process.execPath, ['-e', whole], { env: { ...process.env, ...variables }, encoding: 'utf8' });
  assert.ok(!ended.error && ended.signal === null, String(ended.error ?? ended.signal));
  return [ended.stdout, ended.stderr];
}

module.exports = {
  checkout, file, folder, home, otherHome, pairs, run, setVariable, songs: tracks().length, temporaryFolder, tracks,
};
