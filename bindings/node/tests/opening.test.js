'use strict';
// Opening and closing: what is read, what is said when it cannot be, and what is left behind.

const assert = require('node:assert');
const fs = require('node:fs');
const path = require('node:path');
const test = require('node:test');
const { Worker } = require('node:worker_threads');
const koffi = require('koffi');
const { AlreadyOpenError, ClosedError, Library } = require('../lib/index.js');
const { LinkedHome } = require('../lib/linked-home.js');
const { fileName } = require('../lib/shared-library.js');
const sample = require('./sample.js');

const { file, home, otherHome, songs } = sample;
const built = process.env.TAVREL_LIBRARY_PATH;

function count(place) {
  const library = new Library(place);
  try {
    return library.songs.length;
  } finally {
    library.close();
  }
}

test('a home, a file and the user\'s own home are read, one after the other', (t) => {
  assert.strictEqual(count({ home }), songs);
  assert.strictEqual(count({ file }), songs);
  sample.setVariable(t, 'HOME', otherHome);
  assert.strictEqual(count(), 5);
  assert.strictEqual(count({ home }), songs);
});

test('a place may be relative', (t) => {
  const former = process.cwd();
  t.after(() => process.chdir(former));
  process.chdir(path.dirname(home));
  assert.strictEqual(count({ home: path.basename(home) }), songs);
  process.chdir(path.dirname(file));
  assert.strictEqual(count({ file: path.basename(file) }), songs);
});

test('a second library at a time is refused, and leaves the first alone', (t) => {
  const temporary = sample.temporaryFolder(t);
  const library = new Library({ file });
  t.after(() => library.close());
  assert.throws(() => new Library({ home: otherHome }),
    { name: 'AlreadyOpenError', message: /one at a time: close it/ });
  assert.throws(() => new Library({ file }), AlreadyOpenError);
  assert.strictEqual(library.songs.length, songs);
  assert.strictEqual(fs.readdirSync(temporary).length, 1);
});

test('a library that something else has loaded is refused', () => {
  const loaded = koffi.load(built);
  assert.throws(() => new Library({ file }), { name: 'AlreadyOpenError', message: /loaded in this process already/ });
  loaded.unload();
  assert.strictEqual(count({ file }), songs);
});

test('$HOME is as before', (t) => {
  const getenv = koffi.load(null).func('getenv', 'str', ['str']);
  for (const value of ['/nowhere', undefined]) {
    sample.setVariable(t, 'HOME', value);
    count({ home });
    assert.deepStrictEqual([process.env.HOME, getenv('HOME')], [value, value ?? null]);
    assert.throws(() => new Library({ home: '/nowhere' }), { code: 'ENOENT' });
    assert.deepStrictEqual([process.env.HOME, getenv('HOME')], [value, value ?? null]);
  }
});

test('a worker thread reads the home that it was given', async () => {
  const main = require.resolve('../lib/index.js');
  const code = `const { parentPort } = require('node:worker_threads');
    const { Library } = require(${JSON.stringify(main)});
    const library = new Library({ home: ${JSON.stringify(otherHome)} });
    parentPort.postMessage(library.songs.length); library.close();`;
  let answer;
  await new Promise((resolve, reject) => {
    const worker = new Worker(code, { eval: true });
    worker.on('message', (value) => { answer = value; }).on('error', reject).on('exit', resolve);
  });
  assert.strictEqual(answer, 5);
});

test('what is missing is named', (t) => {
  const folder = sample.folder(t);
  const temporary = sample.temporaryFolder(t);
  const gone = path.join(folder, 'Gone.xml');
  assert.throws(() => new Library({ file: gone }), { code: 'ENOENT', path: gone });
  assert.throws(() => new Library({ home: folder }),
    { code: 'ENOENT', path: path.join(folder, 'Music/iTunes/iTunes Music Library.xml') });
  assert.throws(() => new Library({ file: folder }), { code: 'EISDIR', path: folder });
  assert.deepStrictEqual(fs.readdirSync(temporary), []);
});

test('a file that is no library is an error', (t) => {
  const wrong = path.join(sample.folder(t), 'Some.xml');
  const temporary = sample.temporaryFolder(t);
  fs.writeFileSync(wrong, 'no library');
  assert.throws(() => new Library({ file: wrong }), { name: 'LibraryError', message: /Some\.xml/ });
  assert.deepStrictEqual(fs.readdirSync(temporary), []);
  assert.strictEqual(count({ file }), songs);
});

test('a place is a home or a file', () => {
  assert.throws(() => new Library({ home, file }), TypeError);
});

test('a closed library refuses politely', () => {
  const library = new Library({ file });
  const [playlist, song, kept] = [library.playlists.at(0), library.songs.at(0), library.songs.at(1)];
  const { songs: all, playlists } = library;
  const { name } = kept;
  library.close();
  library.close();
  assert.ok(library.isClosed);
  for (const ask of [() => song.name, () => song.artwork(), () => song.properties, () => playlist.name,
    () => playlist.kind, () => playlist.songs.length, () => playlist.properties, () => all.length, () => [...all],
    () => playlists.at(0), () => library.properties, () => library.songs.at(0), () => library.appendRingtone('/a')]) {
    assert.throws(ask, ClosedError);
  }
  assert.strictEqual(kept.name, name);
});

test('a library can be disposed of', () => {
  const library = new Library({ file });
  library[Symbol.dispose ?? Symbol.for('Symbol.dispose')]();
  assert.ok(library.isClosed);
});

