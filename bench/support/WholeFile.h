// Reading a whole file as the measured programs do that do not read for themselves.
#pragma once

#include <cstddef>
#include <cstdlib>
#include <memory>
#include <string>

namespace tavrel::bench {

class WholeFile {
 public:
  // Opens the file. Throws std::system_error.
  explicit WholeFile(const std::string& path);
  ~WholeFile();
  WholeFile(const WholeFile&) = delete;
  WholeFile& operator=(const WholeFile&) = delete;

  [[nodiscard]] std::size_t size() const noexcept { return size_; }
  // Reads all of it. Throws std::runtime_error.
  void ReadInto(char* buffer) const;

 private:
  int descriptor_;
  std::size_t size_ = 0;
};

struct FreedBuffer {
  void operator()(char* memory) const noexcept { std::free(memory); }
};
using Buffer = std::unique_ptr<char, FreedBuffer>;

// The file's bytes, with a zero byte behind them, in memory of malloc().
[[nodiscard]] Buffer ReadWholeFile(const std::string& path, std::size_t& size);

// The same for a file that is not read while anything is measured. Throws also when it is empty.
[[nodiscard]] std::string ContentsOf(const std::string& path);

}  // namespace tavrel::bench
