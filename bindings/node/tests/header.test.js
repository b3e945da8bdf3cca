'use strict';
// The tables of records and functions are those of the C header, and the versions its version.

const assert = require('node:assert');
const fs = require('node:fs');
const path = require('node:path');
const test = require('node:test');
const koffi = require('koffi');
const f = require('../lib/functions.js');
const { fileName } = require('../lib/shared-library.js');
const { checkout } = require('./sample.js');

const read = (name) => fs.readFileSync(path.join(checkout, name), 'utf8');
const header = read('include/tavrel/tavrel.h');
const code = header.replace(/\/\*.*?\*\//gs, '');

const types = {
  'void': koffi.type('void'),
  'int32_t': f.int,
  'const char*': f.text,
  'char*': f.buffer,
  'void*': f.buffer,
  'uint8_t*': f.buffer,
  'PlaylistRecord*': f.PlaylistRecord,
  'ArtworkHandle*': f.ArtworkHandle,
  'SongInfo*': f.songInfo,
  'ArtworkInfo*': f.artworkInfo,
  'SearchSongCallback': f.SearchSongCallback,
  'PropertyVisitor': f.PropertyVisitor,
  'FindSongsCallback': f.FindSongsCallback,
};

/** [type, name] of "const char* name"; the name may be missing. Only of texts is it told who writes them. */
function declaration(text) {
  const [, isConst, kind, name] = text.match(/^\s*(const )?(\w+\s*\**)\s*(\w*)\s*$/);
  const plain = kind.replace(/\s/g, '');
  const type = types[isConst && plain === 'char*' ? 'const char*' : plain];
  assert.ok(type, text);
  return [type, name];
}

const argumentsOf = (text) => (text.trim() === 'void' ? [] : text.split(',').map((part) => declaration(part)[0]));

function signatures(pattern) {
  return Object.fromEntries([...code.matchAll(pattern)].map(([, result, name, list]) =>
    [name, [declaration(result)[0], argumentsOf(list)]]));
}

function assertSame(ours, theirs, name) {
  assert.ok(ours[0] === theirs[0], `the result of ${name}`);
  assert.strictEqual(ours[1].length, theirs[1].length, name);
  ours[1].forEach((type, index) => assert.ok(type === theirs[1][index], `argument ${index} of ${name}`));
}

test('every function is bound with its types', () => {
  const functions = signatures(/TAVREL_API\s+([^()]+?)(\w+)\(([^()]*)\)\s*TAVREL_NOEXCEPT;/g);
  assert.strictEqual(Object.keys(functions).length, header.split('\nTAVREL_API').length - 1);
  assert.deepStrictEqual(Object.keys(f.functions).sort(), Object.keys(functions).sort());
  for (const name of Object.keys(functions)) assertSame(f.functions[name], functions[name], name);
});

test('every callback has its types', () => {
  const callbacks = signatures(/typedef ([^()]+)\(\*(\w+)\)\(([^()]*)\);/g);
  assert.strictEqual(Object.keys(callbacks).length, 3);
  for (const [name, signature] of Object.entries(callbacks)) {
    const { result, arguments: list } = f[name].proto;
    assertSame([result, list.map(({ type }) => type)], signature, name);
  }
});

test('every record has its fields', () => {
  for (const [record, size] of [['SongInfo', 96], ['ArtworkInfo', 32]]) {
    const [, body] = code.match(new RegExp(`typedef struct ${record} \\{(.*?)\\} ${record};`, 's'));
    const fields = body.split(';').filter((text) => text.trim()).map(declaration);
    assert.deepStrictEqual(Object.keys(f[record].members), fields.map(([, name]) => name));
    for (const [type, name] of fields) assert.ok(f[record].members[name].type === type, name);
    if (koffi.sizeof('void *') === 8) assert.strictEqual(koffi.sizeof(f[record]), size);
  }
  assert.deepStrictEqual(Object.keys(f.emptySongInfo()), Object.keys(f.SongInfo.members));
});

test('the module has the version of the library, and looks for its name', () => {
  const [, version] = header.match(/#define TAVREL_VERSION "(.*)"/);
  assert.strictEqual(require('../package.json').version, version);
  const lock = JSON.parse(read('bindings/node/package-lock.json'));
  assert.deepStrictEqual([lock.version, lock.packages[''].version], [version, version]);
  assert.ok(path.basename(process.env.TAVREL_LIBRARY_PATH).startsWith(`${fileName}.`) || process.platform === 'darwin');
  assert.ok(read('bindings/node/README.md').includes(`\`${fileName}\``));
});

test('the lock file resolves no addresses', () => {
  const lock = read('bindings/node/package-lock.json');
  assert.ok(lock.includes('"integrity"'));
  assert.ok(!/resolved|funding|:\/\//.test(lock));
});

test('the licence is that of the project', () => {
  assert.strictEqual(read('bindings/node/LICENSE'), read('LICENSE'));
});
