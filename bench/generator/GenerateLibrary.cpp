// generate_library: writes a library file of any size, the same one for the same arguments.
#include <fmt/format.h>

#include <cstdint>
#include <cstdio>
#include <string>

#include "bench/generator/GeneratedPlaylists.h"
#include "bench/generator/GeneratedTracks.h"
#include "bench/generator/OutputFile.h"
#include "bench/generator/PlistWriter.h"
#include "bench/report/Arguments.h"
#include "bench/support/Clocks.h"
#include "bench/support/Random.h"

namespace {

using namespace tavrel::bench;

constexpr std::uint32_t kMostTracks = 10'000'000;
constexpr std::uint64_t kLibraryFamily = 7;

constexpr char kFooter[] =
    "The same arguments give the same bytes on every machine.\n"
    "\n"
    "Examples:\n"
    "  generate_library --tracks 100000 -o library.xml\n"
    "  generate_library --tracks 10000 --seed 7 -o - | gzip > library.xml.gz\n"
    "\n"
    "Words that many names, artists and albums hold, one to a way of writing:\n"
    "  \"love\" (ASCII), \"corazón\" (accented, composed and decomposed), \"любовь\", \"愛\"";

struct Options {
  std::uint32_t tracks = 0;
  std::uint64_t seed = 1;
  std::string path;
};

void WriteLibraryHead(PlistWriter& writer, std::uint64_t seed) {
  writer.Integer("Major Version", 1);
  writer.Integer("Minor Version", 1);
  writer.Date("Date", 1372636800);
  writer.String("Application Version", "11.0.4");
  writer.Integer("Features", 5);
  writer.Boolean("Show Content Ratings", true);
  writer.String("Music Folder", "file://localhost/Users/user/Music/iTunes/iTunes%20Media/");
  writer.PersistentId("Library Persistent ID", SeedOf(seed, kLibraryFamily, 0));
}

void Generate(const Options& options) {
  const double start = WallTime();
  OutputFile file(options.path);
  PlistWriter writer(file);
  writer.Begin("dict");
  WriteLibraryHead(writer, options.seed);
  const TrackList tracks = WriteTracks(writer, options.tracks, options.seed);
  const PlaylistCounts counts = WritePlaylists(writer, tracks, options.seed);
  writer.End("dict");
  writer.Finish();
  file.Commit();
  fmt::print(stderr, "{} tracks, {} playlists, {} items, {} bytes, {:.2f} s\n", tracks.ids.size(),
             counts.playlists, counts.items, file.BytesWritten(), WallTime() - start);
}

}  // namespace

int main(int argc, char** argv) {
  Options options;
  Arguments arguments("generate_library",
                      "Writes a library file in the layout of iTunes, filled with made-up music.");
  arguments.Explain(kFooter);
  arguments.Number("--tracks", options.tracks, "Number of tracks", 0, kMostTracks);
  arguments.Require();
  arguments.Number("--seed", options.seed, "Another number gives another library");
  arguments.Text("-o,--output", options.path, "File to write; - is standard output");
  arguments.Require();
  return arguments.Run(argc, argv, [&] { Generate(options); });
}
