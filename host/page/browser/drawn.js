// A long list of which only the rows that are seen stand in the page. Rows are elements that are filled anew
// when others come into sight; they stay in the order of the list.

/**
 * @typedef {object} Rows
 * @property {(row: HTMLElement, index: number) => void} fill
 * @property {() => HTMLElement} make
 */

const BEYOND = 3; // rows above and below what is seen: each one is filled anew when somebody scrolls fast

export class Drawn {
  /**
   * @param {HTMLElement} box which gets the height of the whole list
   * @param {Element|null} scroller that moves the box; null: the window
   * @param {Rows} rows
   */
  constructor(box, scroller, rows) {
    this.box = box;
    this.scroller = scroller;
    this.rows = rows;
    this.home = box; // where the keyboard goes when its row leaves
    this.count = 0;
    this.height = 1;
    this.first = 0;
    /** @type {HTMLElement[]} */
    this.elements = [];
    this.isWaiting = false;
    this.isOn = true;
    const later = () => this.later();
    (scroller ?? window).addEventListener("scroll", later, {passive: true});
    window.addEventListener("resize", later, {passive: true});
  }

  later() {
    if (this.isWaiting || !this.isOn) return;
    this.isWaiting = true;
    requestAnimationFrame(() => {
      this.isWaiting = false;
      this.draw();
    });
  }

  /** @param {number} count @param {number} height of a row, in pixels */
  show(count, height) {
    this.count = count;
    this.height = height;
    this.box.style.height = `${count * height}px`;
    this.draw(true);
  }

  /** The rows that are seen: the first, and the one behind the last. */
  range() {
    const top = this.box.getBoundingClientRect().top - (this.scroller?.getBoundingClientRect().top ?? 0);
    const seen = this.scroller?.clientHeight ?? window.innerHeight;
    const first = Math.max(0, Math.floor(-top / this.height) - BEYOND);
    const end = Math.min(this.count, Math.ceil((seen - top) / this.height) + BEYOND);
    return {first: Math.min(first, this.count), end: Math.max(end, Math.min(first, this.count))};
  }

  /** @param {boolean} isAnew whether rows that are there are filled again */
  draw(isAnew = false) {
    if (!this.isOn || this.box.hidden) return;
    const {first, end} = this.range();
    const size = end - first;
    if (isAnew || Math.abs(first - this.first) >= this.elements.length) {
      this.resize(size);
      this.first = first;
      for (let i = 0; i < size; ++i) this.place(i);
      return;
    }
    this.turn(first);
    const before = this.elements.length;
    this.resize(size);
    for (let i = before; i < size; ++i) this.place(i);
  }

  /** Takes rows from one end to the other until the first one is the one that is asked for. @param {number} first */
  turn(first) {
    while (this.first < first) {
      const row = /** @type {HTMLElement} */ (this.elements.shift());
      this.giveUpFocus(row);
      this.elements.push(row);
      this.box.append(row);
      ++this.first;
      this.place(this.elements.length - 1);
    }
    while (this.first > first) {
      const row = /** @type {HTMLElement} */ (this.elements.pop());
      this.giveUpFocus(row);
      this.elements.unshift(row);
      this.box.prepend(row);
      --this.first;
      this.place(0);
    }
  }

  /** A row that leaves must not take the keyboard with it. @param {HTMLElement} row */
  giveUpFocus(row) {
    if (row.contains(document.activeElement)) this.home.focus({preventScroll: true});
  }

  /** @param {number} size */
  resize(size) {
    while (this.elements.length > size) {
      const row = /** @type {HTMLElement} */ (this.elements.pop());
      this.giveUpFocus(row);
      row.remove();
    }
    while (this.elements.length < size) {
      const row = this.rows.make();
      this.elements.push(row);
      this.box.append(row);
    }
  }

  /** @param {number} i among the elements */
  place(i) {
    const index = this.first + i;
    if (index >= this.count) {
      this.elements[i].hidden = true;
      return;
    }
    this.elements[i].hidden = false;
    this.elements[i].style.transform = `translateY(${index * this.height}px)`;
    this.rows.fill(this.elements[i], index);
  }

  /** The element of a row; null when it is not drawn. @param {number} index */
  elementOf(index) {
    return this.elements[index - this.first] ?? null;
  }

  /**
   * Scrolls until the row is seen, below what covers the top, and draws it.
   * @param {number} index @param {number} covered pixels at the top
   */
  reveal(index, covered = 0) {
    const scrollerTop = this.scroller?.getBoundingClientRect().top ?? 0;
    const seen = this.scroller?.clientHeight ?? window.innerHeight;
    const top = this.box.getBoundingClientRect().top - scrollerTop + index * this.height;
    const by = top < covered ? top - covered : top + this.height > seen ? top + this.height - seen : 0;
    if (by !== 0) (this.scroller ?? window).scrollBy({top: by, behavior: "instant"});
    this.draw();
  }
}
