#include "bench/codecs/Measuring.h"

#include <fmt/format.h>
#include <sys/resource.h>
#include <time.h>

#include <algorithm>
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

Spread SpreadOf(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return {values.front(), values[values.size() / 2], values.back()};
}

}  // namespace

void Require(bool holds, const char* what) {
  if (!holds) throw std::runtime_error(what);
}

Resident::Resident(std::size_t size) : size_(size), block_(platform::AllocateBlock(size)) {
  Require(block_.address != nullptr, "there is not enough memory");
  std::memset(block_.address, 1, size);
}

void Group::Measure(std::uint32_t rounds, std::size_t freshBytes) {
  for (std::uint32_t round = 0; round <= rounds; ++round) {
    for (std::size_t i = 0; i < programs_.size(); ++i) {
      Program& program = programs_[(i + round) % programs_.size()];
      if (freshBytes > 0) WarmUp(freshBytes);
      const auto now = program.isChild ? ChildSeconds : OwnSeconds;
      const double start = now();
      program.run();
      const double seconds = now() - start;
      if (round > 0) program.seconds.push_back(seconds);  // the first round warms the caches
    }
  }
  Print();
}

Spread Group::RatioTo(const Program& peer) const {
  std::vector<double> ratios;
  for (std::size_t i = 0; i < peer.seconds.size(); ++i) {
    ratios.push_back(peer.seconds[i] / programs_.front().seconds[i]);
  }
  return SpreadOf(std::move(ratios));
}

Spread Group::RatioTo(std::string_view peer) const {
  for (const Program& program : programs_) {
    if (program.name == peer) return RatioTo(program);
  }
  throw std::logic_error("there is no such program");
}

void Group::Print() const {
  fmt::print("\n{}\n", name_);
  for (const Program& program : programs_) {
    const double median = SpreadOf(program.seconds).median;
    fmt::print("  {:<28}{:>9.2f} ms {:>6.2f} GB/s", program.name, median * 1e3,
               static_cast<double>(bytes_) * 1e-9 / median);
    if (&program != &programs_.front()) {
      const Spread ratio = RatioTo(program);
      fmt::print("  {:>6.2f} times as long ({:.2f} to {:.2f})", ratio.median, ratio.least,
                 ratio.most);
    }
    fmt::print("\n");
  }
}

void Print(const Target& target) {
  const double ratio = target.ratio.median;
  const char* verdict = ratio >= target.pass ? "PASS" : "FAIL";
  fmt::print("{:<52}{:>7.2f} ({:.2f} to {:.2f})  at least {:.1f}  moonshot {:.1f}  {}{}\n",
             target.name, ratio, target.ratio.least, target.ratio.most, target.pass,
             target.moonshot, verdict, ratio >= target.moonshot ? ", moonshot" : "");
}

}  // namespace tavrel::bench
