/* Tavrel: a read-only view of a user's iTunes media library, from outside iTunes.
 *
 * The library reads "Music/iTunes/iTunes Music Library.xml" below the home folder at the moment it
 * is loaded (linked or dlopened), and gives everything back when it is unloaded. There is nothing
 * to set up: load it and call the functions below, in any order, any number of times.
 *
 * Conventions, said once for the whole interface:
 *
 *  1. Home folder. $HOME when it is an absolute path, else the user's entry in the password
 *     database; read once, at load. Changing $HOME later changes nothing.
 *  2. Results are plain integers or handles. 0 or null means failure, a bad position or "nothing";
 *     AgentInitializer and AppendRingtone, which answer 0 when all went well, state theirs. No
 *     exception leaves the library.
 *  3. When the library file cannot be used, loading still succeeds, one line goes to the system log
 *     (standard error), and every query answers 0 or null.
 *  4. Playlist handles are pointers into the library's own data. They are never released by the
 *     host, stay valid until the library is unloaded, and must not be used after that. Artwork
 *     handles are the host's, from the function that opens them to CloseArtwork. A null handle is
 *     allowed wherever a handle is taken, and answers like a bad position.
 *  5. Positions count from 0. A negative position, or one at or past the end, is a bad position.
 *  6. Texts are NUL-terminated UTF-8, copied into buffers that the host owns. Sizes are in bytes
 *     and count the terminator. The library never truncates: ask for the size first, with null text
 *     pointers, then call again with buffers of that size. A size is that of the text as the
 *     library file writes it; the decoded text that is copied may be shorter ("AC&#38;DC" has size
 *     10 and delivers "AC&DC").
 *  7. Text pointers of one call must not overlap, neither each other nor the record they stand in.
 *  8. Threads. All calls are expected from one thread at a time; nothing is locked.
 *  9. Records are laid out with the platform's natural alignment. Integers are signed 32-bit.
 */
#ifndef TAVREL_TAVREL_H_
#define TAVREL_TAVREL_H_

#include <stdint.h>

/* Changes when hosts must be built anew. */
#define TAVREL_VERSION_MAJOR 1
/* Changes when functions join. */
#define TAVREL_VERSION_MINOR 0
/* Changes with every other release. */
#define TAVREL_VERSION_PATCH 0
/* The three, with points between them. */
#define TAVREL_VERSION "1.0.0"

/* What the library exports. */
#if defined(__GNUC__)
#define TAVREL_API __attribute__((visibility("default")))
#else
#define TAVREL_API
#endif

