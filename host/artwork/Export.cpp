#include "host/artwork/Export.h"

#include <algorithm>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <vector>

#include "host/artwork/Albums.h"
#include "host/artwork/Artwork.h"
#include "host/artwork/CacheFolder.h"
#include "host/artwork/CoverFolders.h"
#include "host/artwork/Covers.h"
#include "host/library/LibraryPlace.h"
#include "host/library/SongReader.h"
#include "host/naming/FileNames.h"
#include "host/output/Format.h"
#include "host/output/Json.h"
#include "host/output/NewFile.h"
#include "host/output/Progress.h"
#include "host/output/Text.h"
#include "system/FolderListing.h"
#include "text/PathNames.h"

namespace tavrel::host {
namespace {

// What became of it.
struct WrittenCount {
  std::int64_t written = 0;
  std::int64_t kept = 0;  // files that were there
  std::int64_t songsWithoutCover = 0;
  std::int64_t foldersOfSeveral = 0;
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
        covers_(session.library, cache_, options.longestSide) {}

  const WrittenCount& Run() {
    const std::size_t files = options_.unclaimed ? cache_.Unclaimed().size() : 0;
    if (files == 0 && !session_.library.IsLoaded()) throw session_.place.WhyNotLoaded();
    if (!options_.besideSongs && !options_.isDryRun) MakeFolders(options_.folder);
    const std::vector<Album> albums = ReadAlbums(session_.library);
    CoverFolders folders;
    if (options_.besideSongs) folders = FindCoverFolders(session_.library, albums);
    TellWhatWasFound(folders.tally, session_);
    tally_.foldersOfSeveral = folders.ofSeveral;
    Progress progress(albums.size() + files, session_.terminal, session_.output,
                      session_.options.quiet);
    for (std::size_t i = 0; i < albums.size(); ++i) {
      if (options_.besideSongs) {
        ExportBeside(albums[i], folders.ofAlbum[i]);
      } else if (options_.perSong) {
        ExportSongs(albums[i]);
      } else {
        ExportAlbum(albums[i]);
      }
      progress.Step();
    }
    for (std::size_t i = 0; i < files; ++i) {
      ExportUnclaimed(cache_.Unclaimed()[i]);
      progress.Step();
    }
    tally_.damaged.insert(covers_.Damaged().begin(), covers_.Damaged().end());
    tally_.failed.insert(tally_.failed.end(), covers_.NotScaled().begin(),
                         covers_.NotScaled().end());
    return tally_;
  }

 private:
  std::optional<Picture> CoverOf(const Album& album) {
    for (const std::int32_t song : album.songs) {
      if (auto cover = covers_.Of(song)) return cover;
    }
    tally_.songsWithoutCover += static_cast<std::int64_t>(album.songs.size());
    return std::nullopt;
  }

  void ExportAlbum(const Album& album) {
    if (const auto cover = CoverOf(album)) WriteNamed(album.name, *cover);
  }

  // A cover of the other kind serves as well as one of this kind.
  void ExportBeside(const Album& album, const std::vector<std::string>& folders) {
    if (folders.empty()) return;
    const auto cover = CoverOf(album);
    if (!cover) return;
    for (const std::string& folder : folders) {
      const std::string path = system::PathIn(folder, "cover");
      const bool isThere = IsTaken(path + ".jpg") || IsTaken(path + ".png");
      if (isThere && !options_.force) {
        ++tally_.kept;
      } else {
        Write(path + std::string(cover->extension), *cover);
      }
    }
  }

  // A song without a cover of its own has that of the first song on the album which has one.
  void ExportSongs(const Album& album) {
    OneCover cover(covers_, cache_);
    written_.clear();
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
        WriteNamed(SongFileName(reader.Read(songs_, song)), *picture);
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
    if (const auto picture = covers_.In(artwork, file)) WriteNamed(name, *picture);
  }

  void WriteNamed(std::string_view name, const Picture& picture) {
    Write(system::PathIn(options_.folder, names_.Take(name, picture.extension)), picture);
  }

  void Write(const std::string& path, const Picture& picture) {
    if (options_.isDryRun) return Foresee(path);
    try {
      ++(WriteOrLink(path, picture) ? tally_.written : tally_.kept);
    } catch (const Failure& failure) {
      if (*failure.what() == '\0') throw;  // the program is to end
      tally_.failed.emplace_back(failure.what());
    }
  }

  void Foresee(const std::string& path) {
    if (!options_.force && IsTaken(path)) {
      ++tally_.kept;
      return;
    }
    ++tally_.written;
    if (!session_.options.json) session_.output.WriteLine(Clean(path));
  }

  // Songs of an album have one file under several names where their covers are equal; a file of its own where
  // the file system has no second names.
  bool WriteOrLink(const std::string& path, const Picture& picture) {
    const IfThere ifThere = options_.force ? IfThere::Replace : IfThere::Keep;
    if (!options_.perSong) return WriteNewFile(path, picture.bytes, ifThere);
    if (ifThere == IfThere::Keep && IsTaken(path)) return false;
    std::string& first = written_[std::hash<std::string>()(picture.bytes)];
    if (!first.empty() && HoldsText(first, picture.bytes)) {
      NewFile file(path);
      if (file.LinkTo(first)) return file.Finish(ifThere);
    }
    const bool isWritten = WriteNewFile(path, picture.bytes, ifThere);
    if (isWritten) first = path;
    return isWritten;
  }

  const ExportOptions& options_;
  Session& session_;
  PlaylistRecord* songs_;
  CacheFolder cache_;
  Covers covers_;
  FileNames names_;
  std::map<std::size_t, std::string>
      written_;  // files of the album at hand, by a hash of what they hold
  WrittenCount tally_;
};

void PrintJson(const WrittenCount& tally, Session& session) {
  JsonArray damaged;
  for (const std::string& file : tally.damaged) damaged.Add(file);
  JsonArray failed;
  for (const std::string& message : tally.failed) failed.Add(message);
  const JsonObject summary{{"written", tally.written},
                           {"kept", tally.kept},
                           {"songsWithoutCover", tally.songsWithoutCover},
                           {"foldersOfSeveralAlbums", tally.foldersOfSeveral},
                           {"damaged", damaged},
                           {"failed", failed}};
  session.output.WriteLine(summary.Text());
}

void PrintSummary(const WrittenCount& tally, bool isDryRun, Session& session) {
  Output& output = session.output;
  output.WriteLine(Counted(tally.written, "cover") + (isDryRun ? " would be written" : " written"));
  if (tally.kept > 0) {
    output.WriteLine(Counted(tally.kept, "file") + " kept that had the name; --force replaces");
  }
  if (tally.foldersOfSeveral > 0) {
    output.WriteLine(
        Counted(tally.foldersOfSeveral, "folder") +
        (tally.foldersOfSeveral == 1 ? " left alone that holds" : " left alone that hold") +
        " songs of several albums");
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
  const WrittenCount& tally = exporter.Run();
  if (session.options.json) {
    PrintJson(tally, session);
  } else {
    PrintSummary(tally, options.isDryRun, session);
  }
  return tally.IsSuccess() ? ExitCode::Done : ExitCode::Failed;
}

}  // namespace tavrel::host
