'use strict';

const { AlreadyOpenError, ClosedError, LibraryError } = require('./errors.js');
const { Library, Playlist } = require('./library.js');
const { Sequence } = require('./sequence.js');
const { Song } = require('./songs.js');

module.exports = { AlreadyOpenError, ClosedError, Library, LibraryError, Playlist, Sequence, Song };
