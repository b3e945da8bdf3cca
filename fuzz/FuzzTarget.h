// What a fuzz target consists of: a name, and what is done with one input. A program holds one target, for
// the fuzzer, or all of them, to replay their corpora.
#pragma once

#include <string_view>

namespace tavrel::fuzz {

// Made by each target, once, with static storage; they find each other before main() begins.
class Target {
 public:
  // name:  a literal; that of the target's corpus.
  // input: borrowed for the call, in a block of just its size.
  Target(const char* name, void (*run)(std::string_view input)) noexcept;
  Target(const Target&) = delete;
  Target& operator=(const Target&) = delete;

  [[nodiscard]] std::string_view name() const noexcept { return name_; }
  void Run(std::string_view input) const { run_(input); }
  [[nodiscard]] const Target* next() const noexcept { return next_; }

  // Null when the program holds none.
  [[nodiscard]] static const Target* First() noexcept;

 private:
  const char* name_;
  void (*run_)(std::string_view input);
  const Target* next_;
};

// Ends the program, which is how a finding is reported.
void Require(bool condition, const char* what) noexcept;

// Require() reports to what standard error is now, whatever becomes of that later.
void KeepStandardError() noexcept;

}  // namespace tavrel::fuzz
