// Programs that take turns, and the ratios of their times.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "bench/report/Report.h"
#include "system/Memory.h"

namespace tavrel::bench {

void Require(bool holds, const char* what);  // throws std::runtime_error

// Memory that is there already: written before, on huge pages where the system has them.
class Resident {
 public:
  explicit Resident(std::size_t size);
  Resident(const Resident&) = delete;
  Resident& operator=(const Resident&) = delete;
  ~Resident() { system::ReleaseBlock(block_); }

  [[nodiscard]] char* data() const { return block_.address; }
  [[nodiscard]] std::size_t size() const { return size_; }

 private:
  std::size_t size_;
  system::ZeroedBlock block_;
};

struct Program {
  std::string name;
  std::function<void()> run;
  bool isChild = false;  // whether the work is done by a child process
  Series seconds{};
};

// The first program is ours, the others are its peers.
class Group {
 public:
  // bytes: what speeds are given in.
  Group(std::string name, std::size_t bytes) : name_(std::move(name)), bytes_(bytes) {}

  void Add(std::string name, std::function<void()> run, bool isChild = false) {
    programs_.push_back({std::move(name), std::move(run), isChild});
  }

  // Runs the programs in turn and reports their times, speeds and ratios.
  // freshBytes: how much memory a program takes from the system.
  void Measure(std::uint32_t rounds, std::size_t freshBytes, Report& report);

  // How many times as long as ours the program of that name takes, round by round.
  [[nodiscard]] Series RatioTo(std::string_view peer) const;

 private:
  void AddTo(Report& report) const;

  std::string name_;
  std::size_t bytes_;
  std::vector<Program> programs_;
};

}  // namespace tavrel::bench
