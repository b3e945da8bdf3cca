// codecs: measures base64 and gzip beside OpenSSL, zlib and the gzip program.
#include <fmt/format.h>
#include <stdlib.h>
#include <zlib.h>

#include <CLI/CLI.hpp>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include "bench/codecs/CodecGroups.h"
#include "bench/codecs/Peers.h"
#include "codecs/Base64Blocks.h"
#include "codecs/Crc32.h"

namespace {

using namespace tavrel::bench;

constexpr char footer[] =
    "Times are processor times, system calls included: other programs disturb them less than the\n"
    "wall clock. Ours and the peers take turns, and each ratio is one of a round. Times of\n"
    "different calls must not be compared, ratios may.\n"
    "\n"
    "Example:\n"
    "  generate_library --tracks 42000 -o library.xml && codecs library.xml";

struct Options {
  std::uint32_t rounds = 15;
  std::size_t megabytes = 64;
  std::string file;
};

// The first line of /proc/cpuinfo that names the processor.
std::string ProcessorName() {
  std::ifstream file("/proc/cpuinfo");
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with("model name")) return line.substr(line.find(':') + 2);
  }
  return "unknown processor";
}

void PrintHeader(const Options& options) {
  double load = 0;
  if (getloadavg(&load, 1) != 1) load = -1;
  fmt::print("{}; base64 {}, checksum {}\n", ProcessorName(),
             tavrel::BestBase64Path() == tavrel::Base64Path::kAvx2 ? "with AVX2" : "portable",
             tavrel::IsCrc32Fast() ? "with PCLMULQDQ" : "by zlib");
  fmt::print("compiler {}; {}; zlib {}\n", __VERSION__, OpenSslVersion(), zlibVersion());
  fmt::print("{} MB of random bytes, {}; {} rounds, load average {:.2f}\n", options.megabytes,
             options.file, options.rounds, load);
  if (!HasOpenSsl()) fmt::print("Built without OpenSSL, the peer of base64: it is left out.\n");
}

std::string ContentsOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::string contents((std::istreambuf_iterator<char>(file)), {});
  Require(!contents.empty(), "the file is empty or cannot be read");
  return contents;
}

void Measure(const Options& options) {
  const std::string contents = ContentsOf(options.file);
  PrintHeader(options);
  std::vector<Target> targets = MeasureBase64(options.megabytes << 20, options.rounds);
  for (const Target& target : MeasureGzip(contents, options.rounds)) targets.push_back(target);
  fmt::print("\n");
  for (const Target& target : targets) Print(target);
}

}  // namespace

int main(int argc, char** argv) {
  Options options;
  CLI::App app("Measures base64 and gzip beside OpenSSL, zlib and the gzip program.", "codecs");
  app.footer(footer);
  app.add_option("--rounds", options.rounds, "Measured runs of each")
      ->check(CLI::Range(1, 10000))
      ->capture_default_str();
  app.add_option("--megabytes", options.megabytes, "Random bytes for base64")
      ->check(CLI::Range(1, 1024))
      ->capture_default_str();
  app.add_option("FILE", options.file, "Text for gzip, for instance a library file")
      ->required()
      ->check(CLI::ExistingFile);
  try {
    app.parse(argc, argv);
    Measure(options);
    return 0;
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? 0 : 2;
  } catch (const std::exception& error) {
    fmt::print(stderr, "codecs: {}\n", error.what());
    return 1;
  }
}
