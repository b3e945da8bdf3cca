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

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "bench/report/Machine.h"
#include "bench/report/Program.h"
#include "bench/support/ChildRun.h"
#include "tavrel/tavrel.h"

namespace tavrel::bench {
namespace {

constexpr const char* kLibraryId = "0A1B2C3D4E5F6071";
constexpr int kOpenTogether = 16;

std::string TrackId(int song) {
  return fmt::format("{:016X}", static_cast<std::uint64_t>(song) * 0x9E3779B97F4A7C15U);
}

std::string Number(std::size_t value) {
  std::string bytes;
  for (int shift = 24; shift >= 0; shift -= 8) bytes += static_cast<char>(value >> shift & 0xFF);
  return bytes;
}

// A cache file of one image.
std::string CacheFile(std::size_t imageBytes) {
  std::string header = Number(284) + "itch";
  header.resize(284);
  std::string block = Number(208 + imageBytes) + "item" + Number(208);
  block.resize(208 + imageBytes, '\x5A');
  block.replace(48, 4, "PNGf");
  block.replace(204, 4, "data");
  return header + block;
}

// A home folder with everything in it, removed with the object.
class ArtworkHome {
 public:
  ArtworkHome(int songs, std::size_t imageBytes) {
    path_ = (std::filesystem::temp_directory_path() / "artwork.XXXXXX").string();
    if (mkdtemp(path_.data()) == nullptr) throw std::runtime_error("no temporary folder");
    const std::filesystem::path folder = std::filesystem::path(path_) / "Music" / "iTunes";
    std::filesystem::create_directories(folder);
    WriteLibrary((folder / "iTunes Music Library.xml").string(), songs);
    const std::string content = CacheFile(imageBytes);
    for (int song = 0; song < songs; ++song) {
      const auto sub = folder / "Album Artwork" / "Cache" / fmt::format("{:02}", song % 100);
      if (song < 100) std::filesystem::create_directories(sub);
      files_.push_back((sub / fmt::format("{}-{}.itc2", kLibraryId, TrackId(song))).string());
      std::ofstream(files_.back(), std::ios::binary) << content;
    }
  }
  ArtworkHome(const ArtworkHome&) = delete;
  ArtworkHome& operator=(const ArtworkHome&) = delete;
  ~ArtworkHome() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }

  [[nodiscard]] const std::string& path() const { return path_; }
  [[nodiscard]] const std::vector<std::string>& files() const { return files_; }

 private:
  static void WriteLibrary(const std::string& path, int songs) {
    std::ofstream file(path, std::ios::binary);
    file << "<plist><dict><key>Library Persistent ID</key><string>" << kLibraryId
         << "</string><key>Tracks</key><dict>\n";
    for (int song = 0; song < songs; ++song) {
      file << fmt::format(
          "<key>{0}</key><dict><key>Track ID</key><integer>{0}</integer><key>Name</key>"
          "<string>x</string><key>Persistent ID</key><string>{1}</string></dict>\n",
          song + 1, TrackId(song));
    }
    file << "</dict></dict></plist>";
  }

  std::string path_;
  std::vector<std::string> files_;
};

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
  const double start = SecondsNow();
  for (int song = 0; song < songs; ++song) {
    ArtworkHandle* handle = library.openArtwork(all, song);
    if (handle == nullptr) throw std::runtime_error("a song's artwork was not found");
    library.closeArtwork(handle);
  }
  return SecondsNow() - start;
}

// Seconds of opening the files themselves and reading what a reader has to: the floor.
double OpenFiles(const std::vector<std::string>& files) {
  char bytes[208];
  const double start = SecondsNow();
  for (const std::string& path : files) {
    const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (read(file, bytes, 28) != 28 || pread(file, bytes, 208, 284) != 208) {
      throw std::runtime_error("a file cannot be read");
    }
    close(file);
  }
  return SecondsNow() - start;
}

// Seconds of finding the file of each of `songs` songs by a scan that compares the names as texts,
// which is less than a scan has to do.
double ScanNames(const std::vector<std::string>& files, int songs) {
  const double start = SecondsNow();
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
  return SecondsNow() - start;
}

// Seconds.
struct Delivery {
  Series library;
  Series read;
};

