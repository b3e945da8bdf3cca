// cover.js TEXT FILE: lists the user's playlists, finds a song, and writes its cover to a file.
'use strict';
const fs = require('node:fs');
const { Library } = require('tavrel');

/** The first song that holds the text and has a cover, and that cover. */
function findSongWithCover(library, text) {
  for (const song of library.search(text)) {
    const cover = song.artwork().find(({ format }) => format === 'png' || format === 'jpeg');
    if (cover) return { song, cover };
  }
  throw new Error(`no song with a cover holds ${text}`);
}

if (process.argv.length !== 4) {
  console.error('usage: cover.js TEXT FILE');
  process.exit(2);
}
const [text, path] = process.argv.slice(2);

const library = new Library();
try {
  for (const { name, songs } of library.playlists) {
    console.log(`${String(songs.length).padStart(5)}  ${name}`);
  }
  const { song, cover } = findSongWithCover(library, text);
  console.log(`${song.name} by ${song.artist}`);
  fs.writeFileSync(path, cover.data);
  console.log(`${cover.format}, ${cover.width} x ${cover.height}, ${cover.data.length} bytes`);
} catch (error) {
  console.error(error.message);
  process.exitCode = 1;
} finally {
  library.close();
}
