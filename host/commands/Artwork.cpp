// tavrel covers: covers, of a song, of a cache file, or of the whole library.
#include "host/artwork/Artwork.h"

#include <algorithm>
#include <filesystem>
#include <memory>
#include <optional>

#include "host/artwork/Albums.h"
#include "host/artwork/CacheFolder.h"
#include "host/artwork/Covers.h"
#include "host/artwork/Export.h"
#include "host/artwork/Scaling.h"
#include "host/commands/Commands.h"
#include "host/commands/SongChoice.h"
#include "host/library/InputFile.h"
#include "host/library/SongReader.h"
#include "host/library/SongRecord.h"
#include "host/naming/FileNames.h"
#include "host/output/Format.h"
#include "host/output/Json.h"
#include "host/output/NewFile.h"
#include "host/output/Table.h"
#include "host/output/Text.h"
#include "system/FolderListing.h"
#include "text/PathNames.h"

namespace tavrel::host {
namespace {

struct ArtworkArguments {
  std::vector<std::string>
      names;  // a cache file, a song, or a playlist and a song; none: all covers
  std::optional<std::string> target;
  bool list = false;
  bool all = false;  // said aloud
  std::size_t size = 0;
  ExportOptions exporting;
};

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
  const ExportOptions& exporting = arguments.exporting;
  const IfThere ifThere = exporting.force ? IfThere::Replace : IfThere::Keep;
  const bool isKept = exporting.isDryRun ? !exporting.force && IsTaken(path)
                                         : !WriteNewFile(path, picture.bytes, ifThere);
  if (isKept) {
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
  const std::int32_t longestSide = arguments.exporting.longestSide;
  auto picture = artwork.PictureFor(longestSide);
  if (!picture) throw NoPicture(artwork);
  if (longestSide > 0) picture = Scaled(std::move(*picture), longestSide);
  const std::string_view base = text::SplitExtension(file).base;
  WritePicture(*picture, SafeName(base.substr(base.rfind('/') + 1)), arguments, session);
  return ExitCode::Done;
}

// The covers of a song's album.
class AlbumCovers {
 public:
  AlbumCovers(const Song& song, const Session& session, std::int32_t longestSide)
      : songs_(SongsOnAlbumOf(song, session.library)),
        cache_(session.library, session.libraryPath),
        library_(session.library),
        covers_(library_, cache_, longestSide) {}

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
  const std::int32_t longestSide = arguments.exporting.longestSide;
  const auto [playlist, position] = ChooseSong(arguments.names, session);
  SongRecordReader reader(library, FieldsOfSong());
  const Song song = AsSong(reader.Read(playlist, position));
  const Artwork own(library, library.openArtworkAny(playlist, position));
  if (arguments.list) {
    if (own.IsOpen()) return ListImages(own, session);
    const Artwork shared = AlbumCovers(song, session, longestSide).FirstFile();
    if (!shared.IsOpen()) throw NoPicture(own);
    return ListImages(shared, session);
  }

