// A file that appears whole or not at all: written under a temporary name and renamed at the end.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tavrel::bench {

class OutputFile {
 public:
  // `path` "-" is standard output. A device or a pipe is written straight to, without a temporary
  // name. Throws std::system_error, like everything below.
  explicit OutputFile(const std::string& path);
  // Removes what was written, unless Commit was reached.
  ~OutputFile();
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  void Write(std::string_view bytes);
  void Commit();

  std::uint64_t BytesWritten() const noexcept { return bytesWritten; }

 private:
  std::string target;
  std::string temporary;  // empty when `target` is written straight to
  int descriptor = -1;
  std::uint64_t bytesWritten = 0;
};

}  // namespace tavrel::bench
