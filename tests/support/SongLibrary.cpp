#include "tests/support/SongLibrary.h"

#include "agent/Exports.h"
#include "library/search/PlainSearch.h"
#include "library/tracks/TrackTable.h"

namespace tavrel::test {
namespace {

constexpr std::string_view kLibraryFile = "Music/iTunes/iTunes Music Library.xml";
constexpr std::string_view kRingtones = "Music/iTunes/iTunes Media/Ringtones/";

void AppendText(std::string& xml, const char* key, const Text& text) {
  if (text) xml.append("<key>").append(key).append("</key><string>").append(*text) += "</string>";
}

std::string Tracks(const std::vector<LibraryTrack>& tracks) {
  std::string xml;
  for (const LibraryTrack& track : tracks) xml += TrackXml(track);
  return xml;
}

struct Listener {
  const InCallback& inCallback;
  std::vector<Call> calls;
};

std::int32_t Listen(PlaylistRecord* playlist, std::int32_t index, void* context) {
  auto& listener = *static_cast<Listener*>(context);
  listener.calls.push_back({playlist, index});
  return listener.inCallback ? listener.inCallback(listener.calls.size() - 1) : 1;
}

// The text behind the time, the program's name and its number, line by line.
std::string WithoutPrefixes(const std::string& log) {
  std::string messages;
  for (std::size_t at = 0; at < log.size();) {
    const std::size_t end = std::min(log.find('\n', at), log.size());
    const std::size_t message = std::min(log.find("] ", at), end);
    messages.append(log, message, end - message) += '\n';
    at = end + 1;
  }
  return messages;
}

template <class Function>
Heard HearFrom(const Terms& terms, const InCallback& inCallback, Function&& search) {
  const auto pointer = [](const Text& text) {
    return text ? const_cast<char*>(text->c_str()) : nullptr;
  };
  SongInfo info = {};
  info.name = pointer(terms.name);
  info.artist = pointer(terms.artist);
  info.album = pointer(terms.album);
  Listener listener{inCallback, {}};
  testing::internal::CaptureStderr();
  const std::int32_t count = search(info, &listener);
  return {count, listener.calls, WithoutPrefixes(testing::internal::GetCapturedStderr())};
}

}  // namespace

std::string TrackXml(const LibraryTrack& track) {
  const std::string id = std::to_string(track.id);
  std::string xml = "<key>" + id;
  xml.append("</key><dict><key>Track ID</key><integer>").append(id) += "</integer>";
  AppendText(xml, "Name", track.name);
  AppendText(xml, "Artist", track.artist);
  AppendText(xml, "Album", track.album);
  xml += "<key>Kind</key><string>file</string></dict>\n";
  return xml;
}

std::string LibraryXml(std::string_view tracks, const std::vector<LibraryPlaylist>& playlists) {
  std::string xml = "<plist><dict><key>Tracks</key><dict>";
  xml.append(tracks) += "</dict><key>Playlists</key><array>\n";
  for (const LibraryPlaylist& playlist : playlists) {
    xml += "<dict><key>Name</key><string>a playlist</string>";
    if (playlist.kind != 0) {
      xml.append("<key>Distinguished Kind</key><integer>").append(std::to_string(playlist.kind)) +=
          "</integer>";
    }
    xml += "<key>Playlist Items</key><array>";
    for (const std::int32_t item : playlist.items) {
      xml.append("<dict><key>Track ID</key><integer>").append(std::to_string(item)) +=
          "</integer></dict>";
    }
    xml += "</array></dict>\n";
  }
  return xml += "</array></dict></plist>\n";
}

SongLibrary::SongLibrary(std::string_view xml, const std::vector<std::string>& ringtones)
    : variable_("HOME", home_.path().c_str()) {
  home_.Write(kLibraryFile, xml);
  for (const std::string& ringtone : ringtones) {
    home_.Write(std::string(kRingtones).append(ringtone), "");
  }
  EXPECT_EQ(AgentInitializer(), 0);
}

SongLibrary::SongLibrary(const std::vector<LibraryTrack>& tracks,
                         const std::vector<LibraryPlaylist>& playlists,
                         const std::vector<std::string>& ringtones)
    : SongLibrary(LibraryXml(Tracks(tracks), playlists), ringtones) {}

Heard Search(const Terms& terms, const InCallback& inCallback) {
  return HearFrom(terms, inCallback, [](const SongInfo& info, void* context) {
    return SearchSong(&info, Listen, context);
  });
}

Heard SearchInPlainForm(const Terms& terms, const InCallback& inCallback) {
  return HearFrom(terms, inCallback, [](const SongInfo& info, void* context) {
    return SearchPlainly(g_pGlobal, TrackDictionary(g_pGlobal->document), info, Listen, context);
  });
}

std::vector<std::size_t> Placed(const Heard& heard) {
  std::vector<std::size_t> numbers;
  for (std::size_t i = 0; i < heard.calls.size(); ++i) {
    if (heard.calls[i].playlist != nullptr) numbers.push_back(i);
  }
  return numbers;
}

}  // namespace tavrel::test
