'use strict';
// Songs, playlists, properties and covers are what the library's files say.

const assert = require('node:assert');
const fs = require('node:fs');
const path = require('node:path');
const test = require('node:test');
const { Library, LibraryError } = require('../lib/index.js');
const { valueOf } = require('../lib/properties.js');
const sample = require('./sample.js');

const tracks = sample.tracks();

/** Runs `body` with the sample library. */
function withLibrary(body, place = { file: sample.file }) {
  const library = new Library(place);
  try {
    return body(library);
  } finally {
    library.close();
  }
}

function expected({ type, text }) {
  if (['dict', 'array', 'data'].includes(type) || (text === '' && type === 'string')) return null;
  if (type === 'true' || type === 'false') return type === 'true';
  if (type === 'integer' || type === 'real') return Number(text);
  return type === 'date' ? new Date(text) : text;
}

test('every song of the file is there, with its fields', () => withLibrary((library) => {
  assert.ok(tracks.length > 200);
  assert.strictEqual(library.songs.length, tracks.length);
  [...library.songs].forEach((song, index) => {
    const text = (key) => tracks[index].get(key)?.text ?? null;
    const number = (key) => Number(text(key) ?? 0);
    const location = text('Location')?.match(/^file:\/\/(?:localhost)?(\/.*)/)?.[1];
    assert.deepStrictEqual({ ...song.fields, location: location ? song.location : null }, {
      name: text('Name'), artist: text('Artist'), album: text('Album'), genre: text('Genre'),
      location: location ? decodeURIComponent(location) : null,
      totalTime: number('Total Time'), playCount: number('Play Count'), trackNumber: number('Track Number'),
      isMovie: tracks[index].get('Movie')?.type === 'true',
    });
    for (const field of Object.keys(song.fields)) assert.strictEqual(song[field], song.fields[field]);
    assert.strictEqual(song.index, index);
  });
}));

test('properties are those of the file, with their types', () => withLibrary((library) => {
  [...library.songs].forEach((song, index) => {
    const values = [...tracks[index]].map(([key, value]) => [key, expected(value)]);
    assert.deepStrictEqual([...song.properties], values);
  });
  assert.ok(library.properties.get('Date') instanceof Date);
  assert.strictEqual(library.properties.get('Tracks'), null);
}));

test('playlists hold their songs, group after group', () => withLibrary((library) => {
  const lists = fs.readFileSync(sample.file, 'utf8').split('<key>Playlists</key>')[1]
    .split(/<key>Name<\/key>/).slice(1).map((text) => ({
      id: text.match(/Playlist Persistent ID<\/key><string>(\w+)/)[1],
      tracks: [...text.matchAll(/<key>Track ID<\/key><integer>(\d+)/g)].map(([, id]) => Number(id)),
    }));
  let compared = 0;
  for (const playlist of library.playlists) {
    const list = lists.find(({ id }) => id === playlist.properties.get('Playlist Persistent ID'));
    if (!list) {
      assert.deepStrictEqual([playlist.name, playlist.kind, playlist.properties.size], ['Ringtones', 55, 0]);
      continue;
    }
    assert.strictEqual(playlist.name, playlist.properties.get('Name'));
    assert.strictEqual(playlist.kind, playlist.properties.get('Distinguished Kind') ?? 0);
    assert.deepStrictEqual([...playlist.songs].map((song) => song.properties.get('Track ID')), list.tracks);
    ++compared;
  }
  assert.strictEqual(compared, library.playlists.length - 1);
  const inOrder = [...library.playlists].map((playlist) => playlist.group);
  assert.deepStrictEqual([...new Set(inOrder)], [0, 1, 2]);
  assert.deepStrictEqual(inOrder, [...inOrder].sort());
}));

