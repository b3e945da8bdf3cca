// The tree of playlists: a list of those entries whose folders are open.
import {Drawn} from "./drawn.js";
import {playlistName, playlistOf} from "./filters.js";
import {moved} from "./keys.js";
import {grouped, start, word} from "./show.js";

/** @typedef {import("./payload.js").Library} Library */

const ALL = -1; // in the place of a playlist's number
const LONGEST = 120;

export class Tree {
  /** @param {Library} library @param {(name: string) => void} choose gets a playlist's name in addresses */
  constructor(library, choose) {
    this.library = library;
    this.choose = choose;
    /** @type {Set<number>} */
    this.open = new Set();
    /** @type {number[]} */
    this.seen = [];
    this.active = 0;
    /** @type {string|null} as addresses have it; null: nothing is shown yet */
    this.name = null;
    this.chosen = ALL;
    this.box = /** @type {HTMLElement} */ (document.getElementById("tree"));
    this.list = document.createElement("div");
    this.list.className = "drawn";
    this.list.setAttribute("role", "presentation");
    this.box.tabIndex = -1;
    this.box.append(this.list);
    this.drawn = new Drawn(this.list, this.box, {make: () => this.make(), fill: (row, index) => this.fill(row, index)});
    this.drawn.home = this.box;
    this.box.addEventListener("keydown", (event) => this.key(event));
    this.list.addEventListener("click", (event) => this.click(event));
  }

  /** Whether a playlist has others below it. @param {number} number */
  isFolder(number) {
    const {playlists} = this.library;
    return number !== ALL && (playlists[number + 1]?.depth ?? 0) > playlists[number].depth;
  }

  /** The folder around a playlist; ALL at the top. @param {number} number */
  parentOf(number) {
    const {playlists} = this.library;
    let at = number;
    while (at >= 0 && playlists[at].depth >= playlists[number].depth) --at;
    return at;
  }

  /** @param {string} name of the playlist that is shown; empty: all songs */
  show(name) {
    this.name = name;
    this.chosen = name === "" ? ALL : playlistOf(this.library, name);
    for (let at = this.chosen; at >= 0 && this.library.playlists[at].depth > 0;) {
      at = this.parentOf(at);
      this.open.add(at);
    }
    this.list_();
    this.active = Math.max(0, this.seen.indexOf(this.chosen));
    this.redraw();
  }

  list_() {
    const {playlists} = this.library;
    this.seen = [ALL];
    for (let i = 0, closed = Infinity; i < playlists.length; ++i) {
      if (playlists[i].depth > closed) continue;
      closed = this.isFolder(i) && !this.open.has(i) ? playlists[i].depth : Infinity;
      this.seen.push(i);
    }
  }

  redraw() {
    const height = Math.round(parseFloat(getComputedStyle(this.box).getPropertyValue("--row")) || 32);
    this.drawn.show(this.seen.length, height);
  }

  make() {
    const row = document.createElement("div");
    const name = document.createElement("bdi");
    const count = document.createElement("span");
    row.className = "list";
    row.setAttribute("role", "treeitem");
    name.className = "title";
    count.className = "number";
    row.append(name, count);
    return row;
  }

  /** @param {HTMLElement} row @param {number} index */
  fill(row, index) {
    const number = this.seen[index];
    const list = this.library.playlists[number];
    const [name, count] = row.children;
    name.textContent = number === ALL ? word("playlists.all") : start(list.name, LONGEST) || word("untitled");
    count.textContent = grouped(number === ALL ? this.library.count : list.songs.length);
    row.setAttribute("aria-level", String(1 + (list?.depth ?? 0)));
    row.dataset.depth = String(Math.min(list?.depth ?? 0, 6));
    row.dataset.type = list?.type ?? "all";
    row.tabIndex = index === this.active ? 0 : -1;
    row.setAttribute("aria-selected", String(number === this.chosen));
    if (this.isFolder(number)) row.setAttribute("aria-expanded", String(this.open.has(number)));
    else row.removeAttribute("aria-expanded");
  }

  /** @param {number} number @param {boolean} isOpen */
  setOpen(number, isOpen) {
    if (isOpen) this.open.add(number);
    else this.open.delete(number);
    const active = this.seen[this.active];
    this.list_();
    this.active = Math.max(0, this.seen.indexOf(active));
    this.redraw();
    this.focus(this.active);
  }

  /** @param {number} index */
  focus(index) {
    const before = this.drawn.elementOf(this.active);
    if (before) before.tabIndex = -1;
    this.active = index;
    this.drawn.reveal(index);
    const row = this.drawn.elementOf(index);
    if (!row) return;
    row.tabIndex = 0;
    row.focus({preventScroll: true});
  }

  /** @param {number} index */
  pick(index) {
    const number = this.seen[index];
    this.choose(number === ALL ? "" : playlistName(this.library, number));
  }

  /** @param {KeyboardEvent} event */
  key(event) {
    if (event.altKey || event.ctrlKey || event.metaKey) return;
    const number = this.seen[this.active];
    const isOpen = this.open.has(number);
    const parent = number === ALL ? ALL : this.parentOf(number);
    if (event.key === "Enter" || event.key === " ") this.pick(this.active);
    else if (event.key === "ArrowRight" && this.isFolder(number) && !isOpen) this.setOpen(number, true);
    else if (event.key === "ArrowLeft" && isOpen) this.setOpen(number, false);
    else if (event.key === "ArrowLeft" && parent !== ALL) this.focus(this.seen.indexOf(parent));
    else {
      const to = moved(event.key, this.active, this.seen.length);
      if (to === null) return;
      this.focus(to);
    }
    event.preventDefault();
  }

  /** @param {MouseEvent} event */
  click(event) {
    const row = /** @type {HTMLElement} */ (event.target).closest(".list");
    const i = this.drawn.elements.indexOf(/** @type {HTMLElement} */ (row));
    if (i === -1) return;
    const index = this.drawn.first + i;
    const number = this.seen[index];
    this.active = index;
    if (this.isFolder(number) && (!this.open.has(number) || this.chosen === number))
      this.setOpen(number, !this.open.has(number));
    this.pick(this.seen.indexOf(number));
  }
}
