// The page: what stands in the address is shown.
import {FILTERS, VIEWS, addressOf, placeOf, placeWith} from "./address.js";
import {Covers} from "./covers.js";
import {openColumns, openDetails, prepareDialogs} from "./details.js";
import {albumOf, playlistOf, songsOf} from "./filters.js";
import {fold, foldedWords} from "./fold.js";
import {Order} from "./order.js";
import {bytesOfBlock, unpack} from "./payload.js";
import {Search} from "./search.js";
import {counted, shown, start, stars, useWords, word} from "./show.js";
import {Table} from "./table.js";
import {Tree} from "./tree.js";
import {Wall} from "./wall.js";

/** @typedef {import("./payload.js").Library} Library */

const MOST_PRINTED = 500;
const LONGEST = 60;

/** @param {string} id */
function element(id) {
  return /** @type {HTMLElement} */ (document.getElementById(id));
}

/** Reads the songs that the page carries. @returns {Promise<Library>} */
async function readLibrary() {
  const block = element("songs-data");
  const bytes = bytesOfBlock(block.textContent ?? "", block.dataset.form);
  block.remove();
  return unpack(await bytes);
}

class Page {
  /** @param {Library} library */
  constructor(library) {
    this.library = library;
    this.place = placeOf("");
    this.search = new Search(library);
    this.order = new Order(library, document.documentElement.lang);
    this.shelved = this.order.shelved();
    this.albums = this.sortedAlbums();
    this.table = new Table(library, {
      open: (song) => openDetails(library, song),
      sort: (field) => this.sort(field),
    });
    this.wall = new Wall(library, new Covers(library));
    this.tree = new Tree(library, (name) => this.choosePlaylist(name));
    this.input = /** @type {HTMLInputElement} */ (element("search"));
    this.listen();
  }

  listen() {
    this.input.addEventListener("input", () => this.typed());
    window.addEventListener("hashchange", () => this.show());
    document.addEventListener("keydown", (event) => this.key(event));
    element("clear").addEventListener("click", () => this.clear());
    element("columns-button").addEventListener("click", () =>
      openColumns(this.library, this.table.fields(), (fields) => this.table.choose(fields)),
    );
    const button = element("lists-button");
    button.addEventListener("click", () => {
      button.setAttribute("aria-expanded", String(element("view-songs").classList.toggle("with-lists")));
      this.tree.redraw();
    });
    window.addEventListener("beforeprint", () => this.print());
    window.addEventListener("afterprint", () => element("printed").replaceChildren());
  }

  /** The albums by title and artist, from 1. */
  sortedAlbums() {
    const {titles, artists} = this.library.albums;
    const names = titles.map(fold);
    const by = artists.map(fold);
    const {compare} = this.order.collator;
    return Int32Array.from(titles, (_, i) => i)
      .sort((a, b) => compare(by[a], by[b]) || compare(names[a], names[b]) || a - b)
      .map((i) => i + 1);
  }

  /** Goes to another place. @param {import("./address.js").Place} place @param {boolean} isStep back leads out of it */
  go(place, isStep) {
    const address = addressOf(place);
    if (isStep) history.pushState(null, "", address);
    else history.replaceState(null, "", address);
    this.show();
  }

  typed() {
    const view = this.place.view === "overview" ? "songs" : this.place.view;
    const isStep = view !== this.place.view;
    this.go({...placeWith(this.place, "q", this.input.value), view}, isStep);
  }

  /** @param {string} field */
  sort(field) {
    const now = this.place.values.get("sort");
    const next = now === field ? `-${field}` : now === `-${field}` ? "" : field;
    this.go(placeWith(this.place, "sort", next), false);
    const button = document.querySelector(`#grid-head button[data-field="${field}"]`);
    if (button instanceof HTMLElement) button.focus();
  }

  clear() {
    this.go({view: this.place.view, values: new Map()}, true);
    this.input.focus();
  }

  /** @param {string} name */
  choosePlaylist(name) {
    this.go({view: "songs", values: new Map(name === "" ? [] : [["playlist", name]])}, true);
  }

  /** @param {KeyboardEvent} event */
  key(event) {
    const isTyping = event.target instanceof HTMLInputElement || document.querySelector("dialog[open]");
    if (event.key === "/" && !isTyping && !event.ctrlKey && !event.metaKey) {
      event.preventDefault();
      this.input.focus();
      this.input.select();
    } else if (event.target === this.input && event.key === "ArrowDown" && this.place.view === "songs") {
      event.preventDefault();
      this.table.focus();
    } else if (event.target === this.input && event.key === "Escape" && this.input.value !== "") {
      this.input.value = "";
      this.typed();
    }
  }

