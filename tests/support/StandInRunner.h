// A stand-in for `osascript` on $PATH, before everything else that stands there.
#pragma once

#include <string>
#include <string_view>

#include "tests/support/ScopedVariable.h"
#include "tests/support/TemporaryFolder.h"

namespace tavrel::test {

// Writes an executable shell script of that body, with the folders above it.
void WriteProgram(const std::string& path, std::string_view body);

// The whole file; empty when there is none.
[[nodiscard]] std::string Contents(const std::string& path);

class StandInRunner {
 public:
  // body: of a shell script. "$0.x" names a file that Kept("x") reads.
  explicit StandInRunner(std::string_view body);

  [[nodiscard]] const TemporaryFolder& folder() const { return folder_; }
  // What the stand-in has put into the file "$0.`extension`"; empty when there is none.
  [[nodiscard]] std::string Kept(std::string_view extension) const;

 private:
  TemporaryFolder folder_;
  ScopedVariable path_;
};

// Keeps what it reads in "$0.script", one script behind the other.
inline constexpr std::string_view kRecord = "cat >> \"$0.script\"\n";

}  // namespace tavrel::test
