// The wall of all albums.
import {addressOf} from "./address.js";
import {Drawn} from "./drawn.js";
import {moved} from "./keys.js";
import {start, word} from "./show.js";

/** @typedef {import("./payload.js").Library} Library @typedef {import("./covers.js").Covers} Covers */

const LONGEST = 120;

export class Wall {
  /** @param {Library} library @param {Covers} covers */
  constructor(library, covers) {
    this.library = library;
    this.covers = covers;
    /** @type {Int32Array} */
    this.albums = new Int32Array();
    this.across = 1;
    this.active = 0;
    this.box = /** @type {HTMLElement} */ (document.getElementById("wall"));
    this.box.tabIndex = -1;
    this.drawn = new Drawn(this.box, null, {
      make: () => this.makeRow(),
      fill: (row, index) => this.fillRow(row, index),
    });
    this.box.addEventListener("keydown", (event) => this.key(event));
    window.addEventListener("resize", () => this.measure(), {passive: true});
  }

  /** @param {Int32Array} albums from 1 */
  show(albums) {
    this.albums = albums;
    this.active = 0;
    this.layOut();
  }

  measure() {
    if (!this.box.closest("[hidden]")) this.layOut();
  }

  layOut() {
    const style = getComputedStyle(this.box);
    const tile = parseFloat(style.getPropertyValue("--tile")) || 128;
    const gap = parseFloat(style.getPropertyValue("--gap")) || 20;
    const below = parseFloat(style.getPropertyValue("--below")) || 60;
    const width = this.box.clientWidth;
    this.across = Math.max(2, Math.floor((width + gap) / (tile + gap)));
    const side = (width - gap * (this.across - 1)) / this.across;
    this.box.style.setProperty("--across", String(this.across));
    this.drawn.resize(0);
    this.drawn.show(Math.ceil(this.albums.length / this.across), Math.round(side + below));
  }

  makeRow() {
    const row = document.createElement("div");
    row.className = "shelf";
    row.setAttribute("role", "presentation");
    for (let i = 0; i < this.across; ++i) {
      const item = document.createElement("div");
      const link = document.createElement("a");
      const cover = document.createElement("span");
      const title = document.createElement("bdi");
      const artist = document.createElement("bdi");
      item.setAttribute("role", "listitem");
      link.className = "album";
      title.className = "title";
      artist.className = "artist";
      cover.setAttribute("aria-hidden", "true");
      link.append(cover, title, artist);
      item.append(link);
      row.append(item);
    }
    return row;
  }

  /** @param {HTMLElement} row @param {number} index */
  fillRow(row, index) {
    for (let i = 0; i < this.across; ++i)
      this.fill(/** @type {HTMLElement} */ (row.children[i]), index * this.across + i);
  }

  /** @param {HTMLElement} item @param {number} place */
  fill(item, place) {
    const link = /** @type {HTMLAnchorElement} */ (item.firstElementChild);
    item.hidden = place >= this.albums.length;
    if (item.hidden) return;
    item.setAttribute("aria-setsize", String(this.albums.length));
    item.setAttribute("aria-posinset", String(place + 1));
    const album = this.albums[place];
    const {titles, artists} = this.library.albums;
    const [cover, title, artist] = /** @type {HTMLElement[]} */ ([...link.children]);
    link.href = addressOf({
      view: "songs",
      values: new Map([
        ["album", titles[album - 1]],
        ["by", artists[album - 1]],
      ]),
    });
    link.tabIndex = place === this.active ? 0 : -1;
    this.covers.show(cover, album);
    title.textContent = start(titles[album - 1], LONGEST) || word("untitled");
    artist.textContent = start(artists[album - 1], LONGEST);
  }

  /** @param {number} place */
  linkOf(place) {
    const row = this.drawn.elementOf(Math.floor(place / this.across));
    return row ? /** @type {HTMLElement} */ (row.children[place % this.across].firstElementChild) : null;
  }

  /** @param {KeyboardEvent} event */
  key(event) {
    if (event.altKey || event.ctrlKey || event.metaKey) return;
    const to = moved(event.key, this.active, this.albums.length, this.across, this.across * 3);
    if (to === null) return;
    event.preventDefault();
    const before = this.linkOf(this.active);
    if (before) before.tabIndex = -1;
    this.active = to;
    this.drawn.reveal(Math.floor(to / this.across), 72);
    const link = this.linkOf(to);
    if (!link) return;
    link.tabIndex = 0;
    link.focus({preventScroll: true});
  }
}
