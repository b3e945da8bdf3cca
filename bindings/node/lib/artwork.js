'use strict';
// Covers, out of iTunes' artwork cache.

/**
 * @typedef {import('./functions.js').Functions} Functions
 * @typedef {'png' | 'jpeg' | 'argb' | 'bgra'} Format
 * @typedef {{format: Format, width: number, height: number, data: Buffer}} Picture
 */

/** @type {Format[]} */
const formats = ['png', 'jpeg', 'argb', 'bgra'];

// A larger picture is a damaged file's claim, and not worth the memory.
const largest = 256 * 1024 * 1024;

/**
 * @param {Functions} functions
 * @param {bigint} handle
 * @param {number} index
 * @returns {Picture | null}
 */
function readPicture(functions, handle, index) {
  const info = { format: 0, width: 0, height: 0, data: /** @type {Buffer | null} */ (null), dataSize: 0 };
  functions.GetArtworkInfo(handle, index, info);
  const size = info.dataSize;
  if (size <= 0 || size > largest) return null;
  const data = Buffer.alloc(size);
  // A file that was cut short leaves the rest of the buffer as it was: the last byte shows it.
  for (const before of [0x55, 0x2a]) {
    data[size - 1] = before;
    const filled = { ...info, data, dataSize: size };
    functions.GetArtworkInfo(handle, index, filled);
    if (data[size - 1] !== before) {
      return { format: formats[filled.format], width: filled.width, height: filled.height, data };
    }
  }
  return null;
}

/**
 * The whole pictures, in the cache file's order. Closes the handle.
 * @param {Functions} functions
 * @param {bigint | null} handle
 */
function readPictures(functions, handle) {
  /** @type {Picture[]} */
  const pictures = [];
  if (handle === null) return pictures;
  try {
    const count = functions.GetArtworkCount(handle);
    for (let index = 0; index < count; ++index) {
      const picture = readPicture(functions, handle, index);
      if (picture) pictures.push(picture);
    }
  } finally {
    functions.CloseArtwork(handle);
  }
  return pictures;
}

module.exports = { readPictures };
