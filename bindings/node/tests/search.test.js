'use strict';
// The search finds what the library finds, and goes no further than it is asked to.

const assert = require('node:assert');
const test = require('node:test');
const { functions } = require('../lib/functions.js');
const { callBack } = require('../lib/session.js');
const sample = require('./sample.js');

// How many matches each search of the library goes through is seen by who binds the function.
const koffi = require('koffi');
const searches = [];
const load = koffi.load;
koffi.load = (...values) => {
  const library = load(...values);
  return {
    unload: () => library.unload(),
    func(name, ...types) {
      const bound = library.func(name, ...types);
      if (name !== 'FindSongs') return bound;
      return (...terms) => searches.push(bound(...terms));
    },
  };
};
const { ClosedError, Library } = require('../lib/index.js');

function testLibrary(name, body) {
  test(name, () => {
    const library = new Library({ file: sample.file });
    searches.length = 0;
    try {
      body(library);
    } finally {
      library.close();
    }
  });
}

const found = (library, wanted) => [...library.search(wanted)].map((song) => song.index);
const holds = (text, term) => (text ?? '').toLowerCase().includes(term);
const where = (library, wanted) =>
  [...library.songs].filter(wanted).map((song) => song.index);

testLibrary('a text is looked for in names, artists and albums', (library) => {
  const expected = where(library, (song) => [song.name, song.artist, song.album].some((text) => holds(text, 'violin')));
  assert.deepStrictEqual(found(library, 'Violin'), expected);
  assert.ok(expected.length > 4);
});

testLibrary('terms are alternatives', (library) => {
  const expected = where(library, (song) => holds(song.name, 'sonata') || holds(song.artist, 'band'));
  assert.deepStrictEqual(found(library, { name: 'Sonata', artist: 'BAND' }), expected);
});

testLibrary('composed and decomposed texts find each other', (library) => {
  const text = 'Dvo\u0159\u00e1k';
  assert.deepStrictEqual(found(library, text.normalize('NFC')), found(library, text.normalize('NFD')));
  assert.ok(found(library, text).length > 0);
});

testLibrary('the library searches no further than the caller goes', (library) => {
  const songs = library.search('a');
  assert.deepStrictEqual(searches, []);
  songs.next();
  assert.deepStrictEqual(searches, [1]);
  for (let more = 0; more < 4; ++more) songs.next();
  assert.deepStrictEqual(searches, [1, 4, 16]);
  songs.return();
  assert.ok(songs.next().done);
  assert.deepStrictEqual(searches, [1, 4, 16]);
});

testLibrary('every match comes once and in order, however many searches it takes', (library) => {
  const all = found(library, 'a');
  assert.deepStrictEqual(all, [...new Set(all)].sort((one, other) => one - other));
  assert.strictEqual(all.length, searches.at(-1));
  assert.ok(searches.length > 3);
});

testLibrary('nothing to search for is an error at once', (library) => {
  for (const nothing of [undefined, {}, 7, { name: 7 }, 'a\0b']) {
    assert.throws(() => library.search(nothing), TypeError);
  }
});

testLibrary('a search goes no further when the library is closed', (library) => {
  const songs = library.search('a');
  songs.next();
  library.close();
  assert.throws(() => songs.next(), ClosedError);
  assert.throws(() => library.search('a'), ClosedError);
});

test('what a callback throws ends the call and comes out', () => {
  assert.ok(functions.FindSongs);
  const results = [];
  assert.throws(() => callBack((callback) => results.push(callback(1)), () => { throw new RangeError('7'); }),
    new RangeError('7'));
  assert.deepStrictEqual(results, [0]);
});