/* What no function of the library does: throw. */
#if defined(__cplusplus)
#define TAVREL_NOEXCEPT noexcept
extern "C" {
#else
#define TAVREL_NOEXCEPT
#endif

/* A playlist handle. */
typedef struct PlaylistRecord PlaylistRecord;

/* An artwork handle: the images of one artwork cache file, which stays open with it. */
typedef struct ArtworkHandle ArtworkHandle;

/* One song, as the host sees it. The host owns the record and the buffers that it points to.
 * 96 bytes where pointers have 8 bytes, 60 where they have 4. */
typedef struct SongInfo {
  char* name;           /* in: buffer for the name, or null */
  int32_t nameSize;     /* out: bytes that the name needs; 0 when the song has none */
  char* location;       /* in: buffer for the path of the song's file, or null */
  int32_t locationSize; /* out: the path's length plus 1; 0 when the song has none */
  int32_t totalTime;    /* out: length in milliseconds, as the library file gives it */
  char* artist;         /* in: buffer, or null */
  int32_t artistSize;   /* out */
  char* album;          /* in: buffer, or null */
  int32_t albumSize;    /* out */
  char* genre;          /* in: buffer, or null */
  int32_t genreSize;    /* out */
  int32_t reserved;     /* neither read nor written */
  int32_t playCount;    /* out */
  int32_t trackNumber;  /* out: position on its disc */
  int32_t movie;        /* out: 1 for a movie, else 0 */
} SongInfo;

/* One image. The host owns the record and the buffer that it points to.
 * 32 bytes where pointers have 8 bytes, 20 where they have 4. */
typedef struct ArtworkInfo {
  int32_t format;   /* out: 0 PNG, 1 JPEG (and 2, 3 for handles of the additions below) */
  int32_t width;    /* out: in pixels, as the cache file states it */
  int32_t height;   /* out: in pixels, as the cache file states it */
  uint8_t* data;    /* in: buffer for the image's bytes, or null */
  int32_t dataSize; /* in: room in the buffer, in bytes; out: the image's size in bytes */
} ArtworkInfo;

/* ---- Lifecycle -------------------------------------------------------------------------------
 * The loader runs both: the first when the library is loaded, the second when it is unloaded. A
 * host that wants the memory back earlier may call AgentFinalizer itself; the library does nothing
 * at unload then. */

/* Reads the user's library file and builds the tables.
 * Result: 0 loaded, -1 the library file could not be used (see convention 3).
 * Calling it again reads the library anew; what was loaded before is not released.
 * Cost: linear in the file's size. */
TAVREL_API int32_t AgentInitializer(void) TAVREL_NOEXCEPT;

/* Releases everything that AgentInitializer made; every handle is invalid afterwards, and no other
 * function may be called until the library is loaded again.
 * Result: always 0. A second call without a load in between does nothing. */
TAVREL_API int32_t AgentFinalizer(void) TAVREL_NOEXCEPT;

/* ---- Playlists -------------------------------------------------------------------------------
 * Playlists stand in three groups: 0 the library's own (music, films, podcasts and so on), 1
 * Genius, 2 all others. Hidden playlists, the master playlist among them, stand in none. The last
 * playlist of group 0 is one that the library file does not hold: "Ringtones", of kind 55. */

/* Result: the number of playlists in the group, 0 for a bad group. */
TAVREL_API int32_t GetPlaylistCount(int32_t groupIndex) TAVREL_NOEXCEPT;

/* Result: the handle of the playlist at `index` of the group, or null for a bad position. */
TAVREL_API PlaylistRecord* OpenPlaylist(int32_t groupIndex, int32_t index) TAVREL_NOEXCEPT;

/* Releases nothing; the handle stays usable.
 * Result: 1 when `playlist` is not null, else 0. */
TAVREL_API int32_t ClosePlaylist(PlaylistRecord* playlist) TAVREL_NOEXCEPT;

/* Copies the name of a playlist, which need not be open.
 * buffer:     room for `bufferSize` bytes, owned by the caller; null asks for the size only.
 * bufferSize: in bytes. When it is below the name's size nothing is written.
 * Result:     the name's size in bytes, terminator included; 0 for a bad position, or for a
 *             playlist without a name (whose buffer, if it has room, receives an empty text). */
TAVREL_API int32_t GetPlaylistName(int32_t groupIndex, int32_t index, char* buffer,
                                   int32_t bufferSize) TAVREL_NOEXCEPT;

/* Result: the "Distinguished Kind" of the library file (4 music, 2 films, 26 Genius, ...), 0 for an
 * ordinary playlist or a null handle. */
TAVREL_API int32_t GetPlaylistKind(const PlaylistRecord* playlist) TAVREL_NOEXCEPT;

/* Result: the number of songs in the playlist, 0 for a null handle. */
TAVREL_API int32_t GetSongCount(const PlaylistRecord* playlist) TAVREL_NOEXCEPT;

/* ---- Songs ----------------------------------------------------------------------------------- */

/* Fills `info` with the song at `index` of the playlist.
 * info:   owned by the caller. Sizes and numbers are written whatever they held before; a text is
 *         copied when its pointer is not null and the song has that text. The size fields are not
 *         read: a buffer must have room for the size that an earlier call reported.
 * Result: sizeof(SongInfo) plus the five sizes, in bytes; 0, with nothing written, for a null
 *         argument or a bad position.
 * Cost:   the first request for a track reads its properties from the library file's text; every
 *         later one, through any playlist, is five copies. */
TAVREL_API int32_t GetSongInfo(PlaylistRecord* playlist, int32_t index,
                               SongInfo* info) TAVREL_NOEXCEPT;

/* ---- Artwork ---------------------------------------------------------------------------------
 * iTunes keeps covers in cache files below "Music/iTunes/Album Artwork" of the home folder, each
 * named after the library's and a track's persistent ID, with the extension "itc2" or "itc". They
 * are listed once, at the first call of a function that opens a song's artwork and finds the list
 * empty; files that come later are not seen until the library is loaded again. */

/* Opens the cache file of the song at `index` of the playlist, the first in the byte order of their
 * paths when there are several, and lists its images. The images themselves are not read.
 * Result: a handle, to be released with CloseArtwork, also when it holds no image that is known;
 *         null for a null playlist or a bad position, when there is no such file, when it cannot be
 *         opened or is not a regular file, when it does not begin with the header of a cache file,
 *         and when memory is exhausted.
 * Cost:   the first call lists the folder; every later one looks the file up, reads its header and
 *         208 bytes for each of its blocks. As long as the folder holds no cache file, every call
 *         lists it again, whatever its arguments. */
TAVREL_API ArtworkHandle* OpenArtwork(PlaylistRecord* playlist, int32_t index) TAVREL_NOEXCEPT;

/* Result: the number of images, 0 for a null handle. */
TAVREL_API int32_t GetArtworkCount(const ArtworkHandle* handle) TAVREL_NOEXCEPT;

/* Describes the image at `index`, and reads it from the file when there is room for it.
 * info:   owned by the caller. When its `dataSize` is at least the image's size, all fields are
 *         filled and the bytes go to `data`, unless that is null; otherwise only `dataSize` is
 *         written. Ask with a `dataSize` of 0 first.
 * Result: the image's size plus sizeof(ArtworkInfo), in bytes, whether the bytes were read or not;
 *         0, with nothing written, for a null argument or a bad position.
 * A size is that of the cache file's block: a file that is cut short delivers what it holds, leaves
 * the rest of the buffer as it was, and the result is the same. In a damaged file a size can be
 * negative; there are no bytes then.
 * Does not depend on the position of the open file: after a fork, both sides may use the handle. */
TAVREL_API int32_t GetArtworkInfo(ArtworkHandle* handle, int32_t index,
                                  ArtworkInfo* info) TAVREL_NOEXCEPT;

/* Releases the handle and closes its file; null is allowed. */
TAVREL_API void CloseArtwork(ArtworkHandle* handle) TAVREL_NOEXCEPT;

/* ---- Ringtones -------------------------------------------------------------------------------
 * The files in the folder "Music/iTunes/iTunes Media/Ringtones" below the home folder are the songs
 * of the playlist "Ringtones", in the byte order of their names. A ringtone has a name, which is
 * its file's up to the first '.', and a location; everything else is 0. The folder is read once, at
 * load. */

/* Adds a ringtone to iTunes: a script, run by `osascript`, makes iTunes play the file and sends it
 * Command-L. The ringtone then joins the playlist "Ringtones" as its last song, named as its file
 * is up to the last '.', also when the playlist holds it already.
 * path:   full path of the file, NUL-terminated, borrowed. It goes into the script as it is: a
 *         double quote, a backslash or a line break in it changes the script.
 * Result:  0  done; also for a null path, for which nothing is done.
 *          1  iTunes was told to play the file, but the playlist could not be updated: `path` holds
 *             no '/', there is no such playlist, or memory is exhausted.
 *         -1  there is no `osascript`, or it failed, or memory is exhausted.
 * Unless memory is exhausted, the system log says what went wrong. Returns when the script has
 * ended. */
TAVREL_API int32_t AppendRingtone(const char* path) TAVREL_NOEXCEPT;

/* ---- Search ---------------------------------------------------------------------------------- */

/* What a search calls for each track.
 * playlist: for a track that matches, the first playlist that holds it (groups and playlists in
 *           their order), so that GetSongInfo can go on from there; null when no playlist holds it,
 *           and for every track that does not match.
 * index:    the track's position in that playlist; 0 when `playlist` is null.
 * context:  as it was given to SearchSong.
 * Result:   0 ends the search, any other value goes on.
 * It may call every function of the library, SearchSong included, but AgentFinalizer, and must not
 * unload the library. No exception may leave it. */
typedef int32_t (*SearchSongCallback)(PlaylistRecord* playlist, int32_t index, void* context);

/* Searches all tracks of the library file, also those that no playlist holds.
 * terms:    borrowed; `name`, `artist` and `album` are read, before the first call of `callback`,
 *           and nothing else. Each is a NUL-terminated UTF-8 text to look for in that property, or
 *           null. They are alternatives: a track matches when any of them is found.
 * callback: called exactly once for every track, matching or not, in the file's order, until it
 *           returns 0.
 * context:  handed to `callback`; may be null.
 * Result:   the number of tracks that matched, the one included at which `callback` ended the
 *           search; 0 for null `terms` or `callback`, or when no library is loaded.
 * Cost:     the first search reads the texts of every track and keeps them, in about 50 bytes a
 *           track, and 16 more once a track has matched; a later one is linear in the length of
 *           the texts and the terms and in the number of tracks, whatever they hold.
 *
 * A term is found anywhere in a text. Case does not count (Unicode's full case folding), nor how a
 * character is composed: "strasse" finds the same word with a sharp s, and an accented letter finds
 * its like written as a letter and a combining accent. A match neither begins nor ends inside a
 * character and the combining marks that follow it, inside a Hangul syllable, or inside what one
 * character folds to: "e" does not find an accented e. No locale takes part. An empty term is never
 * found, nor is one that is not valid UTF-8, nor anything in a text that is not. */
TAVREL_API int32_t SearchSong(const SongInfo* terms, SearchSongCallback callback,
                              void* context) TAVREL_NOEXCEPT;

/* ---- Additions -------------------------------------------------------------------------------
 * Beyond the core interface above; more of them may come. */

/* Result: the handle of a playlist that holds every track of the library file, in the file's order,
 * each once; null when no library is loaded. It stands in no group, has kind 0 and no name, and no
 * other function finds it. (The file's own list of everything is a hidden playlist, so no other
 * handle reaches every song.) */
TAVREL_API PlaylistRecord* OpenAllSongs(void) TAVREL_NOEXCEPT;

/* Opens the cache file that OpenArtwork opens, and lists also the images in the other layouts that
 * iTunes has written. The picture's own first bytes decide whether it is a PNG or a JPEG; where
 * they say nothing, the file's code does. Two formats join PNG and JPEG, raw pixels of 4 bytes each
 * in rows from the top, width times height of them:
 *   2  the bytes of a pixel are alpha, red, green, blue
 *   3  they are blue, green, red, alpha
 * The handle works with GetArtworkCount, GetArtworkInfo and CloseArtwork, as any other.
 * Result: as OpenArtwork. */
TAVREL_API ArtworkHandle* OpenArtworkAny(PlaylistRecord* playlist, int32_t index) TAVREL_NOEXCEPT;

/* The same for any cache file, whether a song has it or not; no library needs to be loaded.
 * path:   NUL-terminated, borrowed.
 * Result: a handle; null for a null path, or as OpenArtwork. */
TAVREL_API ArtworkHandle* OpenArtworkFile(const char* path) TAVREL_NOEXCEPT;

/* ---- Additions: every property, and finding songs ---------------------------------------------
 * The library file keeps a dictionary of properties for itself, for each song and for each
 * playlist: pairs of a key and a value, of which the functions above tell a few. These tell all of
 * them, as texts:
 *
 *   string, integer, real, date   the value as the file writes it, with its XML references decoded:
 *                                 "AC&DC", "206794", "2009-11-05T08:13:42Z"
 *   true, false                   "true", "false"
 *   data, array, dict             no text; nor has an element without any, as <string/>
 *   any other                     as a string
 *
 * A size is that of the decoded text here. An empty text is a text; one of 2 GiB or more counts as
 * none. An error in the references of a text ends it there, and is logged each time that it is asked
 * for; so is one in a key that a visitor is given. Keys are compared with their references decoded,
 * exactly; a key element without a text counts as an empty key.
 *
 * Only the records that the library has made of its file lead to a dictionary. Ringtones have none,
 * nor has the playlist "Ringtones", nor that of OpenAllSongs; nor has a record that a host has made
 * itself, which is never read past its stated fields. (A playlist of a host's own may hold the
 * library's songs, which keep theirs.) Nor has a record of a library that was loaded before the
 * present one. Asking loads no properties: what GetSongInfo does is the same before and after. */

/* Copies the value of `key` of the song at `index` of the playlist. The first of two equal keys
 * counts.
 * key:        NUL-terminated, borrowed.
 * buffer:     room for `bufferSize` bytes, owned by the caller; null asks for the size only.
 * bufferSize: in bytes. When it is below the size nothing is written.
 * Result:     the size of the decoded text in bytes, terminator included: 1 for an empty text. 0,
 *             with nothing written, for a missing key or a value without a text, for a null
 *             playlist or key, a bad position, a record that leads to no dictionary, and when no
 *             library is loaded.
 * Cost:       one walk over the dictionary up to the key; no memory is taken. Who wants many
 *             properties of a song visits them. */
TAVREL_API int32_t GetSongProperty(const PlaylistRecord* playlist, int32_t index, const char* key,
                                   char* buffer, int32_t bufferSize) TAVREL_NOEXCEPT;

/* The same for a property of a playlist: "Playlist Persistent ID", "Folder", ... */
TAVREL_API int32_t GetPlaylistProperty(const PlaylistRecord* playlist, const char* key,
                                       char* buffer, int32_t bufferSize) TAVREL_NOEXCEPT;

/* The same for a property of the library: "Library Persistent ID", "Music Folder", "Date", ... */
TAVREL_API int32_t GetLibraryProperty(const char* key, char* buffer,
                                      int32_t bufferSize) TAVREL_NOEXCEPT;

/* What a visit calls for each pair.
 * key:     the decoded key; never null.
 * text:    the decoded value, or null where Get...Property gives 0.
 * type:    the name of the value's element: "string", "integer", "true", "dict", ...; never null.
 * context: as it was given to the visit.
 * Result:  0 ends the visit, any other value goes on.
 * The texts are borrowed, and live until the visitor returns. It may call every function of the
 * library, visits included, but AgentFinalizer, and must not unload the library. (Should it load
 * another one, the visit goes on in the dictionary where it is.) No exception may leave it. */
typedef int32_t (*PropertyVisitor)(const char* key, const char* text, const char* type,
                                   void* context);

/* Visits every pair of the dictionary of the song at `index` of the playlist, in the file's order,
 * equal keys included.
 * context: handed to `visitor`; may be null.
 * Result:  the number of pairs visited, the one included at which `visitor` ended the visit; 0 for a
 *          null visitor, and where GetSongProperty has no dictionary to look into.
 * Cost:    one walk, in which most texts are shown where they stand. Memory is only taken for texts
 *          of more than 1,000 bytes with references in them, and given back at the end; when it is
 *          exhausted the visit ends before the pair that needs it. */
TAVREL_API int32_t VisitSongProperties(const PlaylistRecord* playlist, int32_t index,
                                       PropertyVisitor visitor, void* context) TAVREL_NOEXCEPT;

/* The same for a playlist. */
TAVREL_API int32_t VisitPlaylistProperties(const PlaylistRecord* playlist, PropertyVisitor visitor,
                                           void* context) TAVREL_NOEXCEPT;

/* The same for the library. */
TAVREL_API int32_t VisitLibraryProperties(PropertyVisitor visitor, void* context) TAVREL_NOEXCEPT;

/* What FindSongs calls for each match.
 * index:   the song's position in the playlist that OpenAllSongs opens.
 * context: as it was given to FindSongs.
 * Result:  0 ends the search, any other value goes on.
 * What it may do is what a SearchSongCallback may. (Should it load another library, the search goes
 * on in the one that it began in, whose positions it tells.) */
typedef int32_t (*FindSongsCallback)(int32_t index, void* context);

/* Finds the songs that match, as SearchSong matches them.
 * terms:    as SearchSong takes them.
 * callback: called once for each song that matches, and for no other, in the file's order, until it
 *           returns 0.
 * context:  handed to `callback`; may be null.
 * Result:   the number of songs that matched, the one included at which `callback` ended the search;
 *           0 for null `terms` or `callback`, or when no library is loaded.
 * Cost:     the first search of either kind reads the texts of every song and keeps them; a later
 *           one is linear in the length of those texts and of the terms. No playlist is looked at. */
TAVREL_API int32_t FindSongs(const SongInfo* terms, FindSongsCallback callback,
                             void* context) TAVREL_NOEXCEPT;

#if defined(__cplusplus)
} /* extern "C" */
#endif

#endif /* TAVREL_TAVREL_H_ */
