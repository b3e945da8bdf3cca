'use strict';
// What goes wrong beside the errors of Node's own that fit: ENOENT, TypeError, ...

/** The library cannot be found, opened or read, or did not do what it was asked for. */
class LibraryError extends Error {
  /** @param {string} [message] */
  constructor(message) {
    super(message);
    this.name = new.target.name;
  }
}

/** A library is open already in this process, which can have one at a time. */
class AlreadyOpenError extends LibraryError {}

/** The library is closed; what was read before stays, what was not cannot be read any more. */
class ClosedError extends LibraryError {}

module.exports = { AlreadyOpenError, ClosedError, LibraryError };
