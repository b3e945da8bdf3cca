#include "bench/generator/GeneratedTracks.h"

#include <string>
#include <string_view>

#include "bench/generator/Album.h"
#include "bench/generator/Texts.h"
#include "bench/support/Random.h"

namespace tavrel::bench {
namespace {

constexpr std::uint64_t albumFamily = 2;
constexpr std::uint32_t firstTrackId = 1201;
// From the start of 1904, where the integer "Play Date" counts from, to the start of 1970.
constexpr std::uint64_t secondsFrom1904 = 2082844800;

enum class Origin : std::uint8_t { File, Remote, Stream };

struct Track {
  std::uint32_t id;
  std::uint32_t number;  // on the album, from 1
  Origin origin;
  std::string name;
  std::string artist;
};

Origin PickOrigin(Random& random) noexcept {
  const std::uint32_t draw = random.Below(1000);
  if (draw < 10) return Origin::Remote;
  return draw < 13 ? Origin::Stream : Origin::File;
}

void WriteNames(PlistWriter& writer, const Album& album, const Track& track, Random& random) {
  writer.Integer("Track ID", track.id);
  writer.String("Name", track.name);
  if (!random.Chance(10)) writer.String("Artist", track.artist);
  if (album.compilation) {
    writer.String("Album Artist", "Various Artists");
  } else if (random.Chance(700)) {
    writer.String("Album Artist", album.artist);
  }
  if (!album.composer.empty()) writer.String("Composer", album.composer);
  if (!random.Chance(20)) writer.String("Album", album.title);
  if (!random.Chance(40)) writer.String("Genre", album.genre);
  writer.String("Kind",
                track.origin == Origin::Stream ? "Internet audio stream" : album.format->kind);
}

void WriteNumbers(PlistWriter& writer, const Album& album, const Track& track, Random& random) {
  const std::uint64_t seconds =
      album.format->movie ? random.Between(4000, 9000) : random.Between(95, 520);
  writer.Integer("Size", seconds * album.format->bitRate * 125 + random.Below(200000));
  writer.Integer("Total Time", seconds * 1000 + random.Below(1000));
  if (album.hasDiscNumber) {
    writer.Integer("Disc Number", 1);
    writer.Integer("Disc Count", 1);
  }
  writer.Integer("Track Number", track.number);
  if (album.hasTrackCount) writer.Integer("Track Count", album.trackCount);
  if (!random.Chance(60)) writer.Integer("Year", album.year);
  writer.Date("Date Modified", album.added + random.Below(20000000));
  writer.Date("Date Added", album.added + track.number);
  writer.Integer("Bit Rate", album.format->bitRate);
  writer.Integer("Sample Rate", random.Chance(50) ? 48000 : 44100);
  if (random.Chance(80)) writer.String("Comments", MakeComment(random));
}

void WriteHistory(PlistWriter& writer, const Album& album, Random& random) {
  if (random.Chance(400)) {
    const std::uint64_t played = album.added + random.Below(30000000);
    writer.Integer("Play Count", 1 + random.LowBelow(90));
    writer.Integer("Play Date", played + secondsFrom1904);
    writer.Date("Play Date UTC", played);
  }
  if (random.Chance(120)) {
    writer.Integer("Skip Count", 1 + random.LowBelow(9));
    writer.Date("Skip Date", album.added + random.Below(30000000));
  }
  if (random.Chance(180)) writer.Integer("Rating", 20 * random.Between(1, 5));
  if (album.compilation) writer.Boolean("Compilation", true);
  if (album.hasArtwork) writer.Integer("Artwork Count", 1);
}

void WriteSortForms(PlistWriter& writer, const Album& album, const Track& track, Random& random) {
  const bool always = random.Chance(80);  // shops write them also where they change nothing
  const auto write = [&](std::string_view key, std::string_view text) {
    const std::string_view form = SortForm(text);
    if (always || form.size() != text.size()) writer.String(key, form);
  };
  write("Sort Album", album.title);
  write("Sort Artist", track.artist);
  write("Sort Name", track.name);
}

std::string FileNameOf(const Album& album, const Track& track) {
  std::string name = track.number < 10 ? "0" : "";
  name += std::to_string(track.number);
  name += ' ';
  name += FileName(track.name);
  name += album.format->extension;
  return name;
}

void WriteFile(PlistWriter& writer, const Album& album, const Track& track, Random& random) {
  writer.PersistentId("Persistent ID", random.Next());
  switch (track.origin) {
    case Origin::Remote:
      writer.String("Track Type", "Remote");
      return;
    case Origin::Stream:
      writer.String("Track Type", "URL");
      writer.String("Location", "http://stream.example.org:8000/" + std::to_string(track.id));
      return;
    case Origin::File:
      break;
  }
  writer.String("Track Type", "File");
  if (album.format->isProtected) writer.Boolean("Protected", true);
  if (album.format->purchased) writer.Boolean("Purchased", true);
  if (album.format->movie) {
    writer.Boolean("Has Video", true);
    writer.Boolean("HD", false);
    writer.Integer("Video Width", 853);
    writer.Integer("Video Height", 480);
    writer.Boolean("Movie", true);
  }
  writer.String("Location", album.folder + EncodePath(FileNameOf(album, track)));
  writer.Integer("File Folder Count", album.format->movie ? 4 : 5);
  writer.Integer("Library Folder Count", 1);
}

void WriteTrack(PlistWriter& writer, const Album& album, const Track& track, Random& random) {
  writer.Key(std::to_string(track.id));
  writer.Begin("dict");
  WriteNames(writer, album, track, random);
  WriteNumbers(writer, album, track, random);
  WriteHistory(writer, album, random);
  WriteSortForms(writer, album, track, random);
  WriteFile(writer, album, track, random);
  writer.End("dict");
}

// Tracks are numbered in steps of three; larger gaps are left by tracks that were deleted.
std::uint32_t NextTrackId(std::uint32_t id, Random& random) noexcept {
  return id + (random.Chance(30) ? random.Between(4, 60) : 3);
}

}  // namespace

TrackList WriteTracks(PlistWriter& writer, std::uint32_t trackCount, std::uint64_t seed) {
  const ArtistPool artists(trackCount, seed);
  TrackList tracks;
  tracks.ids.reserve(trackCount);
  std::uint32_t id = firstTrackId;

  writer.Key("Tracks");
  writer.Begin("dict");
  for (std::uint32_t number = 0; tracks.ids.size() < trackCount; ++number) {
    Random random(SeedOf(seed, albumFamily, number));
    const Album album = MakeAlbum(number, artists, random);
    tracks.albumStarts.push_back(static_cast<std::uint32_t>(tracks.ids.size()));
    for (std::uint32_t i = 1; i <= album.trackCount && tracks.ids.size() < trackCount; ++i) {
      Track track{};
      track.id = id;
      track.number = i;
      track.origin = PickOrigin(random);
      track.name = MakeTitle(album.script, 1, 3, random);
      track.artist = album.compilation ? artists.Pick(album.script, random) : album.artist;
      WriteTrack(writer, album, track, random);
      tracks.ids.push_back(id);
      id = NextTrackId(id, random);
    }
  }
  writer.End("dict");
  return tracks;
}

}  // namespace tavrel::bench
