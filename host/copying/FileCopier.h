// One file made out of another, whole or not at all.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "host/output/NewFile.h"

namespace tavrel::host {

enum class CopyEnd {
  Copied,
  Linked,
  Left,     // it is there already
  Differs,  // something else has the name, and is to be kept
};

struct CopyOptions {
  bool byLinks = false;  // a second name for the same file, where the disk can have one
  bool force = false;    // replace what differs
};

// A copy has the bytes and the times of its source. It is made under a temporary name. The disk is told to keep
// what was written, and what it then has is read again and compared, byte by byte; where the file system makes
// two files share their blocks nothing was written, and nothing is compared.
//
// A file that is there already is the same when it has the size and the time to two seconds, which is how
// exactly some file systems keep it; or else the size and the bytes, and gets the time then.
class FileCopier {
 public:
  // onBytes: told how many bytes were written since it was last told.
  FileCopier(CopyOptions options, std::function<void(std::uint64_t)> onBytes)
      : options_(options), onBytes_(std::move(onBytes)) {}

  // Whether Copy() would write, as far as sizes and times tell.
  [[nodiscard]] static bool Foresee(const std::string& source, const std::string& target,
                                    bool force) noexcept;

  // The target's folder has to be there. A source that cannot be read, or that changes meanwhile, is a Failure,
  // a target that cannot be written a WriteFailure; when a signal waits that is to end the program, that is a
  // Failure without a message, within a megabyte.
  // Cost: that of writing the file once and reading it twice; two looks at one that is there.
  [[nodiscard]] CopyEnd Copy(const std::string& source, const std::string& target);

  // Why the first link was refused in whose place there is a copy; empty while none was.
  [[nodiscard]] const std::string& WhyNotLinked() const noexcept { return whyNotLinked_; }

 private:
  [[nodiscard]] bool Link(const std::string& source, NewFile& file);
  void Fill(const std::string& source, const std::string& target, NewFile& file);
  // How many bytes were written: fewer than asked for when there are no more.
  [[nodiscard]] std::uint64_t Write(int from, std::uint64_t size, const std::string& target,
                                    NewFile& file);
  // How many bytes were written; 0 when the system does not copy between these files.
  [[nodiscard]] std::uint64_t WriteInSystem(int from, std::uint64_t at, std::uint64_t size,
                                            const std::string& target, NewFile& file);
  [[nodiscard]] std::uint64_t WritePiece(int from, std::uint64_t at, const std::string& target,
                                         NewFile& file);

  CopyOptions options_;
  std::function<void(std::uint64_t)> onBytes_;
  std::string whyNotLinked_;
  std::string buffer_;
};

}  // namespace tavrel::host
