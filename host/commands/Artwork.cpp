// tavrel artwork: covers, of a song, of a cache file, or of the whole library.
#include "host/artwork/Artwork.h"

#include <CLI/Error.hpp>
#include <algorithm>
#include <charconv>
#include <filesystem>
#include <optional>

#include "host/Commands.h"
#include "host/artwork/Albums.h"
#include "host/artwork/Export.h"
#include "host/artwork/FileNames.h"
#include "host/library/PlaylistSearch.h"
#include "host/library/SongReader.h"
#include "host/output/Format.h"
#include "host/output/Json.h"
#include "host/output/NewFile.h"
#include "host/output/Table.h"
#include "host/output/Text.h"
#include "text/PathNames.h"

namespace tavrel::host {
namespace {

struct Arguments {
  std::vector<std::string> names;  // a cache file, or a playlist and a song
  std::optional<std::string> target;
  bool list = false;
  bool all = false;
  ExportOptions exporting;
};

// What the user has named.
struct Subject {
  Artwork artwork;
  std::string name;  // a file name without its extension
};

std::optional<std::int32_t> Position(const std::string& text) {
  std::int32_t position = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), position);
  const bool isNumber = error == std::errc() && end == text.data() + text.size();
  return isNumber ? std::optional(position) : std::nullopt;
}

// The song at a position, or of a name; names that differ only in case or in how accents are
// composed are taken when none is exactly the same.
std::int32_t FindSong(const Playlist& playlist, const std::string& wanted, const Library& library) {
  if (const auto position = Position(wanted)) {
    if (*position >= 0 && *position < playlist.songCount) return *position;
  }
  SongReader reader(library);
  const std::string folded = Fold(wanted);
  std::optional<std::int32_t> alike;
  for (std::int32_t position = 0; position < playlist.songCount; ++position) {
    const std::string name(reader.Read(playlist.handle, position).name.value_or(""));
    if (name == wanted) return position;
    if (!alike && Fold(name) == folded) alike = position;
  }
  if (alike) return *alike;
  throw Failure(ExitCode::Failed, "the playlist has no song \"" + wanted +
                                      "\"; \"tavrel songs\" shows positions and names");
}

Subject OpenFile(const std::string& file, const Library& library) {
  Artwork artwork(library, library.openArtworkFile(file.c_str()));
  if (!artwork.IsOpen()) {
    throw Failure(ExitCode::Failed, file + " is no artwork cache file, or cannot be read");
  }
  const std::string_view base = text::SplitExtension(file).base;
  return {std::move(artwork), SafeName(base.substr(base.rfind('/') + 1))};
}

Subject OpenSong(const Arguments& arguments, const Library& library) {
  const std::vector<Playlist> playlists = ReadPlaylists(library);
  const Playlist& playlist = FindPlaylist(playlists, arguments.names[0]);
  const std::int32_t position = FindSong(playlist, arguments.names[1], library);
  Artwork artwork(library, library.openArtworkAny(playlist.handle, position));
  if (!artwork.IsOpen()) {
    throw Failure(ExitCode::Failed, "the artwork cache has no readable file for this song");
  }
  SongReader reader(library);
  return {std::move(artwork), SongFileName(reader.Read(playlist.handle, position))};
}

