#include "tests/host/Fixture.h"

#include <stdlib.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace tavrel::test {

std::string Property(std::string_view key, std::string_view text) {
  return "<key>" + std::string(key) + "</key><string>" + std::string(text) + "</string>\n";
}

std::string Number(std::string_view key, long long number) {
  return "<key>" + std::string(key) + "</key><integer>" + std::to_string(number) + "</integer>\n";
}

std::string LibraryText(const std::vector<TrackText>& tracks,
                        const std::vector<PlaylistText>& playlists) {
  std::string text =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">\n<dict>\n"
      "<key>Tracks</key>\n<dict>\n";
  for (const TrackText& track : tracks) {
    const std::string id = std::to_string(track.id);
    text += "<key>" + id + "</key>\n<dict>\n" + Number("Track ID", track.id) + track.properties +
            "</dict>\n";
  }
  text += "</dict>\n<key>Playlists</key>\n<array>\n";
  for (const PlaylistText& playlist : playlists) {
    text += "<dict>\n" + playlist.properties + "<key>Playlist Items</key>\n<array>\n";
    for (const int item : playlist.items) text += "<dict>" + Number("Track ID", item) + "</dict>\n";
    text += "</array>\n</dict>\n";
  }
  return text + "</array>\n</dict>\n</plist>\n";
}

std::string LibraryWithName(std::string_view name) {
  return LibraryText({{1, Property("Name", name)}});
}

HostTest::HostTest() {
  std::string pattern = std::filesystem::temp_directory_path() / "tavrel-test-XXXXXX";
  if (::mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no temporary folder");
  folder_ = std::filesystem::canonical(pattern);
  std::filesystem::create_directories(Path("empty home"));
  std::filesystem::create_directories(Path("temporary"));
}

HostTest::~HostTest() {
  std::error_code ignored;
  std::filesystem::remove_all(folder_, ignored);
}

std::string HostTest::Write(const std::string& name, std::string_view text) const {
  const std::filesystem::path path = Path(name);
  std::filesystem::create_directories(path.parent_path());
  std::ofstream(path, std::ios::binary) << text;
  return path;
}

Command HostTest::CommandFor(const std::string& program, const std::vector<std::string>& arguments,
                             Command command) const {
  command.arguments = arguments;
  command.arguments.insert(command.arguments.begin(), program);
  // What the test itself has asked for stays.
  command.environment.insert({{"HOME", Path("empty home")},
                              {"TMPDIR", Path("temporary")},
                              {"COLUMNS", std::nullopt},
                              {"NO_COLOR", std::nullopt},
                              {"PAGER", ""},
                              {"TAVREL_LIBRARY", std::nullopt},
                              {"TERM", "xterm"}});
  return command;
}

Outcome HostTest::Run(const std::vector<std::string>& arguments) const {
  return Run(arguments, Command{});
}

Outcome HostTest::Run(const std::vector<std::string>& arguments, Command command) const {
  return RunProgram(CommandFor(TAVREL_HOST_PROGRAM, arguments, std::move(command)));
}

std::vector<std::string> HostTest::TemporaryFiles() const {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(Path("temporary"))) {
    names.push_back(entry.path().filename());
  }
  return names;
}

std::vector<std::string> Lines(std::string_view text) {
  std::vector<std::string> lines;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    lines.emplace_back(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return lines;
}

std::string FileBytes(const std::string& path) {
  std::ostringstream bytes;
  bytes << std::ifstream(path, std::ios::binary).rdbuf();
  return bytes.str();
}

std::vector<std::string> FolderNames(const std::string& folder) {
  std::vector<std::string> names;
  std::error_code ignored;
  for (const auto& entry : std::filesystem::directory_iterator(folder, ignored)) {
    names.push_back(entry.path().filename());
  }
  std::sort(names.begin(), names.end());
  return names;
}

}  // namespace tavrel::test
