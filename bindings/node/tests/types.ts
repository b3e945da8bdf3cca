// What a program may rely on, and that the modules are what the types say. Compiled, not run.
import * as declared from '../types/index';
import * as implemented from '../lib/index.js';

// What is exported beyond the types is nobody's business.
export const library: typeof declared.Library = implemented.Library;
export const errors: Pick<typeof declared, 'LibraryError' | 'AlreadyOpenError' | 'ClosedError'> = implemented;

export function use(place: { file: string }): string[] {
  using library = new declared.Library(place);
  const names: (string | null)[] = [...library.songs].map((song) => song.name);
  const first: declared.Song | undefined = library.songs.at(0);
  const data: Uint8Array | undefined = first?.artwork()[0]?.data;
  const rating: declared.PropertyValue | undefined = first?.properties.get('Rating');
  for (const song of library.search({ artist: 'bach' })) names.push(song.album, `${rating} ${data?.length}`);
  for (const playlist of library.playlists) names.push(playlist.name);
  return names.filter((name) => name !== null);
}

// @ts-expect-error a library has no such place
new declared.Library({ folder: 'here' });
// @ts-expect-error what is read is not written
(song: declared.Song) => { song.name = 'other'; };
