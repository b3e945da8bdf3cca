#include "tests/support/LibraryTexts.h"

namespace tavrel::test {

namespace {

std::string Pair(std::string_view key, std::string_view value) {
  std::string pair = "\t\t\t<key>";
  pair.append(key).append("</key>").append(value).append("\n");
  return pair;
}

std::string Element(std::string_view name, std::string_view text) {
  std::string element = "<";
  element.append(name).append(">").append(text).append("</").append(name).append(">");
  return element;
}

std::string MusicTracks() {
  return Track(101, TextPair("Name", "Gymnop&#233;die No. 1") + TextPair("Artist", "Erik Satie") +
                        TextPair("Album", "Gymnop\u00e9dies") + TextPair("Genre", "Classical") +
                        IntegerPair("Total Time", 191000) + IntegerPair("Track Number", 1) +
                        IntegerPair("Play Count", 12) +
                        TextPair("Persistent ID", "00000000000000FF") +
                        TextPair("Location", "file:///Users/x/Music/A%20B.mp3")) +
         Track(103, TextPair("Name", "Rock &#38; Roll") + TextPair("Artist", "AC&amp;DC") +
                        TextPair("Location", "file://localhost/Users/x/Caf%C3%A9.m4a"));
}

std::string OtherTracks() {
  return Track(105, TextPair("Name", "\u5e7b\u60f3\u5373\u8208\u66f2") +
                        TextPair("Location", "http://radio.example/stream?quality=high")) +
         Track(107, TextPair("Name", "A Trip to the Moon") + BooleanPair("Movie", true) +
                        IntegerPair("Total Time", 780000)) +
         Track(109);
}

}  // namespace

std::string TextPair(std::string_view key, std::string_view text) {
  return Pair(key, Element("string", text));
}

std::string IntegerPair(std::string_view key, long long value) {
  return Pair(key, Element("integer", std::to_string(value)));
}

std::string BooleanPair(std::string_view key, bool value) {
  return Pair(key, value ? "<true/>" : "<false/>");
}

std::string Track(int id, std::string_view pairs) {
  std::string track = "\t\t<key>" + std::to_string(id) + "</key>\n\t\t<dict>\n";
  return track.append(IntegerPair("Track ID", id)).append(pairs).append("\t\t</dict>\n");
}

std::string PlaylistItem(int id) {
  return "\t\t\t\t<dict>\n\t\t\t\t\t<key>Track ID</key><integer>" + std::to_string(id) +
         "</integer>\n\t\t\t\t</dict>\n";
}

std::string Playlist(std::string_view pairs, std::initializer_list<int> ids) {
  std::string playlist = "\t\t<dict>\n";
  playlist.append(pairs);
  if (ids.size() > 0) {
    playlist += "\t\t\t<key>Playlist Items</key>\n\t\t\t<array>\n";
    for (const int id : ids) playlist += PlaylistItem(id);
    playlist += "\t\t\t</array>\n";
  }
  return playlist + "\t\t</dict>\n";
}

std::string LibraryText(const LibraryParts& parts) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
         "<!DOCTYPE plist PUBLIC \"-//Apple Computer//DTD PLIST 1.0//EN\" "
         "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
         "<plist version=\"1.0\">\n<dict>\n"
         "\t<key>Major Version</key><integer>1</integer>\n"
         "\t<key>Show Content Ratings</key><true/>\n" +
         parts.topPairs + "\t<key>Tracks</key>\n\t<dict>\n" + parts.tracks +
         "\t</dict>\n\t<key>Playlists</key>\n\t<array>\n" + parts.playlists +
         "\t</array>\n</dict>\n</plist>\n";
}

std::string SmallLibraryText() {
  const auto named = [](std::string_view name) { return TextPair("Name", name); };
  const auto ofKind = [](int kind) { return IntegerPair("Distinguished Kind", kind); };
  return LibraryText(
      {MusicTracks() + OtherTracks(),
       Playlist(named("Library") + BooleanPair("Master", true) + BooleanPair("Visible", false),
                {101, 103, 105, 107, 109}) +
           Playlist(named("Music") + ofKind(4) + BooleanPair("Music", true), {101, 103, 105}) +
           Playlist(named("Movies") + ofKind(2), {107}) + Playlist(named("Genius") + ofKind(26)) +
           Playlist(named("Rock &amp; Roll") + BooleanPair("Visible", true), {103, 101, 103}) +
           Playlist(named("Lost"), {102, 109, 1000}) + Playlist(named("Podcasts") + ofKind(10))});
}

}  // namespace tavrel::test
