'use strict';

/**
 * A sequence whose length and items are asked for when they are needed, and not kept.
 * @template T
 */
class Sequence {
  #count;
  #item;

  /**
   * @param {() => number} count
   * @param {(index: number) => T} item
   */
  constructor(count, item) {
    this.#count = count;
    this.#item = item;
  }

  get length() {
    return this.#count();
  }

  /**
   * @param {number} index below 0 it counts from the end
   * @returns {T | undefined}
   */
  at(index) {
    const count = this.length;
    const position = Math.trunc(index) < 0 ? Math.trunc(index) + count : Math.trunc(index);
    return position >= 0 && position < count ? this.#item(position) : undefined;
  }

  /** @returns {Generator<T, void, undefined>} */
  *[Symbol.iterator]() {
    const count = this.length;
    for (let index = 0; index < count; ++index) yield this.#item(index);
  }
}

module.exports = { Sequence };
