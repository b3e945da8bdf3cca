// tavrel artwork: covers, of a song, of a cache file, or of the whole library.
#include "host/artwork/Artwork.h"

#include <charconv>
#include <filesystem>
#include <memory>
#include <optional>

#include "host/artwork/Albums.h"
#include "host/artwork/CacheFolder.h"
#include "host/artwork/Covers.h"
#include "host/artwork/Export.h"
#include "host/commands/Commands.h"
#include "host/library/InputFile.h"
#include "host/library/Invocation.h"
#include "host/library/PlaylistSearch.h"
#include "host/library/Playlists.h"
#include "host/library/SongReader.h"
#include "host/library/SongRecord.h"
#include "host/naming/FileNames.h"
#include "host/output/Format.h"
#include "host/output/Json.h"
#include "host/output/NewFile.h"
#include "host/output/Table.h"
#include "host/output/Text.h"
#include "text/PathNames.h"

namespace tavrel::host {
namespace {

struct ArtworkArguments {
  std::vector<std::string> names;  // a cache file, or a playlist and a song
  std::optional<std::string> target;
  bool list = false;
  bool all = false;
  ExportOptions exporting;
};

std::optional<std::int32_t> Position(const std::string& text) {
  std::int32_t position = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), position);
  const bool isNumber = error == std::errc() && end == text.data() + text.size();
  return isNumber ? std::optional(position) : std::nullopt;
}

// The song at a position, or of a name; names that differ only in case or in how accents are
// composed are taken when none is exactly the same.
// names: of the playlist and of the song, as given.
std::int32_t FindSong(const Playlist& playlist, const std::vector<std::string>& names,
                      const Session& session) {
  const std::string& wanted = names[1];
  if (const auto position = Position(wanted)) {
    if (*position >= 0 && *position < playlist.songCount) return *position;
  }
  SongReader reader(session.library);
  const std::string folded = Fold(wanted);
  std::optional<std::int32_t> alike;
  for (std::int32_t position = 0; position < playlist.songCount; ++position) {
    const std::string name(reader.Read(playlist.handle, position).name.value_or(""));
    if (name == wanted) return position;
    if (!alike && Fold(name) == folded) alike = position;
  }
  if (alike) return *alike;
  throw Failure(ExitCode::Failed, "the playlist has no song \"" + wanted + "\"\n  " +
                                      Invocation(session.options, "songs " + Quoted(names[0])) +
                                      " shows positions and names.");
}

ExitCode ListImages(const Artwork& artwork, Session& session) {
  const std::vector<ImageFacts> images = artwork.Images();
  if (session.options.json) {
    JsonList list(session.output);
    for (const ImageFacts& image : images) {
      list.Add(JsonObject{{"format", FormatName(image.format)},
                          {"width", image.width},
                          {"height", image.height},
                          {"size", image.size}});
    }
    list.End();
  }
  if (images.empty()) {
    Complain("the file holds no image");
    return ExitCode::Failed;
  }
  if (session.options.json) return ExitCode::Done;
  const Table table({{.title = "#", .align = Align::Right, .style = Style::Dim},
                     {.title = "Format"},
                     {.title = "Width", .align = Align::Right},
                     {.title = "Height", .align = Align::Right},
                     {.title = "Bytes", .align = Align::Right}},
                    [&](Rows& rows) {
                      for (std::size_t i = 0; i < images.size(); ++i) {
                        rows.Add(static_cast<std::int64_t>(i));
                        rows.Add(FormatName(images[i].format));
                        rows.Add(images[i].width);
                        rows.Add(images[i].height);
                        rows.Add(images[i].size);
                      }
                    });
  table.Print(session.terminal, session.output);
  return ExitCode::Done;
}

// A name for pictures of another type gives way to the real one; any other stays and gets it.
std::string WithRealExtension(const std::string& path, std::string_view extension) {
  const text::SplitName parts = text::SplitExtension(path);
  const std::string given = Fold(parts.extension);
  const bool isJpeg = given == "jpg" || given == "jpeg";
  if (isJpeg ? extension == ".jpg" : "." + given == extension) return path;
  const bool isPicture = isJpeg || given == "png";
  return std::string(isPicture ? parts.base : std::string_view(path)).append(extension);
}

// Where the picture goes: to the file the user has named, into the folder, or here.
std::string TargetPath(const ArtworkArguments& arguments, const std::string& name,
                       std::string_view extension) {
  FileNames names;
  const std::string own = names.Take(name, extension);
  if (!arguments.target) return own;
  if (std::filesystem::is_directory(*arguments.target)) {
    return (std::filesystem::path(*arguments.target) / own).string();
  }
  return WithRealExtension(*arguments.target, extension);
}

// name: of the picture's file, without its extension.
void WritePicture(const Picture& picture, const std::string& name,
                  const ArtworkArguments& arguments, Session& session) {
  if (arguments.target == "-") {
    session.output.Write(picture.bytes);
    return;
  }
  const std::string path = TargetPath(arguments, name, picture.extension);
  const IfThere ifThere = arguments.exporting.force ? IfThere::Replace : IfThere::Keep;
  if (!WriteNewFile(path, picture.bytes, ifThere)) {
    throw Failure(ExitCode::Failed, path + " is there already; --force replaces it");
  }
  session.output.WriteLine(session.options.json ? JsonObject{{"file", path}}.Text() : Clean(path));
}

Failure NoPicture(const Artwork& artwork) {
  if (!artwork.IsOpen()) {
    return {ExitCode::Failed, "the artwork cache has no readable file for this song"};
  }
  return {ExitCode::Failed, artwork.Images().empty()
                                ? "the cache file holds no image"
                                : "the cache file is damaged: no image in it is whole"};
}

