// Covers, many to a picture. A picture becomes one of the browser's when the first of its covers is drawn.
import {bytesOfBase64} from "./payload.js";
import {hue, initial} from "./show.js";

/** @typedef {import("./payload.js").Library} Library */

const BEYOND = 1.02;

export class Covers {
  /** @param {Library} library */
  constructor(library) {
    this.library = library;
    /** @type {Map<number, string>} */
    this.addresses = new Map();
  }

  /** @param {number} picture */
  addressOf(picture) {
    const known = this.addresses.get(picture);
    if (known) return known;
    const text = document.getElementById(`covers-${picture}`)?.textContent ?? "";
    const address = URL.createObjectURL(
      new Blob([/** @type {BlobPart} */ (bytesOfBase64(text))], {type: "image/jpeg"}),
    );
    this.addresses.set(picture, address);
    return address;
  }

  /**
   * Shows an album's cover, or its initial on a colour.
   * @param {HTMLElement} element @param {number} album from 1
   */
  show(element, album) {
    const {albums, coverPlaces} = this.library;
    const cover = albums.covers[album - 1] ?? 0;
    const title = albums.titles[album - 1];
    element.className = cover === 0 ? `cover hue${hue(title)}` : "cover";
    element.textContent = cover === 0 ? initial(title) : "";
    if (cover === 0) {
      element.style.backgroundImage = "";
      return;
    }
    const picture = Math.floor((cover - 1) / coverPlaces.perPicture);
    const place = (cover - 1) % coverPlaces.perPicture;
    const {columns} = coverPlaces;
    const rows = Math.ceil(coverPlaces.perPicture / columns);
    // A cover is a little larger than its frame, so that nothing of its neighbours shows at the edges.
    const at = (/** @type {number} */ i, /** @type {number} */ n) =>
      `${(100 * ((i + 0.5) * BEYOND - 0.5)) / (n * BEYOND - 1)}%`;
    element.style.backgroundImage = `url("${this.addressOf(picture)}")`;
    element.style.backgroundSize = `${columns * BEYOND * 100}% ${rows * BEYOND * 100}%`;
    element.style.backgroundPosition = `${at(place % columns, columns)} ${at(Math.floor(place / columns), rows)}`;
  }
}
