// Opening the artwork of every song of a large library, and delivering images.
//
// A home folder is made with as many songs as cache files, and the library is loaded from it.
// Beside it, in the same run: trying every name for every song, which is what an index saves, and
// read(2) of the same bytes from the same files.
#include <dlfcn.h>
#include <fcntl.h>
#include <fmt/format.h>
#include <stdlib.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

#include "bench/artwork/ArtworkHome.h"
#include "bench/report/Benchmark.h"
#include "bench/report/Turns.h"
#include "bench/support/Clocks.h"
#include "tavrel/tavrel.h"

namespace tavrel::bench {
namespace {

constexpr int kOpenTogether = 16;

// The library, opened as a host opens it.
struct Library {
  explicit Library(const std::string& home) {
    setenv("HOME", home.c_str(), 1);
    handle = dlopen(TAVREL_LIBRARY_NAME, RTLD_NOW | RTLD_LOCAL);
    if (handle == nullptr) throw std::runtime_error(dlerror());
    Find("OpenAllSongs", openAllSongs);
    Find("CreateArtworkArray", createArtworkArray);
    Find("OpenArtwork", openArtwork);
    Find("GetArtworkInfo", getArtworkInfo);
    Find("CloseArtwork", closeArtwork);
  }
  Library(const Library&) = delete;
  Library& operator=(const Library&) = delete;
  ~Library() { dlclose(handle); }

  template <class Function>
  void Find(const char* name, Function& function) const {
    function = reinterpret_cast<Function>(dlsym(handle, name));
    if (function == nullptr) throw std::runtime_error(dlerror());
  }

  void* handle;
  decltype(&::OpenAllSongs) openAllSongs;
  std::int32_t (*createArtworkArray)();
  decltype(&::OpenArtwork) openArtwork;
  decltype(&::GetArtworkInfo) getArtworkInfo;
  decltype(&::CloseArtwork) closeArtwork;
};

// Seconds of opening every song's artwork.
double OpenAll(const Library& library, int songs) {
  PlaylistRecord* all = library.openAllSongs();
  return WallSecondsOf([&] {
    for (int song = 0; song < songs; ++song) {
      ArtworkHandle* handle = library.openArtwork(all, song);
      if (handle == nullptr) throw std::runtime_error("a song's artwork was not found");
      library.closeArtwork(handle);
    }
  });
}

// Seconds of opening the files themselves and reading what a reader has to: the floor.
double OpenFiles(const std::vector<std::string>& files) {
  char bytes[208];
  return WallSecondsOf([&] {
    for (const std::string& path : files) {
      const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
      if (read(file, bytes, 28) != 28 || pread(file, bytes, 208, 284) != 208) {
        throw std::runtime_error("a file cannot be read");
      }
      close(file);
    }
  });
}

// Seconds of finding the file of each of `songs` songs by a scan that compares the names as texts,
// which is less than a scan has to do.
double ScanNames(const std::vector<std::string>& files, int songs) {
  const double start = WallTime();
  std::size_t found = 0;
  for (int song = 0; song < songs; ++song) {
    const std::string id = TrackId(song);
    for (std::size_t i = 0; i < files.size(); ++i) {
      const std::string& path = files[i];
      if (path.compare(path.size() - 21, 16, id) != 0) continue;
      found += i + 1;
      break;
    }
  }
  if (found == 0) throw std::runtime_error("nothing was found");
  return WallTime() - start;
}

// GetArtworkInfo and read(2), each for all images that are open together.
std::vector<Step> DeliverySteps(const Library& library, ArtworkHandle* const* handles,
                                const int* descriptors, std::vector<std::uint8_t>& buffer) {
  const auto deliver = [=, &library, &buffer] {
    for (int i = 0; i < kOpenTogether; ++i) {
      ArtworkInfo info{0, 0, 0, buffer.data(), static_cast<std::int32_t>(buffer.size())};
      library.getArtworkInfo(handles[i], 0, &info);
    }
  };
  const auto readAll = [=, &buffer] {
    for (int i = 0; i < kOpenTogether; ++i) {
      lseek(descriptors[i], 284 + 208, SEEK_SET);
      if (read(descriptors[i], buffer.data(), buffer.size()) !=
          static_cast<ssize_t>(buffer.size())) {
        throw std::runtime_error("a file cannot be read");
      }
    }
  };
  return {{"GetArtworkInfo", [=] { return WallSecondsOf(deliver); }},
          {"read(2)", [=] { return WallSecondsOf(readAll); }}};
}

void MeasureOpening(int songs, std::uint32_t rounds, Report& report) {
  const ArtworkHome home(songs, 100);
  const Library library(home.path());
  const double catalogue = WallSecondsOf([&] { library.createArtworkArray(); });
  const double first = OpenAll(library, songs);
  std::vector<Step> steps = {
      {"opening all again, one song", [&] { return OpenAll(library, songs); }},
      {"open(2) and read(2) alone, one file", [&] { return OpenFiles(home.files()); }}};
  RunInTurns(steps, rounds);
  const int sample = std::min(songs, 500);
  const double scan = ScanNames(home.files(), sample) / sample * songs * (songs / (sample * 0.5));
  report.Section(fmt::format("{} songs", songs));
  report.Seconds("the catalogue", catalogue);
  report.Seconds("opening all for the first time, one song", first / songs);
  for (const Step& step : steps) report.Seconds(step.name, step.seconds.Times(1.0 / songs));
  report.Figure("  ours / open(2) and read(2)", "", steps[0].seconds.Over(steps[1].seconds));
  report.Seconds("all songs, if every name was tried (estimate)", scan);
}

void MeasureDelivery(std::size_t bytes, Report& report) {
  const ArtworkHome home(kOpenTogether, bytes);
  const Library library(home.path());
  ArtworkHandle* handles[kOpenTogether];
  int descriptors[kOpenTogether];
  for (int i = 0; i < kOpenTogether; ++i) {
    handles[i] = library.openArtwork(library.openAllSongs(), i);
    descriptors[i] = open(home.files()[static_cast<std::size_t>(i)].c_str(), O_RDONLY | O_CLOEXEC);
  }
  std::vector<std::uint8_t> buffer(bytes);
  std::vector<Step> steps = DeliverySteps(library, handles, descriptors, buffer);
  RunInTurns(steps, 200);
  for (ArtworkHandle* handle : handles) library.closeArtwork(handle);
  for (const int descriptor : descriptors) close(descriptor);

  report.Section(fmt::format("{} images of {} bytes", kOpenTogether, bytes));
  for (const Step& step : steps) report.Seconds(step.name, step.seconds);
  report.Figure("  ours / read(2)", "", steps[0].seconds.Over(steps[1].seconds));
}

void Measure(int songs, std::uint32_t rounds, Report& report) {
  MeasureOpening(songs / 10, rounds, report);
  MeasureOpening(songs, rounds, report);
  for (const std::size_t bytes : {4096U, 131072U, 4194304U}) MeasureDelivery(bytes, report);
}

}  // namespace
}  // namespace tavrel::bench

int main(int argc, char** argv) {
  using namespace tavrel::bench;
  std::uint32_t songs = 100000;
  Benchmark benchmark("artwork", "Measures the artwork functions.", 5);
  benchmark.arguments().Number("--songs", songs, "Songs and cache files of the largest library",
                               1600, 1000000);
  return benchmark.Run(argc, argv, [&](Report& report) {
    Measure(static_cast<int>(songs), benchmark.rounds(), report);
  });
}
