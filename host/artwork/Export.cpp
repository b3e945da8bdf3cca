#include "host/artwork/Export.h"

#include <algorithm>
#include <filesystem>
#include <optional>
#include <set>
#include <vector>

#include "host/artwork/Albums.h"
#include "host/artwork/Artwork.h"
#include "host/artwork/CacheFolder.h"
#include "host/artwork/Covers.h"
#include "host/library/LibraryPlace.h"
#include "host/library/SongReader.h"
#include "host/naming/FileNames.h"
#include "host/output/Format.h"
#include "host/output/Json.h"
#include "host/output/NewFile.h"
#include "host/output/Progress.h"
#include "host/output/Text.h"
#include "text/PathNames.h"

namespace tavrel::host {
namespace {

// What became of it.
struct Tally {
  std::int64_t written = 0;
  std::int64_t kept = 0;  // files that were there
  std::int64_t songsWithoutCover = 0;
  std::set<std::string> damaged;    // cache files
  std::vector<std::string> failed;  // messages

  // Covers that were there already are as good as written.
  [[nodiscard]] bool IsSuccess() const {
    return damaged.empty() && failed.empty() && written + kept > 0;
  }
};

class Exporter {
 public:
  Exporter(const ExportOptions& options, Session& session)
      : options_(options),
        session_(session),
        songs_(session.library.openAllSongs()),
        cache_(session.library, session.libraryPath),
        covers_(session.library, cache_) {}

  const Tally& Run() {
    const std::size_t files = options_.unclaimed ? cache_.Unclaimed().size() : 0;
    if (files == 0 && !session_.library.IsLoaded()) throw session_.place.WhyNotLoaded();
    std::error_code error;
    std::filesystem::create_directories(options_.folder, error);
    if (error) {
      throw Failure(ExitCode::Failed, "cannot make " + options_.folder + ": " + error.message());
    }
    const std::vector<Album> albums = ReadAlbums(session_.library);
    Progress progress(albums.size() + files, session_.terminal, session_.output,
                      session_.options.quiet);
    for (const Album& album : albums) {
      if (options_.perSong) ExportSongs(album);
      if (!options_.perSong) ExportAlbum(album);
      progress.Step();
    }
    for (std::size_t i = 0; i < files; ++i) {
      ExportUnclaimed(cache_.Unclaimed()[i]);
      progress.Step();
    }
    tally_.damaged.insert(covers_.Damaged().begin(), covers_.Damaged().end());
    return tally_;
  }

 private:
  void ExportAlbum(const Album& album) {
    for (const std::int32_t song : album.songs) {
      if (const auto cover = covers_.Of(song)) return Write(album.name, *cover);
    }
    tally_.songsWithoutCover += static_cast<std::int64_t>(album.songs.size());
  }

  // A song without a cover of its own has that of the first song on the album which has one.
  void ExportSongs(const Album& album) {
    OneCover cover(covers_, cache_);
    const auto first =
        std::find_if(album.songs.begin(), album.songs.end(),
                     [&cover](std::int32_t song) { return cover.Of(song) != nullptr; });
    SongReader reader(session_.library);
    for (const std::int32_t song : album.songs) {
      const Picture* picture = first == album.songs.end() ? nullptr : cover.Of(song);
      if (picture == nullptr && first != album.songs.end()) picture = cover.Of(*first);
      if (picture == nullptr) {
        ++tally_.songsWithoutCover;
      } else {
        Write(SongFileName(reader.Read(songs_, song)), *picture);
      }
    }
  }

  void ExportUnclaimed(const std::string& file) {
    const Artwork artwork(session_.library, session_.library.openArtworkFile(file.c_str()));
    if (!artwork.IsOpen()) {
      tally_.damaged.insert(file);
      return;
    }
    const std::string_view base = text::SplitExtension(file).base;
    const std::string name = SafeName(base.substr(base.rfind('/') + 1));
    if (const auto picture = covers_.In(artwork, file)) Write(name, *picture);
  }

  void Write(std::string_view name, const Picture& picture) {
    const std::string path =
        (std::filesystem::path(options_.folder) / names_.Take(name, picture.extension)).string();
    try {
      const IfThere ifThere = options_.force ? IfThere::Replace : IfThere::Keep;
      ++(WriteNewFile(path, picture.bytes, ifThere) ? tally_.written : tally_.kept);
    } catch (const Failure& failure) {
      tally_.failed.emplace_back(failure.what());
    }
  }

  const ExportOptions& options_;
  Session& session_;
  PlaylistRecord* songs_;
  CacheFolder cache_;
  Covers covers_;
  FileNames names_;
  Tally tally_;
};

void PrintJson(const Tally& tally, Session& session) {
  JsonArray damaged;
  for (const std::string& file : tally.damaged) damaged.Add(file);
  JsonArray failed;
  for (const std::string& message : tally.failed) failed.Add(message);
  const JsonObject summary{{"written", tally.written},
                           {"kept", tally.kept},
                           {"songsWithoutCover", tally.songsWithoutCover},
                           {"damaged", damaged},
                           {"failed", failed}};
  session.output.WriteLine(summary.Text());
}

void PrintSummary(const Tally& tally, Session& session) {
  Output& output = session.output;
  output.WriteLine(Counted(tally.written, "cover") + " written");
  if (tally.kept > 0) {
    output.WriteLine(Counted(tally.kept, "file") + " kept that had the name; --force replaces");
  }
  if (tally.songsWithoutCover > 0) {
    output.WriteLine(Counted(tally.songsWithoutCover, "song") + " without a cover");
  }
  if (!tally.damaged.empty()) {
    const auto count = static_cast<std::int64_t>(tally.damaged.size());
    output.WriteLine(Counted(count, "damaged file") + ":");
    for (const std::string& file : tally.damaged) output.WriteLine("  " + Clean(file));
  }
  for (const std::string& message : tally.failed) Complain(message);
}

}  // namespace

ExitCode ExportArtwork(const ExportOptions& options, Session& session) {
  Exporter exporter(options, session);
  const Tally& tally = exporter.Run();
  if (session.options.json) {
    PrintJson(tally, session);
  } else {
    PrintSummary(tally, session);
  }
  return tally.IsSuccess() ? ExitCode::Done : ExitCode::Failed;
}

}  // namespace tavrel::host