test('a sequence takes positions from both ends', () => withLibrary(({ songs, playlists }) => {
  assert.strictEqual(songs.at(-1).index, songs.length - 1);
  assert.strictEqual(songs.at(2.9).index, 2);
  assert.strictEqual(songs.at(songs.length), undefined);
  assert.strictEqual(songs.at(-songs.length - 1), undefined);
  assert.strictEqual(playlists.at(0).name, 'Music');
}));

test('ringtones lie where the user has them', () => withLibrary((library) => {
  const folder = path.join(path.dirname(sample.file), 'iTunes Media/Ringtones');
  const { songs } = [...library.playlists].find((playlist) => playlist.kind === 55);
  assert.ok(songs.length > 5);
  for (const { location } of songs) {
    assert.strictEqual(path.dirname(location), folder);
    assert.ok(fs.existsSync(location));
  }
}));

test('covers are whole files of their format, and no file stays open', () => withLibrary((library) => {
  const formats = new Set();
  library.songs.at(0).artwork();
  const descriptors = fs.readdirSync('/dev/fd').length;
  for (const song of library.songs) {
    for (const { format, width, height, data } of song.artwork()) {
      formats.add(format);
      if (format === 'png') {
        assert.strictEqual(data.toString('latin1', 1, 4), 'PNG');
        assert.deepStrictEqual([data.readUInt32BE(16), data.readUInt32BE(20)], [width, height]);
      } else if (format === 'jpeg') {
        assert.deepStrictEqual([data.readUInt16BE(0), data.readUInt16BE(data.length - 2)], [0xffd8, 0xffd9]);
      } else {
        assert.strictEqual(data.length, 4 * width * height);
      }
    }
  }
  assert.ok(formats.has('png') && formats.has('jpeg'));
  assert.strictEqual(fs.readdirSync('/dev/fd').length, descriptors);
}, { home: sample.home }));

test('a picture that is cut short is left out', (t) => {
  const home = path.join(sample.folder(t), 'home');
  fs.cpSync(sample.home, home, { recursive: true });
  const count = () => withLibrary(({ songs }) => [...songs].flatMap((song) => song.artwork()).length, { home });
  const whole = count();
  for (const entry of fs.readdirSync(home, { recursive: true, withFileTypes: true })) {
    if (/\.itc2?$/i.test(entry.name)) {
      const cache = path.join(entry.parentPath ?? entry.path, entry.name);
      fs.truncateSync(cache, fs.statSync(cache).size - 1);
    }
  }
  assert.ok(count() < whole && count() > 0);
});

test('of equal keys the first counts', (t) => {
  const file = path.join(sample.folder(t), 'Two.xml');
  fs.writeFileSync(file, '<?xml version="1.0" encoding="UTF-8"?>\n<plist version="1.0"><dict><key>Tracks</key><dict>'
    + '<key>7</key><dict><key>Track ID</key><integer>7</integer><key>Year</key><integer>1901</integer>'
    + '<key>Year</key><integer>1902</integer></dict></dict></dict></plist>\n');
  withLibrary((library) => {
    assert.deepStrictEqual([...library.songs.at(0).properties], [['Track ID', 7], ['Year', 1901]]);
    assert.strictEqual(library.songs.at(0).name, null);
  }, { file });
});

test('what is no number or date stays a text, and no number loses digits', () => {
  assert.strictEqual(valueOf('12 songs', 'integer'), '12 songs');
  assert.strictEqual(valueOf('+9007199254740993', 'integer'), 9007199254740993n);
  assert.strictEqual(valueOf('yesterday', 'date'), 'yesterday');
  assert.strictEqual(valueOf('2009-13-45T08:13:42Z', 'date'), '2009-13-45T08:13:42Z');
  assert.strictEqual(valueOf('0.5', 'real'), 0.5);
  assert.strictEqual(valueOf('', 'real'), '');
  assert.strictEqual(valueOf(null, 'dict'), null);
});

test('a ringtone that cannot be added is an error', (t) => {
  sample.setVariable(t, 'PATH', '');
  withLibrary((library) => assert.throws(() => library.appendRingtone('/tones/Bell.m4r'), LibraryError));
});
