// The songs as the page carries them, made ready: columns of numbers, and texts that stand once.

/**
 * @typedef {{field: string, kind: string, texts: string[], numbers: Float64Array|Int32Array}} Column
 *   A text's number is its place among `texts`. Other numbers stand one higher than they are; 0 is none.
 * @typedef {{name: string, id: string, type: string, depth: number, songs: Int32Array}} Playlist
 * @typedef {{titles: string[], artists: string[], songs: Int32Array, covers: Int32Array}} Albums
 *   `songs` holds for each song the number of its album from 1, `covers` for each album the number of its
 *   cover from 1; 0 is none.
 * @typedef {{side: number, columns: number, perPicture: number}} CoverPlaces
 * @typedef {{count: number, columns: Column[], byField: Map<string, Column>, albums: Albums,
 *   coverPlaces: CoverPlaces, playlists: Playlist[]}} Library
 */

/**
 * @param {string} text
 * @returns {Uint8Array}
 */
export function bytesOfBase64(text) {
  if ("fromBase64" in Uint8Array) return /** @type {any} */ (Uint8Array).fromBase64(text);
  const letters = atob(text);
  const bytes = new Uint8Array(letters.length);
  for (let i = 0; i < letters.length; ++i) bytes[i] = letters.charCodeAt(i);
  return bytes;
}

/**
 * @param {Uint8Array} bytes of a gzip file
 * @returns {Promise<Uint8Array>}
 */
async function inflate(bytes) {
  const stream = new Blob([/** @type {BlobPart} */ (bytes)]).stream().pipeThrough(new DecompressionStream("gzip"));
  return new Uint8Array(await new Response(stream).arrayBuffer());
}

/**
 * @param {string} text Base64; of gzip files, which hold a part each, with blanks between them
 * @param {string | undefined} form "gzip" or another
 * @returns {Promise<Uint8Array>}
 */
export async function bytesOfBlock(text, form) {
  if (form !== "gzip") return bytesOfBase64(text);
  const parts = await Promise.all(text.split(" ").map((part) => inflate(bytesOfBase64(part))));
  return new Uint8Array(await new Blob(/** @type {BlobPart[]} */ (parts)).arrayBuffer());
}

/** Reads packed numbers one column after the other. */
class Numbers {
  /** @param {Uint8Array} bytes @param {number} from */
  constructor(bytes, from) {
    this.bytes = bytes;
    this.at = from;
  }

  /**
   * @param {{bytes: number, differences: boolean}} packed
   * @param {number} count of numbers
   */
  take(packed, count) {
    const numbers = new Float64Array(count);
    const end = this.at + packed.bytes;
    const bytes = this.bytes;
    let at = this.at;
    let before = 0;
    let widest = 0;
    for (let i = 0; i < count; ++i) {
      let value = 0;
      let scale = 1;
      let byte = bytes[at++];
      while (byte >= 128) {
        value += (byte - 128) * scale;
        scale *= 128;
        byte = bytes[at++];
      }
      value += byte * scale;
      const number = value % 2 === 0 ? value / 2 : -(value + 1) / 2;
      before = packed.differences ? before + number : number;
      numbers[i] = before;
      if (before > widest) widest = before;
    }
    if (at !== end) throw new Error("a column has another length than it says");
    this.at = end;
    return widest < 2 ** 31 ? new Int32Array(numbers) : numbers;
  }
}

/**
 * @param {Uint8Array} bytes
 * @returns {Library}
 */
export function unpack(bytes) {
  const length = new DataView(bytes.buffer, bytes.byteOffset).getUint32(0, true);
  const head = JSON.parse(new TextDecoder().decode(bytes.subarray(4, 4 + length)));
  const packed = new Numbers(bytes, 4 + length);
  /** @type {Column[]} */
  const columns = [];
  for (const column of head.columns) {
    columns.push({
      field: column.field,
      kind: column.kind,
      texts: column.texts ?? [],
      numbers: packed.take(column, head.songs),
    });
  }
  /** @param {{bytes: number, differences: boolean}} column @param {number} count */
  const whole = (column, count) => new Int32Array(packed.take(column, count));
  const songs = whole(head.albums, head.songs);
  const covers = whole(head.covers, head.covers.bytes === 0 ? 0 : head.albums.count);
  const albums = {titles: head.albums.titles, artists: head.albums.artists, songs, covers};
  /** @type {Playlist[]} */
  const playlists = [];
  for (const list of head.playlists) {
    playlists.push({name: list.name, id: list.id, type: list.type, depth: list.depth, songs: whole(list, list.songs)});
  }
  return {
    count: head.songs,
    columns,
    byField: new Map(columns.map((column) => [column.field, column])),
    albums,
    coverPlaces: head.covers,
    playlists,
  };
}
