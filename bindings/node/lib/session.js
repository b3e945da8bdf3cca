'use strict';
// The one open library of the process.

const fs = require('node:fs');
const os = require('node:os');
const path = require('node:path');
const { AlreadyOpenError, ClosedError, LibraryError } = require('./errors.js');
const { LinkedHome } = require('./linked-home.js');
const { open } = require('./shared-library.js');

/** @typedef {import('./functions.js').Functions} Functions */

const libraryInHome = 'Music/iTunes/iTunes Music Library.xml';

/** @type {(() => void) | null} */
let closeOpen = null;

// Who forgets to close a library has it closed when nothing refers to it any more, and at the end of the process.
/** @type {FinalizationRegistry<() => void>} */
const forgotten = new FinalizationRegistry((close) => close());
process.on('exit', () => closeOpen?.());

/** @param {string} file */
function requireFile(file) {
  if (fs.statSync(file).isDirectory()) {
    throw Object.assign(new Error(`EISDIR: this is a folder, '${file}'`), { code: 'EISDIR', path: file });
  }
}

/** @param {string | null} home @param {LinkedHome | null} linked */
function load(home, linked) {
  const { functions, unload } = open(linked ? linked.folder : home);
  const close = () => {
    if (closeOpen !== close) return;
    closeOpen = null;
    unload();
    linked?.remove();
  };
  closeOpen = close;
  return { functions, close };
}

class Session {
  /** @type {Functions} */
  #functions;
  /** @type {() => void} */
  #close;
  #isClosed = false;
  /** @type {LinkedHome | null} */
  #linked = null;

  /**
   * @param {string | undefined} home
   * @param {string | undefined} file at most one of them; with none, the library of the user's own home
   */
  constructor(home, file) {
    if (closeOpen) {
      throw new AlreadyOpenError('a library is open in this process, which can have one at a time: close it');
    }
    if (file !== undefined) {
      requireFile(file);
      this.#linked = new LinkedHome(file);
    }
    try {
      ({ functions: this.#functions, close: this.#close } =
        load(home === undefined ? null : path.resolve(home), this.#linked));
    } catch (error) {
      this.#linked?.remove();
      throw error;
    }
    forgotten.register(this, this.#close, this);
    if (this.#functions.OpenAllSongs() === null) {
      this.close();
      const place = file ?? path.join(home ?? os.homedir(), libraryInHome);
      requireFile(place);
      throw new LibraryError(`${place}: this is no library file that can be read; standard error says why`);
    }
  }

  get isClosed() {
    return this.#isClosed;
  }

  /** The functions of the library, as long as it is open. */
  get functions() {
    if (this.#isClosed) throw new ClosedError('the library is closed');
    return this.#functions;
  }

  /** Unloads the library; every handle is invalid then. A second time does nothing. */
  close() {
    this.#isClosed = true;
    forgotten.unregister(this);
    this.#close();
  }

  /**
   * The path as the user knows it, of one that the library gave.
   * @param {string} file
   */
  userPath(file) {
    return this.#linked ? this.#linked.userPath(file) : file;
  }
}

/**
 * Runs call(callback). What `body` throws must not leave a callback: it ends the call, and is thrown then.
 * @template {unknown[]} T
 * @param {(callback: (...values: T) => number) => void} call
 * @param {(...values: T) => number} body
 */
function callBack(call, body) {
  /** @type {unknown[]} */
  const errors = [];
  call((...values) => {
    try {
      return body(...values);
    } catch (error) {
      errors.push(error);
      return 0;
    }
  });
  if (errors.length > 0) throw errors[0];
}

module.exports = { Session, callBack };
