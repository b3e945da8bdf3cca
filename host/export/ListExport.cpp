#include "host/export/ListExport.h"

#include "host/output/Failure.h"
#include "host/output/NewFile.h"

namespace tavrel::host {
namespace {

using Outcome = ExportReport::Outcome;

// Takes everything, and keeps nothing.
class NoSink : public Sink {
 public:
  void Write(std::string_view /*text*/) override {}
};

class ListExporter {
 public:
  ListExporter(const ListExportOptions& options, ListWriter& writer, Session& session,
               ExportReport& report)
      : options_(options), writer_(writer), session_(session), report_(report) {}

  void Export(const std::vector<PlannedList>& lists) {
    std::size_t songs = 0;
    for (const PlannedList& list : lists) {
      songs += static_cast<std::size_t>(list.playlist->songCount);
    }
    Progress progress(songs, session_.terminal, session_.output, session_.options.quiet);
    for (const PlannedList& list : lists) Export(list, progress);
  }

 private:
  void Export(const PlannedList& list, Progress& progress) {
    const std::string path = options_.folder + '/' + list.path;
    std::int64_t songs = 0;
    Outcome outcome = Outcome::Failed;
    try {
      if (!options_.force && IsTaken(path)) {
        outcome = Outcome::Kept;
      } else if (options_.dryRun) {
        NoSink sink;
        songs = writer_.Write(list, sink, report_, progress);
        outcome = Outcome::Written;
      } else {
        MakeFolder(list.folder);
        NewFile file(path);
        songs = writer_.Write(list, file, report_, progress);
        const bool isWritten = file.Finish(options_.force ? IfThere::Replace : IfThere::Keep);
        outcome = isWritten ? Outcome::Written : Outcome::Kept;
      }
    } catch (const Failure& failure) {
      if (*failure.what() == '\0') throw;
      report_.AddFailure(failure.what());
    }
    report_.AddList(list, songs, outcome);
  }

  void MakeFolder(const std::string& folder) {
    if (madeFolder_ == folder) return;
    MakeFolders(folder.empty() ? options_.folder : options_.folder + '/' + folder);
    madeFolder_ = folder;
  }

  const ListExportOptions& options_;
  ListWriter& writer_;
  Session& session_;
  ExportReport& report_;
  std::optional<std::string> madeFolder_;  // the last one
};

}  // namespace

void ExportLists(const std::vector<PlannedList>& lists, const ListExportOptions& options,
                 ListWriter& writer, Session& session, ExportReport& report) {
  ListExporter(options, writer, session, report).Export(lists);
}

}  // namespace tavrel::host
