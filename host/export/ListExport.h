// Playlists of the library as files in a folder.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/export/ExportPlan.h"
#include "host/export/ExportReport.h"
#include "host/library/Session.h"
#include "host/output/Progress.h"
#include "host/output/Sink.h"

namespace tavrel::host {

// How one list is written.
class ListWriter {
 public:
  ListWriter() = default;
  ListWriter(const ListWriter&) = delete;
  ListWriter& operator=(const ListWriter&) = delete;
  virtual ~ListWriter() = default;

  // progress: takes a step a song. Result: how many songs were written.
  virtual std::int64_t Write(const PlannedList& list, Sink& sink, ExportReport& report,
                             Progress& progress) = 0;
};

struct ListExportOptions {
  std::string folder;
  bool force = false;   // replace files that are there
  bool dryRun = false;  // write nothing
};

// Exports the lists one after the other: each is a file that is complete or absent. What fails with one of
// them is said, and the others are written all the same.
void ExportLists(const std::vector<PlannedList>& lists, const ListExportOptions& options,
                 ListWriter& writer, Session& session, ExportReport& report);

}  // namespace tavrel::host
