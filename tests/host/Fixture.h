// What the host's tests share: a temporary folder, small library files, and runs of the built
// program.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "tests/support/ChildProcess.h"

namespace tavrel::test {

// A track or a playlist as it stands in a library file; the texts are written as they are.
struct TrackText {
  int id = 0;
  std::string properties;  // "<key>Name</key><string>Nimrod</string>..."
};

struct PlaylistText {
  std::string properties;
  std::vector<int> items;
};

[[nodiscard]] std::string Property(std::string_view key, std::string_view text);
[[nodiscard]] std::string Number(std::string_view key, long long number);
[[nodiscard]] std::string LibraryText(const std::vector<TrackText>& tracks,
                                      const std::vector<PlaylistText>& playlists = {});

// One track with this name, in no playlist.
[[nodiscard]] std::string LibraryWithName(std::string_view name);

class HostTest : public testing::Test {
 protected:
  HostTest();
  ~HostTest() override;

  // A path in this test's own folder.
  [[nodiscard]] std::string Path(const std::string& name) const { return folder_ + "/" + name; }

  // Writes a file there, its folders included. Result: its path.
  std::string Write(const std::string& name, std::string_view text) const;

  // Runs the built program. Its environment has no variable that changes what it prints, its $HOME
  // is an empty folder, and its temporary files are below this test's folder.
  [[nodiscard]] Outcome Run(const std::vector<std::string>& arguments) const;
  [[nodiscard]] Outcome Run(const std::vector<std::string>& arguments, Command command) const;
  [[nodiscard]] Command CommandFor(const std::string& program,
                                   const std::vector<std::string>& arguments,
                                   Command command = {}) const;

  // What is left in the folder for temporary files.
  [[nodiscard]] std::vector<std::string> TemporaryFiles() const;

 private:
  std::string folder_;
};

// The lines of a text, without their ends.
[[nodiscard]] std::vector<std::string> Lines(std::string_view text);

// All that a file holds; nothing when it cannot be read.
[[nodiscard]] std::string FileBytes(const std::string& path);

// The names of what a folder holds, sorted; none when there is no such folder.
[[nodiscard]] std::vector<std::string> FolderNames(const std::string& folder);

}  // namespace tavrel::test
