// Where everything lies while commands of tavrel are measured.
#pragma once

#include <cstdint>
#include <string>

#include "bench/host/Programs.h"
#include "bench/report/Series.h"
#include "bench/support/LinkedHome.h"
#include "bench/support/TemporaryFolder.h"

namespace tavrel::bench {

struct HostOptions {
  std::string file;
  std::uint32_t peerRounds = 3;
};

class HostBench {
 public:
  // Sets $HOME to a home folder whose library file is that of the options, which are borrowed.
  explicit HostBench(const HostOptions& options);

  // In a folder that goes with the object.
  [[nodiscard]] std::string Path(const std::string& name) const {
    return folder_.path() + "/" + name;
  }
  [[nodiscard]] const std::string& LibraryFile() const noexcept { return options_.file; }

  // A line of tavrel's with the library file.
  [[nodiscard]] ProgramLine Tavrel(ProgramLine arguments) const;

  // The processor time of a program, in seconds; its output goes into that file of the folder.
  [[nodiscard]] double Run(const ProgramLine& line, const std::string& output) const;
  [[nodiscard]] double RunBareLoad() const;

 private:
  const HostOptions& options_;
  LinkedHome home_;
  TemporaryFolder folder_;
  std::uint64_t fileSize_;
};

// Round by round.
[[nodiscard]] Series Sum(const Series& one, const Series& other);

}  // namespace tavrel::bench
