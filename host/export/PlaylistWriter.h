// Lists as playlists that players read.
#pragma once

#include <optional>
#include <string>

#include "host/export/ListExport.h"
#include "host/export/PlaylistText.h"
#include "host/library/SongRecord.h"

namespace tavrel::host {

enum class PlaylistKind { M3u8, M3u, Xspf };

struct PlaylistOptions {
  PlaylistKind kind = PlaylistKind::M3u8;
  std::string folder;                     // of the export
  std::optional<std::string> relativeTo;  // none: paths are absolute
  bool keepMissing = false;
};

// Songs that cannot be played here are left out, and reported. Paths are relative to the folder that the options
// name; where that is the export's own, to the one in which the list lies.
class PlaylistWriter : public ListWriter {
 public:
  PlaylistWriter(const PlaylistOptions& options, Session& session);

  std::int64_t Write(const PlannedList& list, Sink& sink, ExportReport& report,
                     Progress& progress) override;

 private:
  [[nodiscard]] std::optional<std::string> BaseOf(const PlannedList& list) const;

  const PlaylistOptions& options_;
  Session& session_;
  SongRecordReader reader_;
  std::string base_;            // that paths are relative to
  bool isBesideLists_ = false;  // whether that is the folder of each list
};

}  // namespace tavrel::host
