// The copying of files and playlists, as it was planned.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "host/copying/CopyPlan.h"
#include "host/copying/FileCopier.h"
#include "host/library/Library.h"
#include "host/library/TextHash.h"

namespace tavrel::host {

// What became of it.
struct CopyReport {
  std::int64_t copied = 0;
  std::int64_t linked = 0;
  std::int64_t left = 0;             // files that were there already
  std::uint64_t bytes = 0;           // of those that were copied
  std::int64_t lists = 0;            // written
  std::int64_t listsLeft = 0;        // they were there already
  std::vector<std::string> differs;  // what has the name of a file or a playlist, and was kept
  std::vector<std::string> failed;   // messages
  std::string whyNotLinked;          // a reason, when files were copied that were to be linked
  bool isStopped = false;            // by a signal that is to end the program
  bool isDiskLost = false;           // nothing more could be written
};

struct CopyWork {
  std::size_t files = 0;    // that are not there
  std::uint64_t bytes = 0;  // that they have
};

// folder: takes the copies; it ends in no '/'.
class CopyRun {
 public:
  // All are borrowed.
  CopyRun(const LibraryFunctions& library, const CopyPlan& plan, const std::string& folder,
          CopyOptions options)
      : library_(library), plan_(plan), folder_(folder), options_(options) {}

  // What is to be done, as far as sizes and times tell. visit: called for each of these files.
  // Cost: two looks a file.
  [[nodiscard]] CopyWork Foresee(const std::function<void(const FileToCopy&)>& visit) const;

  // Copies the files, then writes the playlists; these name what is there then. Makes the folders. It ends early
  // when the disk takes no more, or when a signal waits that is to end the program; nothing is half done then,
  // and no playlist is written.
  // The caller keeps such signals blocked (system::BlockedSignals) until it has said what became of it all.
  // onDone: told how many bytes were written, and of each file that has been dealt with.
  [[nodiscard]] const CopyReport& Run(
      const std::function<void(std::uint64_t bytes, std::size_t files)>& onDone);

 private:
  void CopyFile(std::size_t number, FileCopier& copier);
  void WriteList(const ListToCopy& list);
  void MakeFolderOf(const std::string& target);
  // work(): what it fails with is kept.
  void Try(const std::function<void()>& work);
  [[nodiscard]] bool IsOver() const noexcept { return report_.isStopped || report_.isDiskLost; }

  const LibraryFunctions& library_;
  const CopyPlan& plan_;
  const std::string& folder_;
  CopyOptions options_;
  CopyReport report_;
  std::uint64_t bytesOfFile_ = 0;  // the one at hand
  std::vector<bool> isThere_;      // of the plan's files
  TextSet folders_;                // that were made, or are there
};

}  // namespace tavrel::host