  std::optional<Picture> picture = own.PictureFor(longestSide);
  const bool isDamaged = !picture && !own.Images().empty();
  if (picture && longestSide > 0) picture = Scaled(std::move(*picture), longestSide);
  if (!picture) picture = AlbumCovers(song, session, longestSide).FirstPicture();
  if (!picture) throw NoPicture(own);
  WritePicture(*picture, SongFileName(song), arguments, session);
  if (!isDamaged) return ExitCode::Done;
  Complain("the song's own cache file is damaged; this is the cover of its album");
  return ExitCode::Failed;
}

// A name with that extension is meant as one, even where no file is; so is a path of what is there.
bool IsFile(const std::string& name) {
  const std::string extension = Fold(text::SplitExtension(name).extension);
  if (extension == "itc" || extension == "itc2") return true;
  const system::EntryKind kind = system::KindOfEntry(name);
  const bool isPath = name.find('/') != std::string::npos;
  return kind == system::EntryKind::Other || (isPath && kind == system::EntryKind::Folder);
}

ExitCode ShowArtwork(const ArtworkArguments& arguments, Session& session) {
  const std::vector<std::string>& names = arguments.names;
  if (names.empty()) return ExportArtwork(arguments.exporting, session);
  const bool isFile = names.size() == 1 && IsFile(names[0]);
  return isFile ? ShowFile(arguments, session) : ShowSong(arguments, session);
}

// Without a song or file: all covers are meant.
void CheckExport(const ArtworkArguments& arguments) {
  const bool isBeside = arguments.exporting.besideSongs;
  if (arguments.list) throw UsageError("--list shows the images of one song or file, not of all");
  if (isBeside && arguments.target) {
    throw UsageError("--beside-songs writes into the folders of albums: it takes no -o");
  }
  if (isBeside && (arguments.exporting.perSong || arguments.exporting.unclaimed)) {
    throw UsageError("--beside-songs writes one cover for each album folder, and nothing else");
  }
  if (!isBeside && !arguments.target) {
    throw UsageError("covers needs a SONG, a FILE, or a folder for all covers: -o DIR");
  }
}

void Check(const ArtworkArguments& arguments) {
  const ExportOptions& exporting = arguments.exporting;
  if (arguments.target && arguments.target->empty()) throw UsageError("-o: the name is empty");
  if (arguments.names.empty()) return CheckExport(arguments);
  if (arguments.all) throw UsageError("--all and a SONG or FILE exclude each other");
  if (exporting.perSong || exporting.unclaimed || exporting.besideSongs) {
    throw UsageError("--per-song, --beside-songs and --unclaimed go with all covers, not with one");
  }
}

LibraryNeed NeedOf(const ArtworkArguments& arguments) {
  const std::vector<std::string>& names = arguments.names;
  if (names.empty()) {
    return arguments.exporting.unclaimed ? LibraryNeed::ReadableIfThere : LibraryNeed::Readable;
  }
  return names.size() == 1 && IsFile(names[0]) ? LibraryNeed::None : LibraryNeed::Readable;
}

Task MakeTask(const std::shared_ptr<ArtworkArguments>& arguments) {
  Check(*arguments);
  constexpr std::size_t kLargest = 1 << 20;  // no picture is larger
  arguments->exporting.longestSide = static_cast<std::int32_t>(std::min(arguments->size, kLargest));
  arguments->exporting.folder = arguments->target.value_or("");
  return Task{.run = [arguments](Session& session) { return ShowArtwork(*arguments, session); },
              .need = NeedOf(*arguments),
              .isPaged = false};
}

}  // namespace

void DefineArtwork(CommandDefinition program) {
  const auto arguments = std::make_shared<ArtworkArguments>();
  ExportOptions& exporting = arguments->exporting;
  CommandDefinition command = program.AddCommand("covers", "Write covers to files, or list them");
  command.AddAlias("artwork");
  command.AddPlaces("NAMES", arguments->names, 2,
                    "SONG: its name, or id:PERSISTENT-ID;\n"
                    "or PLAYLIST SONG: names, or positions as \"tavrel songs\" shows them;\n"
                    "or FILE: an artwork cache file (.itc2, .itc); without any, all covers");
  command.AddText("-o,--output", arguments->target, "PATH",
                  "The file to write (its extension follows the picture's type; - is standard\n"
                  "output), or the folder; of all covers, the folder");
  command.AddFlag("--list", arguments->list, "List the images instead");
  command.AddFlag("--all", arguments->all, "All covers, as without NAMES: one for each album");
  command.AddFlag("--per-song", exporting.perSong,
                  "One for each song instead; equal ones of an album are one file with\n"
                  "several names, where the disk can have them");
  command.AddFlag("--beside-songs", exporting.besideSongs,
                  "As cover.jpg or cover.png in the folder of each album that was found");
  command.AddCount("--size", arguments->size, "N",
                   "Make the longer side of larger pictures so many pixels long");
  command.AddFlag("--unclaimed", exporting.unclaimed,
                  "Also the cache files that belong to no song; the library file may be\n"
                  "missing then");
  command.AddFlag("--force", exporting.force, "Replace files that are there");
  command.AddFlag("-n,--dry-run", exporting.isDryRun, "Only say what would be written");
  command.Makes([arguments] { return MakeTask(arguments); });
}

}  // namespace tavrel::host
