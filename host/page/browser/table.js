// The table of songs.
import {Drawn} from "./drawn.js";
import {moved} from "./keys.js";
import {shown, start, word} from "./show.js";

/** @typedef {import("./payload.js").Library} Library @typedef {import("./payload.js").Column} Column */

const USUAL = ["name", "artist", "album", "genre", "year", "seconds", "rating", "plays", "added"];

/** So many pixels the table has to be wide for a column that is shown unasked. @type {Record<string, number>} */
const ROOM = {year: 640, rating: 720, plays: 800, added: 960, genre: 1060};
const LONGEST = 300;

/** How much of the width a column takes. @type {Record<string, string>} */
const WIDTHS = {
  name: "minmax(7rem, 3fr)",
  artist: "minmax(5rem, 2fr)",
  album: "minmax(5rem, 2fr)",
  genre: "minmax(4rem, 1fr)",
  albumArtist: "minmax(5rem, 2fr)",
  composer: "minmax(5rem, 2fr)",
  comments: "minmax(5rem, 2fr)",
  path: "minmax(7rem, 3fr)",
  year: "3.1rem",
  seconds: "3.75rem",
  rating: "4.75rem",
  plays: "3.6rem",
  added: "5.75rem",
  disc: "2.25rem",
  track: "2.75rem",
  lastPlayed: "5.75rem",
  released: "5.75rem",
};

/** Whether a column's values stand at its end. @param {Column} column */
function isNumber(column) {
  return !["text", "rating", "flag", "day"].includes(column.kind);
}

export class Table {
  /**
   * @param {Library} library
   * @param {{open: (song: number) => void, sort: (field: string) => void}} does
   */
  constructor(library, does) {
    this.library = library;
    this.does = does;
    /** @type {string[]|null} as somebody has chosen them; null: what the width has room for */
    this.chosen = null;
    /** @type {Column[]} */
    this.shownColumns = [];
    /** @type {Int32Array} */
    this.songs = new Int32Array();
    this.active = 0;
    this.sorted = "";
    this.grid = /** @type {HTMLElement} */ (document.getElementById("grid"));
    this.head = /** @type {HTMLElement} */ (document.getElementById("grid-head"));
    this.body = /** @type {HTMLElement} */ (document.getElementById("rows"));
    this.body.tabIndex = -1;
    this.drawn = new Drawn(this.body, null, {make: () => this.make(), fill: (row, index) => this.fill(row, index)});
    this.grid.addEventListener("keydown", (event) => this.key(event));
    this.body.addEventListener("click", (event) => this.click(event));
    this.head.addEventListener("click", (event) => this.clickHead(event));
    window.addEventListener("resize", () => this.measure(), {passive: true});
  }

  /** The fields that are shown. */
  fields() {
    const width = this.grid.clientWidth;
    return this.chosen ?? USUAL.filter((field) => (ROOM[field] ?? 0) <= width);
  }

  columns() {
    return this.shownColumns;
  }

  /** Whether other columns are shown than before. */
  chooseColumns() {
    const fields = this.fields();
    const columns = this.library.columns.filter((column) => fields.includes(column.field));
    const isNew =
      columns.length !== this.shownColumns.length || columns.some((column, i) => column !== this.shownColumns[i]);
    this.shownColumns = columns;
    return isNew;
  }

  drawHead() {
    const columns = this.columns();
    this.grid.setAttribute("aria-colcount", String(columns.length));
    this.grid.style.setProperty(
      "--columns",
      columns
        .map((column) => WIDTHS[column.field] ?? "minmax(4.5rem, auto)")
        .map((width) => width.replace("auto", "1fr"))
        .join(" "),
    );
    this.head.replaceChildren(...columns.map((column, i) => this.headCell(column, i)));
  }

  /** @param {Column} column @param {number} i */
  headCell(column, i) {
    const cell = document.createElement("div");
    const button = document.createElement("button");
    cell.setAttribute("role", "columnheader");
    cell.setAttribute("aria-colindex", String(i + 1));
    cell.className = `cell ${column.field}${isNumber(column) ? " number" : ""}`;
    const isUp = this.sorted === column.field;
    const isDown = this.sorted === `-${column.field}`;
    if (isUp || isDown) cell.setAttribute("aria-sort", isUp ? "ascending" : "descending");
    button.type = "button";
    button.dataset.field = column.field;
    button.textContent = word(`field.${column.field}`);
    cell.append(button);
    return cell;
  }

