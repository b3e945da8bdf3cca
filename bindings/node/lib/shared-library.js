'use strict';
// The shared library: where it is, and loading it with the home folder that it is to read below.

const fs = require('node:fs');
const path = require('node:path');
const koffi = require('koffi');
const { AlreadyOpenError, LibraryError } = require('./errors.js');
const { functions } = require('./functions.js');

/** @typedef {import('./functions.js').Functions} Functions */

const isMac = process.platform === 'darwin';
const major = require('../package.json').version.split('.')[0];
const fileName = isMac ? `libTavrel.${major}.dylib` : `libTavrel.so.${major}`;

const RTLD_NOW = 2;
const RTLD_NOLOAD = isMac ? 16 : 4;

// process.env is a copy in a worker thread; the library asks C.
const c = koffi.load(null);
const dlopen = c.func('dlopen', 'void *', ['str', 'int']);
const dlclose = c.func('dlclose', 'int', ['void *']);
const getenv = c.func('getenv', 'void *', ['str']);
const setenv = c.func('setenv', 'int', ['str', 'void *', 'int']);
const unsetenv = c.func('unsetenv', 'int', ['str']);
const strdup = c.func('strdup', 'void *', ['void *']);

/**
 * What to load: the file that $TAVREL_LIBRARY_PATH names, or that lies in the folder that it names; else the file
 * beside this module; else the loader looks for the name in its usual places.
 */
function find() {
  const chosen = process.env.TAVREL_LIBRARY_PATH;
  if (chosen) {
    const isFolder = fs.statSync(chosen, { throwIfNoEntry: false })?.isDirectory();
    return isFolder ? path.join(chosen, fileName) : chosen;
  }
  const beside = path.join(__dirname, fileName);
  return fs.existsSync(beside) ? beside : fileName;
}

/**
 * Runs `body` with another $HOME, for the whole process.
 * @template T
 * @param {string | null} home null leaves it as it is
 * @param {() => T} body
 */
function withHome(home, body) {
  if (home === null) return body();
  const value = getenv('HOME');
  const former = value === null ? null : strdup(value);
  setenv('HOME', Buffer.from(`${home}\0`), 1);
  try {
    return body();
  } finally {
    if (former === null) {
      unsetenv('HOME');
    } else {
      setenv('HOME', former, 1);
      koffi.free(former);
    }
  }
}

/**
 * Loading a library that is there already reads nothing: it would answer for somebody else's home.
 * @param {string} file
 */
function refuseIfLoaded(file) {
  const loaded = dlopen(file, RTLD_NOW | RTLD_NOLOAD);
  if (loaded === null) return;
  dlclose(loaded);
  throw new AlreadyOpenError(`${file} is loaded in this process already, by something other than this module`);
}

/**
 * @param {string} file
 * @param {string | null} home
 */
function load(file, home) {
  try {
    return withHome(home, () => koffi.load(file));
  } catch (error) {
    const reason = /** @type {Error} */ (error).message;
    throw new LibraryError(`cannot load ${file}: ${reason}; TAVREL_LIBRARY_PATH can say where it is`);
  }
}

/**
 * Loads the library.
 * @param {string | null} home an absolute path; null for the user's own
 * @returns {{functions: Functions, unload: () => void}} no function may be called after unload()
 */
function open(home) {
  const file = find();
  refuseIfLoaded(file);
  const library = load(file, home);
  const bound = /** @type {Functions} */ ({});
  for (const [name, [result, types]] of Object.entries(functions)) {
    try {
      bound[/** @type {keyof Functions} */ (name)] = library.func(name, result, types);
    } catch {
      library.unload();
      throw new LibraryError(`${file} has no function ${name}: it is of another version`);
    }
  }
  return { functions: bound, unload: () => library.unload() };
}

module.exports = { fileName, open };