ExitCode ShowFile(const ArtworkArguments& arguments, Session& session) {
  const std::string& file = arguments.names[0];
  RequireFile(file);
  const Artwork artwork(session.library, session.library.openArtworkFile(file.c_str()));
  if (!artwork.IsOpen()) {
    throw Failure(ExitCode::Failed, file + " is no artwork cache file, or cannot be read");
  }
  if (arguments.list) return ListImages(artwork, session);
  const auto picture = artwork.LargestPicture();
  if (!picture) throw NoPicture(artwork);
  const std::string_view base = text::SplitExtension(file).base;
  WritePicture(*picture, SafeName(base.substr(base.rfind('/') + 1)), arguments, session);
  return ExitCode::Done;
}

// The covers of a song's album.
class AlbumCovers {
 public:
  AlbumCovers(const Song& song, const Session& session)
      : songs_(SongsOnAlbumOf(song, session.library)),
        cache_(session.library, session.libraryPath),
        library_(session.library),
        covers_(library_, cache_) {}

  // The first cache file that can be opened; a closed one when there is none.
  Artwork FirstFile() {
    for (const std::int32_t song : songs_) {
      Artwork artwork = covers_.Open(song);
      if (artwork.IsOpen()) return artwork;
    }
    return {library_, nullptr};
  }

  std::optional<Picture> FirstPicture() {
    for (const std::int32_t song : songs_) {
      if (auto picture = covers_.Of(song)) return picture;
    }
    return std::nullopt;
  }

 private:
  std::vector<std::int32_t> songs_;
  CacheFolder cache_;
  const Library& library_;
  Covers covers_;
};

// A cover often has one cache file for the whole album.
ExitCode ShowSong(const ArtworkArguments& arguments, Session& session) {
  const Library& library = session.library;
  const std::vector<Playlist> playlists = ReadPlaylists(library);
  const Playlist& playlist = FindPlaylist(playlists, arguments.names[0], session.options);
  const std::int32_t position = FindSong(playlist, arguments.names, session);
  SongRecordReader reader(library, FieldsOfSong());
  const Song song = AsSong(reader.Read(playlist.handle, position));
  const Artwork own(library, library.openArtworkAny(playlist.handle, position));
  if (arguments.list) {
    if (own.IsOpen()) return ListImages(own, session);
    const Artwork shared = AlbumCovers(song, session).FirstFile();
    if (!shared.IsOpen()) throw NoPicture(own);
    return ListImages(shared, session);
  }

  std::optional<Picture> picture = own.LargestPicture();
  const bool isDamaged = !picture && !own.Images().empty();
  if (!picture) picture = AlbumCovers(song, session).FirstPicture();
  if (!picture) throw NoPicture(own);
  WritePicture(*picture, SongFileName(song), arguments, session);
  if (!isDamaged) return ExitCode::Done;
  Complain("the song's own cache file is damaged; this is the cover of its album");
  return ExitCode::Failed;
}

ExitCode ShowArtwork(const ArtworkArguments& arguments, Session& session) {
  if (arguments.all) return ExportArtwork(arguments.exporting, session);
  return arguments.names.size() == 1 ? ShowFile(arguments, session) : ShowSong(arguments, session);
}

void Check(const ArtworkArguments& arguments) {
  const ExportOptions& exporting = arguments.exporting;
  if (arguments.all != arguments.names.empty()) {
    throw UsageError("covers needs PLAYLIST SONG, or FILE, or --all");
  }
  if (arguments.all && (!arguments.target || arguments.target->empty())) {
    throw UsageError("covers --all needs a folder: -o DIR");
  }
  if (arguments.all && arguments.list) {
    throw UsageError("--list shows the images of one song or file, not of --all");
  }
  if (!arguments.all && (exporting.perSong || exporting.unclaimed)) {
    throw UsageError("--per-song and --unclaimed need --all");
  }
  if (arguments.target && arguments.target->empty()) throw UsageError("-o: the name is empty");
}

LibraryNeed NeedOf(const ArtworkArguments& arguments) {
  if (arguments.all && arguments.exporting.unclaimed) return LibraryNeed::ReadableIfThere;
  return arguments.names.size() == 1 ? LibraryNeed::None : LibraryNeed::Readable;
}

}  // namespace

void DefineArtwork(CommandDefinition program) {
  const auto arguments = std::make_shared<ArtworkArguments>();
  ExportOptions& exporting = arguments->exporting;
  CommandDefinition command = program.AddCommand("covers", "Write covers to files, or list them");
  command.AddAlias("artwork");
  command.AddPlaces("NAMES", arguments->names, 2,
                    "PLAYLIST SONG: names, or positions as \"tavrel songs\" shows them;\n"
                    "or FILE: an artwork cache file (.itc2, .itc)");
  command.AddText("-o,--output", arguments->target, "FILE",
                  "The file to write (its extension follows the picture's type; - is standard\n"
                  "output), or the folder");
  command.AddFlag("--list", arguments->list, "List the images instead");
  command.AddFlag("--all", arguments->all, "One cover for each album of the library");
  command.AddFlag("--per-song", exporting.perSong, "With --all: one for each song");
  command.AddFlag("--unclaimed", exporting.unclaimed,
                  "With --all: also the cache files that belong to no song; the library\n"
                  "file may be missing then");
  command.AddFlag("--force", exporting.force, "Replace files that are there");
  command.Makes([arguments] {
    Check(*arguments);
    if (arguments->all) arguments->exporting.folder = *arguments->target;
    return Task{.run = [arguments](Session& session) { return ShowArtwork(*arguments, session); },
                .need = NeedOf(*arguments),
                .isPaged = false};
  });
}

}  // namespace tavrel::host