  make() {
    const row = document.createElement("div");
    row.className = "row";
    row.setAttribute("role", "row");
    row.tabIndex = -1;
    this.columns().forEach((column, i) => {
      const cell = document.createElement("div");
      cell.setAttribute("role", "gridcell");
      cell.setAttribute("aria-colindex", String(i + 1));
      cell.className = `cell ${column.field}${isNumber(column) ? " number" : ""}`;
      if (column.kind === "text") cell.dir = "auto";
      cell.append("");
      row.append(cell);
    });
    return row;
  }

  /** @param {HTMLElement} row @param {number} index */
  fill(row, index) {
    const song = this.songs[index];
    const columns = this.columns();
    columns.forEach((column, i) => {
      const text = start(shown(column, song), LONGEST);
      const node = /** @type {Text} */ (row.children[i].firstChild);
      if (node.data !== text) node.data = text;
    });
    row.setAttribute("aria-rowindex", String(index + 2));
    row.tabIndex = index === this.active ? 0 : -1;
  }

  /** The height of a row is the style's. */
  rowHeight() {
    return Math.round(parseFloat(getComputedStyle(this.grid).getPropertyValue("--row")) || 36);
  }

  /** After the window has another size. */
  measure() {
    if (!this.drawn.isOn) return;
    if (this.chooseColumns()) this.redraw();
    else if (this.rowHeight() !== this.drawn.height) this.drawn.show(this.songs.length, this.rowHeight());
  }

  /** With other columns. */
  redraw() {
    this.drawHead();
    this.drawn.resize(0);
    this.drawn.show(this.songs.length, this.rowHeight());
  }

  /** @param {Int32Array} songs @param {string} sorted a field, with "-" before it the other way round; empty: none */
  show(songs, sorted) {
    const isSortedAnew = this.sorted !== sorted;
    this.songs = songs;
    this.active = 0;
    this.sorted = sorted;
    this.grid.setAttribute("aria-rowcount", String(songs.length + 1));
    if (this.chooseColumns()) this.redraw();
    else if (isSortedAnew) this.drawHead();
    this.drawn.show(songs.length, this.rowHeight());
  }

  /** @param {string[]} fields */
  choose(fields) {
    this.chosen = fields;
    if (this.chooseColumns()) this.redraw();
  }

  /** @param {number} index */
  activate(index) {
    const before = this.drawn.elementOf(this.active);
    if (before) before.tabIndex = -1;
    this.active = index;
    this.drawn.reveal(index, this.head.getBoundingClientRect().bottom);
    const row = this.drawn.elementOf(index);
    if (!row) return;
    row.tabIndex = 0;
    row.focus({preventScroll: true});
  }

  /** @param {KeyboardEvent} event */
  key(event) {
    if (event.altKey || event.ctrlKey || event.metaKey || this.head.contains(/** @type {Node} */ (event.target)))
      return;
    if (event.key === "Enter" || event.key === " ") {
      if (this.songs.length === 0) return;
      event.preventDefault();
      this.does.open(this.songs[this.active]);
      return;
    }
    const page = Math.max(1, Math.floor(window.innerHeight / this.drawn.height) - 3);
    const to = moved(event.key, this.active, this.songs.length, 1, page);
    if (to === null) return;
    event.preventDefault();
    this.activate(to);
  }

  /** @param {MouseEvent} event */
  click(event) {
    const row = /** @type {HTMLElement} */ (event.target).closest(".row");
    const i = this.drawn.elements.indexOf(/** @type {HTMLElement} */ (row));
    if (i === -1) return;
    this.activate(this.drawn.first + i);
    this.does.open(this.songs[this.active]);
  }

  /** @param {MouseEvent} event */
  clickHead(event) {
    const field = /** @type {HTMLElement} */ (event.target).closest("button")?.dataset.field;
    if (field) this.does.sort(field);
  }

  focus() {
    if (this.songs.length > 0) this.activate(this.active);
  }
}