void ListImages(const Artwork& artwork, Session& session) {
  const std::vector<ImageFacts> images = artwork.Images();
  if (session.options.json) {
    JsonList list(session.output);
    for (const ImageFacts& image : images) {
      list.Add({{"format", FormatName(image.format)},
                {"width", image.width},
                {"height", image.height},
                {"size", image.size}});
    }
    list.End();
    return;
  }
  if (images.empty()) Complain("the file holds no image");
  Table table({{.title = "#", .align = Align::Right, .style = Style::Dim},
               {.title = "Format"},
               {.title = "Width", .align = Align::Right},
               {.title = "Height", .align = Align::Right},
               {.title = "Bytes", .align = Align::Right}});
  for (std::size_t i = 0; i < images.size(); ++i) {
    table.Add(static_cast<std::int64_t>(i));
    table.Add(FormatName(images[i].format));
    table.Add(images[i].width);
    table.Add(images[i].height);
    table.Add(images[i].size);
  }
  if (images.empty()) return;
  for (const std::string& line : table.Lines(session.terminal)) session.output.WriteLine(line);
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
std::string TargetPath(const Arguments& arguments, const std::string& name,
                       std::string_view extension) {
  FileNames names;
  const std::string own = names.Take(name, extension);
  if (!arguments.target) return own;
  if (std::filesystem::is_directory(*arguments.target)) {
    return (std::filesystem::path(*arguments.target) / own).string();
  }
  return WithRealExtension(*arguments.target, extension);
}

ExitCode WritePicture(const Subject& subject, const Arguments& arguments, Session& session) {
  const auto picture = subject.artwork.LargestPicture();
  if (!picture) {
    throw Failure(ExitCode::Failed, subject.artwork.Images().empty()
                                        ? "the cache file holds no image"
                                        : "the cache file is damaged: no image in it is whole");
  }
  if (arguments.target == "-") {
    session.output.Write(picture->bytes);
    return ExitCode::Done;
  }
  const std::string path = TargetPath(arguments, subject.name, picture->extension);
  const IfThere ifThere = arguments.exporting.force ? IfThere::Replace : IfThere::Keep;
  if (!WriteNewFile(path, picture->bytes, ifThere)) {
    throw Failure(ExitCode::Failed, path + " is there already; --force replaces it");
  }
  if (session.options.json) {
    session.output.WriteLine(JsonLine({{"file", JsonText(path)}}));
  } else {
    session.output.WriteLine(Clean(path));
  }
  return ExitCode::Done;
}

ExitCode ShowArtwork(const Arguments& arguments, Session& session) {
  const bool isFile = arguments.names.size() == 1;
  const Subject subject =
      isFile ? OpenFile(arguments.names[0], session.library) : OpenSong(arguments, session.library);
  if (!arguments.list) return WritePicture(subject, arguments, session);
  ListImages(subject.artwork, session);
  return ExitCode::Done;
}

void Check(const Arguments& arguments) {
  const ExportOptions& exporting = arguments.exporting;
  if (arguments.all != arguments.names.empty()) {
    throw CLI::ValidationError("artwork needs PLAYLIST SONG, or FILE, or --all");
  }
  if (arguments.all && (!arguments.target || arguments.target->empty())) {
    throw CLI::ValidationError("artwork --all needs a folder: -o DIR");
  }
  if (arguments.all && arguments.list) {
    throw CLI::ValidationError("--list shows the images of one song or file, not of --all");
  }
  if (!arguments.all && (exporting.perSong || exporting.unclaimed)) {
    throw CLI::ValidationError("--per-song and --unclaimed need --all");
  }
  if (arguments.target && arguments.target->empty()) {
    throw CLI::ValidationError("-o: the name is empty");
  }
}

}  // namespace

void AddArtwork(CLI::App& parser, Run& run) {
  const auto arguments = std::make_shared<Arguments>();
  CLI::App* command = parser.add_subcommand("artwork", "Write covers to files, or list them");
  command
      ->add_option("NAMES", arguments->names,
                   "PLAYLIST SONG: names, or positions as \"tavrel songs\" shows them;\n"
                   "or FILE: an artwork cache file (.itc2, .itc)")
      ->expected(1, 2)
      ->type_name("")
      ->option_text(" ");
  command
      ->add_option("-o,--output", arguments->target,
                   "The file to write (its extension follows the picture's type; - is standard\n"
                   "output), or the folder")
      ->type_name("FILE");
  command->add_flag("--list", arguments->list, "List the images instead");
  command->add_flag("--all", arguments->all, "One cover for each album of the library");
  command->add_flag("--per-song", arguments->exporting.perSong, "With --all: one for each song");
  command->add_flag("--unclaimed", arguments->exporting.unclaimed,
                    "With --all: also the cache files that belong to no song");
  command->add_flag("--force", arguments->exporting.force, "Replace files that are there");
  command->callback([&run, arguments] {
    Check(*arguments);
    if (arguments->all) {
      arguments->exporting.folder = *arguments->target;
      run = [arguments](Session& session) { return ExportArtwork(arguments->exporting, session); };
      return;
    }
    run = [arguments](Session& session) { return ShowArtwork(*arguments, session); };
    run.needsLibrary = arguments->names.size() != 1;
  });
}

}  // namespace tavrel::host
