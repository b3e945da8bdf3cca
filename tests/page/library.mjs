// A library for the tests, as the page has it.

/** @param {string} field @param {string} kind @param {(string|number|null)[]} values */
function column(field, kind, values) {
  if (kind !== "text")
    return {
      field,
      kind,
      texts: [],
      numbers: Int32Array.from(values, (value) => (value === null ? 0 : Number(value) + 1)),
    };
  const texts = ["", ...new Set(values.filter((value) => value))].map(String);
  return {field, kind, texts, numbers: Int32Array.from(values, (value) => texts.indexOf(String(value ?? "")))};
}

/** @param {Record<string, string|number|null>[]} songs @param {object} more */
export function libraryOf(songs, more = {}) {
  const kinds = {
    name: "text",
    artist: "text",
    albumArtist: "text",
    album: "text",
    genre: "text",
    status: "text",
    year: "number",
    disc: "number",
    track: "number",
    plays: "number",
    rating: "rating",
    added: "day",
    seconds: "seconds",
  };
  const columns = Object.entries(kinds)
    .filter(([field]) => songs.some((song) => field in song))
    .map(([field, kind]) =>
      column(
        field,
        kind,
        songs.map((song) => song[field] ?? null),
      ),
    );
  const titles = [...new Set(songs.map((song) => song.album).filter(Boolean))];
  return {
    count: songs.length,
    columns,
    byField: new Map(columns.map((one) => [one.field, one])),
    playlists: [],
    albums: {
      titles,
      artists: titles.map((title) => songs.find((song) => song.album === title).artist ?? ""),
      songs: Int32Array.from(songs, (song) => titles.indexOf(song.album) + 1),
      covers: new Int32Array(titles.length),
    },
    coverPlaces: {side: 96, columns: 8, perPicture: 64},
    ...more,
  };
}
