// A home folder of the test's own, removed with the object.
#pragma once

#include <string>
#include <string_view>

namespace tavrel::test {

class TemporaryHome {
 public:
  // Makes a folder with "Music/iTunes" in it. `name` is the last component of the home's path, any
  // bytes but '/' and NUL.
  explicit TemporaryHome(std::string_view name = "home");
  TemporaryHome(const TemporaryHome&) = delete;
  TemporaryHome& operator=(const TemporaryHome&) = delete;
  ~TemporaryHome();

  [[nodiscard]] const std::string& path() const { return path_; }
  // The folder that the home stands in, of this object's own too.
  [[nodiscard]] const std::string& parent() const { return parent_; }
  [[nodiscard]] std::string LibraryFile() const;

  void WriteLibrary(std::string_view text) const;

 private:
  std::string parent_;
  std::string path_;
};

void WriteFile(const std::string& path, std::string_view bytes);

}  // namespace tavrel::test
