#include "host/export/PlaylistWriter.h"

#include <filesystem>
#include <memory>

#include "host/export/M3u.h"
#include "host/export/SongTarget.h"
#include "host/export/Xspf.h"
#include "host/output/Failure.h"

namespace tavrel::host {
namespace {

// Absolute and without links, as far as the path is there; without '/' at its end.
std::string TruePath(const std::string& path) {
  std::error_code error;
  const auto whole = std::filesystem::absolute(path, error);
  std::string truePath;
  if (!error) truePath = std::filesystem::weakly_canonical(whole, error).string();
  if (error) throw Failure(ExitCode::Failed, "cannot look at " + path + ": " + error.message());
  while (truePath.ends_with('/')) truePath.pop_back();
  return truePath;
}

PlaylistEntry EntryOf(const SongRecord& song) {
  PlaylistEntry entry;
  entry.name = song.Text(Field::Name);
  entry.artist = song.Text(Field::Artist);
  entry.album = song.Text(Field::Album);
  entry.milliseconds = song.Milliseconds();
  entry.track = song.Number(Field::Track);
  return entry;
}

FieldSet FieldsOfEntry() {
  return FieldsOfTarget() |
         SetOf({Field::Name, Field::Artist, Field::Album, Field::Seconds, Field::Track});
}

}  // namespace

PlaylistWriter::PlaylistWriter(const PlaylistOptions& options, Session& session)
    : options_(options), session_(session), reader_(session.library, FieldsOfEntry()) {
  if (!options_.relativeTo) return;
  base_ = TruePath(*options_.relativeTo);
  isBesideLists_ = base_ == TruePath(options_.folder);
}

std::optional<std::string> PlaylistWriter::BaseOf(const PlannedList& list) const {
  if (!options_.relativeTo) return std::nullopt;
  return isBesideLists_ && !list.folder.empty() ? base_ + '/' + list.folder : base_;
}

std::int64_t PlaylistWriter::Write(const PlannedList& list, Sink& sink, ExportReport& report,
                                   Progress& progress) {
  const std::string name = list.playlist->name.value_or("");
  const std::optional<std::string> base = BaseOf(list);
  std::optional<M3uText> m3u;
  std::optional<XspfText> xspf;
  if (options_.kind == PlaylistKind::Xspf) {
    xspf.emplace(name);
  } else {
    const bool isLatin1 = options_.kind == PlaylistKind::M3u;
    m3u.emplace(name, isLatin1 ? M3uEncoding::Latin1 : M3uEncoding::Utf8);
  }
  PlaylistText& text = m3u ? static_cast<PlaylistText&>(*m3u) : *xspf;

  std::int64_t songs = 0;
  for (std::int32_t i = 0; i < list.playlist->songCount; ++i) {
    progress.Step();
    const SongRecord& song = reader_.Read(list.playlist->handle, i);
    report.AddFile(*list.playlist, i, song);
    SongTarget target = TargetOf(song, options_.keepMissing);
    if (!target.lack.empty()) {
      report.AddLeftOut(*list.playlist, song, target.lack);
      continue;
    }
    if (song.IsOutsideTheFile()) target.path = UserPath(session_, target.path);
    PlaylistEntry entry = EntryOf(song);
    entry.path = target.path;
    entry.url = target.url;
    const std::string relative = base ? RelativePath(*base, target.path) : std::string();
    entry.written = base ? relative : target.path;
    text.Add(entry);
    ++songs;
  }
  sink.Write(text.Finish());
  if (m3u && m3u->IsBeyondLatin1()) report.AddOtherEncoding();
  return songs;
}

}  // namespace tavrel::host
