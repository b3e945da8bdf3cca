'use strict';
// Every property that the library file has of a song, of a playlist or of itself.

const { callBack } = require('./session.js');

/**
 * @typedef {import('./session.js').Session} Session
 * @typedef {string | number | bigint | boolean | Date | null} PropertyValue
 */

const integer = /^[+-]?[0-9]{1,30}$/;
const real = /^[+-]?[0-9]+(\.[0-9]*)?([eE][+-]?[0-9]+)?$/;
const date = /^\d{4}-\d\d-\d\dT\d\d:\d\d:\d\dZ$/;

/** @param {string} text */
function integerOf(text) {
  const number = Number(text);
  return Number.isSafeInteger(number) ? number : BigInt(text.replace('+', ''));
}

/** @param {string} text */
function dateOf(text) {
  const value = new Date(text);
  return Number.isNaN(value.getTime()) ? text : value;
}

/**
 * Numbers and dates that are none stay texts: a library file may say anything.
 * @param {string | null} text
 * @param {string} type
 * @returns {PropertyValue}
 */
function valueOf(text, type) {
  if (text === null) return null;
  if (type === 'true' || type === 'false') return type === 'true';
  if (type === 'integer' && integer.test(text)) return integerOf(text);
  if (type === 'real' && real.test(text)) return Number(text);
  if (type === 'date' && date.test(text)) return dateOf(text);
  return text;
}

/**
 * {key: value}, in the file's order; of equal keys the first counts.
 * @param {(visitor: (key: string, text: string | null, type: string) => number) => void} visit
 */
function readProperties(visit) {
  /** @type {Map<string, PropertyValue>} */
  const values = new Map();
  callBack(visit, (key, text, type) => {
    if (!values.has(key)) values.set(key, valueOf(text, type));
    return 1;
  });
  return values;
}

module.exports = { readProperties, valueOf };
