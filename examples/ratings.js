const { Library } = require('tavrel');

const library = new Library({ file: process.argv[2] });
try {
  for (const song of library.songs) {
    console.log(song.name, song.artist, song.properties.get('Rating') ?? 'not rated');
  }
} finally {
  library.close();
}
