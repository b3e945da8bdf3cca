// Moving in a list by the keyboard.

/**
 * Where a key leads from a place in a list; null when it leads nowhere.
 * @param {string} key @param {number} at @param {number} count
 * @param {number} across how many stand in a row; 1 in a list
 * @param {number} page how many a page holds
 */
export function moved(key, at, count, across = 1, page = 10) {
  /** @type {Record<string, number>} */
  const steps = {
    ArrowDown: at + across,
    ArrowUp: at - across,
    Home: 0,
    End: count - 1,
    PageDown: Math.min(at + page, count - 1),
    PageUp: Math.max(at - page, 0),
  };
  if (across > 1) Object.assign(steps, {ArrowRight: at + 1, ArrowLeft: at - 1});
  if (!Object.hasOwn(steps, key)) return null;
  const to = steps[key];
  return to >= 0 && to < count && to !== at ? to : null;
}