test('a library that nothing refers to is closed', (t) => {
  const temporary = sample.temporaryFolder(t);
  const code = `
    const flags = require('node:v8').setFlagsFromString('--expose-gc');
    const gc = require('node:vm').runInNewContext('gc');
    (() => { new tavrel.Library({ file: ${JSON.stringify(file)} }).songs.length; })();
    setTimeout(() => { gc(); setTimeout(() => {
      console.log(new tavrel.Library({ home: ${JSON.stringify(otherHome)} }).songs.length);
      console.log(require('node:fs').readdirSync(process.env.TMPDIR).length);
    }, 1); }, 1);`;
  assert.deepStrictEqual(sample.run(code, { TMPDIR: temporary }), ['5\n0\n', '']);
});

test('nothing is left behind by a process that does not close', (t) => {
  const temporary = sample.temporaryFolder(t);
  const code = `console.log(new tavrel.Library({ file: ${JSON.stringify(file)} }).songs.length)`;
  assert.deepStrictEqual(sample.run(code, { TMPDIR: temporary }), [`${songs}\n`, '']);
  assert.deepStrictEqual(fs.readdirSync(temporary), []);
});

// Before version 20 Node itself keeps what belongs to a native function until it has a moment to clean up.
const keepsNothing = Number(process.versions.node.split('.')[0]) >= 20;

test('libraries that were closed leave no memory behind, without a pause between them', { skip: !keepsNothing }, () => {
  const place = { file: path.join(otherHome, 'Music/iTunes/iTunes Music Library.xml') };
  const code = `
    require('node:v8').setFlagsFromString('--expose-gc');
    const gc = require('node:vm').runInNewContext('gc');
    function use(times) {
      for (; times > 0; --times) {
        const library = new tavrel.Library(${JSON.stringify(place)});
        for (const song of library.search('a')) [song.name, song.properties, song.artwork()];
        library.close();
      }
      gc();
      return process.memoryUsage().heapUsed;
    }
    const before = use(50);
    console.log(use(150) - before);`;
  const [growth, errors] = sample.run(code);
  assert.strictEqual(errors, '');
  assert.ok(Number(growth) < 200000, growth); // in bytes; what a library takes here is several thousand
});

test('the folder of links is its owner\'s alone, and what others put there stays', (t) => {
  const temporary = sample.temporaryFolder(t);
  const links = new LinkedHome(file);
  assert.strictEqual(path.dirname(links.folder), temporary);
  assert.strictEqual(fs.statSync(links.folder).mode & 0o777, 0o700);
  fs.writeFileSync(path.join(links.folder, 'theirs'), '');
  links.remove();
  assert.deepStrictEqual(fs.readdirSync(links.folder), ['theirs']);
});

test('what took the place of the folder of links is not followed', (t) => {
  const temporary = sample.temporaryFolder(t);
  const links = new LinkedHome(file);
  const moved = path.join(temporary, 'moved');
  fs.renameSync(links.folder, moved);
  fs.symlinkSync(moved, links.folder);
  links.remove();
  assert.ok(fs.existsSync(path.join(moved, 'Music')));
  fs.unlinkSync(links.folder);
  fs.mkdirSync(path.join(links.folder, 'Music/iTunes'), { recursive: true });
  links.remove();
  assert.ok(fs.existsSync(path.join(links.folder, 'Music/iTunes')));
});

test('libTavrel is the file, or in the folder, that the variable names', (t) => {
  const folder = sample.folder(t);
  fs.copyFileSync(built, path.join(folder, fileName));
  const code = `console.log(new tavrel.Library({ file: ${JSON.stringify(file)} }).songs.length)`;
  for (const place of [folder, path.join(folder, fileName)]) {
    assert.deepStrictEqual(sample.run(code, { TAVREL_LIBRARY_PATH: place }), [`${songs}\n`, '']);
  }
  assert.deepStrictEqual(sample.run(code, { TAVREL_LIBRARY_PATH: '', LD_LIBRARY_PATH: folder }), [`${songs}\n`, '']);
});

test('libTavrel lies beside the module', (t) => {
  const folder = sample.folder(t);
  const modules = require.resolve.paths('koffi').find((place) => fs.existsSync(path.join(place, 'koffi')));
  fs.cpSync(path.dirname(require.resolve('../lib/index.js')), path.join(folder, 'lib'), { recursive: true });
  fs.copyFileSync(require.resolve('../package.json'), path.join(folder, 'package.json'));
  fs.symlinkSync(modules, path.join(folder, 'node_modules'));
  fs.copyFileSync(built, path.join(folder, 'lib', fileName));
  const code = `console.log(new tavrel.Library({ file: ${JSON.stringify(file)} }).songs.length)`;
  assert.deepStrictEqual(sample.run(code, { TAVREL_LIBRARY_PATH: '' }, path.join(folder, 'lib/index.js')),
    [`${songs}\n`, '']);
});

test('a libTavrel that is not there, or is something else, is an error that says so', (t) => {
  const temporary = sample.temporaryFolder(t);
  sample.setVariable(t, 'TAVREL_LIBRARY_PATH', path.join(temporary, 'none'));
  assert.throws(() => new Library({ file }),
    { name: 'LibraryError', message: /cannot load .*none: .*TAVREL_LIBRARY_PATH/ });
  // A small part of the C library that Node does not use.
  process.env.TAVREL_LIBRARY_PATH = 'libBrokenLocale.so.1';
  for (let times = 0; times < 2; ++times) {
    assert.throws(() => new Library({ file }), {
      name: 'LibraryError',
      message: 'libBrokenLocale.so.1 has no function AgentInitializer: it is of another version',
    });
  }
  assert.deepStrictEqual(fs.readdirSync(temporary), []);
});