Delivery Deliver(const Library& library, const std::vector<std::string>& files, std::size_t bytes,
                 std::uint32_t rounds) {
  std::vector<std::uint8_t> buffer(bytes);
  ArtworkHandle* handles[kOpenTogether];
  int descriptors[kOpenTogether];
  for (int i = 0; i < kOpenTogether; ++i) {
    handles[i] = library.openArtwork(library.openAllSongs(), i);
    descriptors[i] = open(files[static_cast<std::size_t>(i)].c_str(), O_RDONLY | O_CLOEXEC);
  }
  Delivery delivery;
  for (std::uint32_t round = 0; round < rounds; ++round) {
    double start = SecondsNow();
    for (ArtworkHandle* handle : handles) {
      ArtworkInfo info{0, 0, 0, buffer.data(), static_cast<std::int32_t>(bytes)};
      library.getArtworkInfo(handle, 0, &info);
    }
    delivery.library.Add(SecondsNow() - start);
    start = SecondsNow();
    for (const int descriptor : descriptors) {
      lseek(descriptor, 284 + 208, SEEK_SET);
      if (read(descriptor, buffer.data(), bytes) != static_cast<ssize_t>(bytes)) {
        throw std::runtime_error("a file cannot be read");
      }
    }
    delivery.read.Add(SecondsNow() - start);
  }
  for (ArtworkHandle* handle : handles) library.closeArtwork(handle);
  for (const int descriptor : descriptors) close(descriptor);
  return delivery;
}

void MeasureOpening(int songs, std::uint32_t rounds, Report& report) {
  const ArtworkHome home(songs, 100);
  const Library library(home.path());
  const double start = SecondsNow();
  library.createArtworkArray();
  const double catalogue = SecondsNow() - start;
  const double first = OpenAll(library, songs);
  Series again;
  Series floor;
  for (std::uint32_t round = 0; round < rounds; ++round) {
    again.Add(OpenAll(library, songs));
    floor.Add(OpenFiles(home.files()));
  }
  const int sample = std::min(songs, 500);
  const double scan = ScanNames(home.files(), sample) / sample * songs * (songs / (sample * 0.5));
  report.Section(fmt::format("{} songs", songs));
  report.Seconds("the catalogue", catalogue);
  report.Seconds("opening all for the first time, one song", first / songs);
  report.Seconds("opening all again, one song", again.Times(1.0 / songs));
  report.Seconds("open(2) and read(2) alone, one file", floor.Times(1.0 / songs));
  report.Figure("  ours / open(2) and read(2)", "", again.Over(floor));
  report.Seconds("all songs, if every name was tried (estimate)", scan);
}

void MeasureDelivery(std::size_t bytes, Report& report) {
  const ArtworkHome home(kOpenTogether, bytes);
  const Library library(home.path());
  const Delivery delivery = Deliver(library, home.files(), bytes, 200);
  report.Section(fmt::format("{} images of {} bytes", kOpenTogether, bytes));
  report.Seconds("GetArtworkInfo", delivery.library);
  report.Seconds("read(2)", delivery.read);
  report.Figure("  ours / read(2)", "", delivery.library.Over(delivery.read));
}

struct Options {
  CommonOptions common{5, ""};
  int songs = 100000;
};

void Measure(const Options& options) {
  Report report("artwork");
  AddMachineFacts(report);
  MeasureOpening(options.songs / 10, options.common.rounds, report);
  MeasureOpening(options.songs, options.common.rounds, report);
  for (const std::size_t bytes : {4096U, 131072U, 4194304U}) MeasureDelivery(bytes, report);
  report.Finish(options.common.jsonFile);
}

}  // namespace
}  // namespace tavrel::bench

int main(int argc, char** argv) {
  tavrel::bench::Options options;
  CLI::App app("Measures the artwork functions.", "artwork");
  tavrel::bench::AddCommonOptions(app, options.common);
  app.add_option("--songs", options.songs, "Songs and cache files of the largest library")
      ->check(CLI::Range(1600, 1000000))
      ->capture_default_str();
  return tavrel::bench::RunProgram(app, argc, argv, [&] { tavrel::bench::Measure(options); });
}
