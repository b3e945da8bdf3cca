#include "bench/codecs/Measuring.h"

#include <sys/resource.h>
#include <time.h>

#include <cstring>
#include <stdexcept>

namespace tavrel::bench {
namespace {

double Seconds(const timeval& time) {
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
}

// Processor time, system calls included. The clock of this process is finer than its rusage.
double OwnSeconds() {
  timespec now{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

// Of the children that have ended.
double ChildSeconds() {
  rusage usage{};
  getrusage(RUSAGE_CHILDREN, &usage);
  return Seconds(usage.ru_utime) + Seconds(usage.ru_stime);
}

// A virtual machine gives free pages back to its host, and the first touch of such a page costs
// many times that of a page that the machine still has: touch that much and give it back. Not in a
// child process: after a fork every page of ours would have to be taken over again.
void WarmUp(std::size_t size) {
  const Resident touched(size);
}

}  // namespace

void Require(bool holds, const char* what) {
  if (!holds) throw std::runtime_error(what);
}

Resident::Resident(std::size_t size) : size_(size), block_(system::AllocateBlock(size)) {
  Require(block_.address != nullptr, "there is not enough memory");
  std::memset(block_.address, 1, size);
}

void Group::Measure(std::uint32_t rounds, std::size_t freshBytes, Report& report) {
  for (std::uint32_t round = 0; round <= rounds; ++round) {
    for (std::size_t i = 0; i < programs_.size(); ++i) {
      Program& program = programs_[(i + round) % programs_.size()];
      if (freshBytes > 0) WarmUp(freshBytes);
      const auto now = program.isChild ? ChildSeconds : OwnSeconds;
      const double start = now();
      program.run();
      const double seconds = now() - start;
      if (round > 0) program.seconds.Add(seconds);  // the first round warms the caches
    }
  }
  AddTo(report);
}

Series Group::RatioTo(std::string_view peer) const {
  for (const Program& program : programs_) {
    if (program.name == peer) return program.seconds.Over(programs_.front().seconds);
  }
  throw std::logic_error("there is no such program");
}

void Group::AddTo(Report& report) const {
  report.Section(name_);
  for (const Program& program : programs_) {
    report.Seconds(program.name, program.seconds);
    Series speeds;
    for (const double seconds : program.seconds.values()) {
      speeds.Add(static_cast<double>(bytes_) * 1e-9 / seconds);
    }
    report.Figure("  speed", "GB/s", speeds);
    if (&program != &programs_.front()) {
      report.Figure("  time / ours", "", RatioTo(program.name));
    }
  }
}

}  // namespace tavrel::bench
