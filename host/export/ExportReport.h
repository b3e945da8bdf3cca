// What became of an export.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "host/export/ExportPlan.h"
#include "host/library/FileTally.h"
#include "host/library/Session.h"
#include "host/library/SongPlaces.h"
#include "host/library/SongRecord.h"

namespace tavrel::host {

class ExportReport {
 public:
  enum class Outcome { Written, Kept, Failed };

  explicit ExportReport(const Session& session);

  // A song of the list whose Path or Status was read: its file counts once, however many lists have it.
  void AddFile(const Playlist& playlist, std::int32_t position, const SongRecord& song);
  // A song of the list that has no place in it. lack: its status.
  void AddLeftOut(const Playlist& playlist, const SongRecord& song, std::string_view lack);
  // A list that is done with, behind what was left out of it. songs: those that were written.
  void AddList(const PlannedList& list, std::int64_t songs, Outcome outcome);
  void AddFailure(const std::string& message) { failed_.push_back(message); }
  // A list that could not be written in the encoding that was asked for.
  void AddOtherEncoding() { ++otherEncoding_; }

  // Whether all lists were written, with one song at least unless all are empty.
  [[nodiscard]] bool IsSuccess() const noexcept {
    return failed_.empty() && kept_ == 0 && (songs_ > 0 || LeftOut() == 0);
  }

  // Shows it: as JSON, or what was left out and failed on standard error, and a summary.
  void Print(const std::string& folder, std::string_view format, bool isDryRun,
             Session& session) const;

 private:
  void PrintSummary(const std::string& folder, bool isDryRun, Session& session) const;
  [[nodiscard]] std::int64_t LeftOut() const noexcept;
  [[nodiscard]] std::string Reasons() const;

  static constexpr std::array<std::string_view, 3> kLacks{"missing", "remote", "none"};

  const Session& session_;
  SongNumbers numbers_;
  std::vector<bool> isCounted_;  // of all songs
  FileTally tally_;
  std::int64_t written_ = 0;
  std::int64_t kept_ = 0;
  std::int64_t songs_ = 0;
  std::int64_t otherEncoding_ = 0;
  std::int64_t leftOutOfList_ = 0;
  std::array<std::int64_t, kLacks.size()> leftOut_{};
  std::vector<std::string> notes_;  // on the first songs that were left out, or on all
  std::string leftOutJson_;         // objects
  std::string listsJson_;
  std::vector<std::string> failed_;
};

}  // namespace tavrel::host
