// Everything of one song, and the choice of columns: two dialogs.
import {addressOf} from "./address.js";
import {grouped, shown, start, word} from "./show.js";

/** @typedef {import("./payload.js").Library} Library @typedef {import("./payload.js").Column} Column */

const LONGEST = 5000;

/** Fields whose value leads to the songs that share it. @type {readonly string[]} */
const LINKED = ["artist", "album", "genre", "year"];

/** @param {() => void} [does] */
function closeButton(does) {
  const button = document.createElement("button");
  button.type = "button";
  button.className = "close";
  button.textContent = word("close");
  button.addEventListener("click", () => {
    button.closest("dialog")?.close();
    does?.();
  });
  return button;
}

/** @param {Library} library @param {Column} column @param {number} song @param {string} text */
function addressFor(library, column, song, text) {
  const values = new Map([[column.field, text]]);
  const album = library.albums.songs[song];
  if (column.field === "album" && album > 0) {
    values.set("album", library.albums.titles[album - 1]);
    values.set("by", library.albums.artists[album - 1]);
  }
  return addressOf({view: "songs", values});
}

/** @param {Library} library @param {number} song */
export function openDetails(library, song) {
  const dialog = /** @type {HTMLDialogElement} */ (document.getElementById("details"));
  const heading = document.createElement("h2");
  const list = document.createElement("dl");
  heading.id = "details-name";
  heading.dir = "auto";
  for (const column of library.columns) {
    const text = start(shown(column, song), LONGEST);
    if (column.field === "name") heading.textContent = start(text, 500) || word("untitled");
    if (text === "" || column.field === "name") continue;
    const term = document.createElement("dt");
    const value = document.createElement("dd");
    term.textContent = word(`field.${column.field}`);
    value.dir = "auto";
    if (LINKED.includes(column.field)) {
      const link = document.createElement("a");
      link.href = addressFor(library, column, song, shown(column, song));
      link.textContent = text;
      link.addEventListener("click", () => dialog.close());
      value.append(link);
    } else {
      value.textContent = column.field === "size" && text === "" ? grouped(0) : text;
    }
    list.append(term, value);
  }
  if (heading.textContent === "") heading.textContent = word("untitled");
  dialog.replaceChildren(heading, list, closeButton());
  dialog.showModal();
}

/**
 * @param {Library} library @param {string[]} chosen
 * @param {(fields: string[]) => void} choose
 */
export function openColumns(library, chosen, choose) {
  const dialog = /** @type {HTMLDialogElement} */ (document.getElementById("columns"));
  const heading = document.createElement("h2");
  const boxes = document.createElement("div");
  heading.textContent = word("columns");
  boxes.className = "choices";
  for (const {field} of library.columns) {
    const label = document.createElement("label");
    const box = document.createElement("input");
    box.type = "checkbox";
    box.name = field;
    box.checked = chosen.includes(field);
    box.disabled = field === "name";
    label.append(box, word(`field.${field}`));
    boxes.append(label);
  }
  boxes.addEventListener("change", () => {
    const inputs = /** @type {HTMLInputElement[]} */ ([...boxes.querySelectorAll("input")]);
    choose(inputs.filter((box) => box.checked).map((box) => box.name));
  });
  dialog.replaceChildren(heading, boxes, closeButton());
  dialog.showModal();
}

/** A click beside a dialog closes it. */
export function prepareDialogs() {
  for (const dialog of document.querySelectorAll("dialog")) {
    dialog.addEventListener("click", (event) => {
      if (event.target === dialog) dialog.close();
    });
  }
}