  show() {
    if (location.hash === "#main") return;
    const before = this.place;
    this.place = placeOf(location.hash);
    const {view, values} = this.place;
    document.documentElement.dataset.view = view;
    for (const name of VIEWS) {
      element(`view-${name}`).hidden = name !== view;
      const link = element(`to-${name}`);
      if (name === view) link.setAttribute("aria-current", "page");
      else link.removeAttribute("aria-current");
    }
    this.table.drawn.isOn = view === "songs";
    this.wall.drawn.isOn = view === "albums";
    const typed = values.get("q") ?? "";
    if (this.input.value !== typed) this.input.value = typed;
    if (view === "songs") this.showSongs();
    if (view === "albums") this.showAlbums(typed);
    if (before.view !== view || before.values.get("playlist") !== values.get("playlist")) window.scrollTo(0, 0);
  }

  /** The songs of the place, in its order. */
  songs() {
    const {values} = this.place;
    const songs = songsOf(this.library, values, this.shelved, this.search.find(values.get("q") ?? ""));
    const sort = values.get("sort") ?? "";
    const field = sort.replace(/^-/, "");
    return field === "" ? songs : this.order.sorted(songs, [field], sort.startsWith("-"));
  }

  showSongs() {
    const {values} = this.place;
    const songs = this.songs();
    this.table.show(songs, values.get("sort") ?? "");
    if (this.tree.name !== (values.get("playlist") ?? "")) this.tree.show(values.get("playlist") ?? "");
    const told = this.filtersTold();
    element("songs-count").textContent = [
      songs.length === 0 ? word("count.none") : counted("count.songs", songs.length),
      ...told,
    ].join(" ");
    element("clear").hidden = told.length === 0;
  }

  /** @param {string} typed */
  showAlbums(typed) {
    const words = foldedWords(typed);
    const {titles, artists} = this.library.albums;
    const albums =
      words.length === 0
        ? this.albums
        : this.albums.filter((album) => {
            const text = fold(`${titles[album - 1]}\n${artists[album - 1]}`);
            return words.every((one) => text.includes(one));
          });
    this.wall.show(albums);
    element("albums-count").textContent =
      albums.length === 0 ? word("count.none") : counted("count.albums", albums.length);
  }

  /** What narrows the songs, in words. */
  filtersTold() {
    const {values} = this.place;
    const told = [];
    for (const name of FILTERS) {
      const value = values.get(name);
      if (value !== undefined) told.push(word(`filter.${name}`, {name: this.filterName(name, value)}));
    }
    const typed = values.get("q");
    if (typed) told.push(word("filter.search", {name: start(typed, LONGEST)}));
    return told;
  }

  /** @param {string} name @param {string} value */
  filterName(name, value) {
    if (name === "without") return word(`field.${value}`);
    if (name === "rating") return value === "0" ? word("rating.none") : stars(Number(value) * 20);
    if (name === "plays") return value === "0" ? word("plays.never") : value.replace(/-$/, "+").replace("-", "–");
    if (name === "album" && albumOf(this.library, this.place.values) === 0) return start(value, LONGEST);
    const list = name === "playlist" ? this.library.playlists[playlistOf(this.library, value)]?.name : undefined;
    return start(list ?? value, LONGEST);
  }

  /** Paper has no scrolling: the first songs as they are. */
  print() {
    if (this.place.view !== "songs") return;
    const songs = this.songs();
    const list = document.createElement("ol");
    for (const song of songs.subarray(0, MOST_PRINTED)) {
      const item = document.createElement("li");
      for (const column of this.table.columns()) {
        const cell = document.createElement("bdi");
        cell.textContent = start(shown(column, song), LONGEST);
        item.append(cell);
      }
      list.append(item);
    }
    element("printed").replaceChildren(list);
    if (songs.length <= MOST_PRINTED) return;
    const rest = document.createElement("p");
    rest.textContent = word("print.more", {n: songs.length - MOST_PRINTED});
    element("printed").append(rest);
  }
}

/** Opens the page once the browser has drawn what stands in it. */
export async function openPage() {
  useWords(JSON.parse(element("words").textContent ?? "{}"));
  const nav = /** @type {HTMLElement} */ (document.querySelector("nav"));
  nav.hidden = false;
  try {
    const page = new Page(await readLibrary());
    prepareDialogs();
    page.show();
    document.documentElement.dataset.ready = "yes";
    const later = window.requestIdleCallback ?? ((does) => setTimeout(does, 200));
    later(() => page.search.prepare());
  } catch (error) {
    nav.hidden = true;
    const note = document.createElement("p");
    note.className = "note";
    note.setAttribute("role", "alert");
    const canInflate = "DecompressionStream" in window;
    note.textContent = canInflate ? word("failed.read") : word("failed.inflate");
    element("view-overview").append(note);
    throw error;
  }
}
