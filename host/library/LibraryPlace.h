// Where the library is: what the user's options, or the lack of them, come to.
#pragma once

#include <optional>
#include <string>

#include "host/library/LinkedHome.h"
#include "host/library/Options.h"
#include "host/output/Failure.h"

namespace tavrel::host {

// The library's place. Temporary files that it takes to have it read there are removed with the object.
//
//   nothing, or --home DIR           DIR/Music/iTunes/iTunes Music Library.xml, where it lies
//   nothing, where that is missing   the newest library file of the home folder, through links
//   a file                           through links
//   a folder                         the newest library file in it, through links
//   a compressed file, or "-"        a copy in a temporary folder, inflated
class LibraryPlace {
 public:
  // What is missing or cannot be used is said by WhyNotLoaded() later, so that commands that need no
  // library run without one. What cannot be copied is a Failure.
  explicit LibraryPlace(const Options& options);

  // The library file as the user named the place; for standard input kStandardInput.
  [[nodiscard]] const std::string& Path() const noexcept { return path_; }

  // The file that the library reads.
  [[nodiscard]] std::string File() const { return IsLinked() ? linked_->LibraryFile() : path_; }

  // The folder to tell the library, an absolute path; none for the user's own.
  [[nodiscard]] const std::optional<std::string>& Home() const noexcept { return home_; }

  // Whether that is a folder of links, beside which the user's files lie in truth.
  [[nodiscard]] bool IsLinked() const noexcept { return linked_.has_value(); }

  // What the user should know: which of several files is read; empty when there is nothing.
  [[nodiscard]] const std::string& Note() const noexcept { return note_; }

  // Why the library, which has refused the file, could not read it.
  [[nodiscard]] Failure WhyNotLoaded() const;

 private:
  void UseHome(const std::optional<std::string>& chosen);
  void UseFolder(const std::string& folder);
  void UseFile(const std::string& file);
  void UseStandardInput();
  void Copy(int from);

  std::string path_;
  std::optional<std::string> home_;
  std::optional<std::string> searched_;  // a folder in which there is no library file
  std::optional<LinkedHome> linked_;
  std::string note_;
};

}  // namespace tavrel::host
