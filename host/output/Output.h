// What the program prints on standard output.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "host/output/Pager.h"
#include "host/output/Sink.h"
#include "system/Files.h"

namespace tavrel::host {

// Buffered standard output. Nothing is lost silently: a failed write is a Failure, with an empty
// message when the reader of a pipe has gone away, which is no news to anybody.
class Output : public Sink {
 public:
  Output() = default;
  Output(const Output&) = delete;
  Output& operator=(const Output&) = delete;
  ~Output() override = default;  // which waits for the pager

  // From now on, what is longer than the terminal goes through the pager, if there is one. A user who leaves
  // it early has seen enough: that is a Failure with ExitCode::Done.
  void PageLongOutput();

  void Write(std::string_view text) override;
  void Flush();

  // Writes everything, and waits until the user has left the pager.
  void Finish();

 private:
  void StartPagerWhenLong(std::string_view text);

  std::string buffer_;
  std::string pagerCommand_;                        // empty: nothing is paged
  std::size_t rowsLeft_ = 0;                        // of the terminal
  std::optional<system::FileDescriptor> messages_;  // standard error as it is at the start
  std::optional<Pager> pager_;
};

// Writes all of the text, and waits where it must. Result: 0, or the error's number.
int WriteAll(int descriptor, std::string_view text) noexcept;

}  // namespace tavrel::host
