'use strict';
// A home folder made of links, so that the library can read a file that lies anywhere, under any name.

const fs = require('node:fs');
const os = require('node:os');
const path = require('node:path');

const folderOfLibrary = 'Music/iTunes';
const library = `${folderOfLibrary}/iTunes Music Library.xml`;
const neighbours = ['Album Artwork', 'iTunes Media'];
const { O_DIRECTORY, O_NOFOLLOW, O_RDONLY } = fs.constants;

/** @param {() => void} body */
function tryTo(body) {
  try {
    body();
  } catch {
    // What is gone or somebody else's stays so.
  }
}

/**
 * A new folder below that for temporary files, which its owner alone may enter:
 *
 *     Music/iTunes/iTunes Music Library.xml -> the library file
 *                  Album Artwork            -> the file's neighbour of that name, if any
 *                  iTunes Media             -> likewise
 *
 * remove() removes what was made here and nothing else, and follows nothing that others put in its place.
 */
class LinkedHome {
  /** @type {string[]} */
  #folders = [];
  /** @type {Map<string, string>} */
  #links = new Map();

  /** @param {string} file need not be there */
  constructor(file) {
    file = path.isAbsolute(file) ? file : `${process.cwd()}/${file}`;
    this.userFolder = path.dirname(file);
    this.folder = fs.mkdtempSync(path.join(path.resolve(os.tmpdir()), 'tavrel-'));
    this.identity = fs.lstatSync(this.folder);
    try {
      this.#makeFolder('Music');
      this.#makeFolder(folderOfLibrary);
      this.#makeLink(library, file);
      for (const name of neighbours) {
        const neighbour = `${this.userFolder}/${name}`;
        if (fs.existsSync(neighbour)) this.#makeLink(`${folderOfLibrary}/${name}`, neighbour);
      }
    } catch (error) {
      this.remove();
      throw error;
    }
  }

  /**
   * The same file without this folder in its path.
   * @param {string} file
   */
  userPath(file) {
    const inside = `${this.folder}/${folderOfLibrary}/`;
    return file.startsWith(inside) ? path.join(this.userFolder, file.slice(inside.length)) : file;
  }

  remove() {
    let descriptor = -1;
    tryTo(() => { descriptor = fs.openSync(this.folder, O_RDONLY | O_DIRECTORY | O_NOFOLLOW); });
    if (descriptor < 0) return;
    const now = fs.fstatSync(descriptor);
    if (now.dev === this.identity.dev && now.ino === this.identity.ino) {
      // On Linux what is opened stays what it is, whatever becomes of its path.
      this.#empty(process.platform === 'linux' ? `/proc/self/fd/${descriptor}` : this.folder);
      tryTo(() => fs.rmdirSync(this.folder));
    }
    fs.closeSync(descriptor);
  }

  /** @param {string} folder */
  #empty(folder) {
    for (const [name, target] of this.#links) {
      tryTo(() => {
        if (fs.readlinkSync(`${folder}/${name}`) === target) fs.unlinkSync(`${folder}/${name}`);
      });
    }
    for (const name of [...this.#folders].reverse()) tryTo(() => fs.rmdirSync(`${folder}/${name}`));
  }

  /** @param {string} name */
  #makeFolder(name) {
    fs.mkdirSync(`${this.folder}/${name}`, 0o700);
    this.#folders.push(name);
  }

  /**
   * @param {string} name
   * @param {string} target
   */
  #makeLink(name, target) {
    fs.symlinkSync(target, `${this.folder}/${name}`);
    this.#links.set(name, target);
  }
}

module.exports = { LinkedHome };
