// A folder that this program has for itself for a while.
#pragma once

#include <sys/stat.h>

#include <optional>
#include <string>
#include <vector>

#include "system/Files.h"

namespace tavrel::host {

// An empty folder below $TMPDIR, or the system's folder for temporary files, that its owner alone may
// enter. It is removed, with what was made in it through this object and nothing else, when the object
// goes, or when one of system::kEndingSignals ends the program (one that the program was started to ignore
// stays ignored). One at a time.
//
// Others may be able to write to the folder around it: what they put in its place is neither followed nor
// removed.
class PrivateFolder {
 public:
  // A folder that cannot be made is a Failure, which says so and what to do, and so below.
  PrivateFolder();
  PrivateFolder(const PrivateFolder&) = delete;
  PrivateFolder& operator=(const PrivateFolder&) = delete;
  ~PrivateFolder();

  // An absolute path.
  [[nodiscard]] const std::string& Path() const noexcept { return path_; }

  // name: the path in this folder of what is made, below a folder that was made here.
  void MakeFolder(const std::string& name);
  void MakeLink(const std::string& name, const std::string& target);
  // A new file that its owner alone may open; open for writing.
  [[nodiscard]] system::FileDescriptor MakeFile(const std::string& name);

 private:
  struct Entry {
    std::string name;
    int removal;  // how unlinkat() removes it
  };

  friend void RemoveActiveFolder() noexcept;
  void MakeUnderFreeName();
  [[nodiscard]] std::string OpenWhatWasMade();  // why it failed; empty when it did not
  // make(): makes the entry; false when it could not, and errno says why.
  template <typename Make>
  void Add(const std::string& name, int removal, Make make);
  // Whether the folder still stands where it was made, unless something else is seen there. Only calls
  // that a signal handler may make, and so in Remove().
  [[nodiscard]] bool IsInPlace() const noexcept;
  void Remove() const noexcept;
  void Release() noexcept;
  [[noreturn]] void Fail(const std::string& reason) const;

  std::string parentPath_;
  std::string name_;
  std::string path_;
  system::FileDescriptor parent_;
  std::optional<system::FileDescriptor> folder_;
  struct stat identity_ = {};   // the folder's
  std::vector<Entry> entries_;  // in the order in which they were made
};

}  // namespace tavrel::host
