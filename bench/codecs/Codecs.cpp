// codecs: measures base64 and gzip beside OpenSSL, zlib and the gzip program.
#include <fmt/format.h>
#include <zlib.h>

#include <CLI/CLI.hpp>
#include <cstddef>
#include <fstream>
#include <iterator>
#include <string>

#include "bench/codecs/CodecGroups.h"
#include "bench/codecs/Measuring.h"
#include "bench/codecs/Peers.h"
#include "bench/report/Machine.h"
#include "bench/report/Program.h"
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
  CommonOptions common{15, ""};
  std::size_t megabytes = 64;
  std::string file;
};

std::string ContentsOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::string contents((std::istreambuf_iterator<char>(file)), {});
  Require(!contents.empty(), "the file is empty or cannot be read");
  return contents;
}

void Measure(const Options& options) {
  const std::string contents = ContentsOf(options.file);
  Report report("codecs");
  AddMachineFacts(report);
  const bool isWide = tavrel::system::IsSupported(tavrel::system::InstructionSet::kAvx2);
  report.Fact("base64", isWide ? "with AVX2" : "portable");
  report.Fact("checksum", tavrel::IsCrc32Fast() ? "with PCLMULQDQ" : "by zlib");
  report.Fact("OpenSSL", HasOpenSsl() ? OpenSslVersion() : "missing: base64 is measured alone");
  report.Fact("zlib", zlibVersion());
  report.Fact("random bytes", fmt::format("{} MB", options.megabytes));
  report.Fact("gzip's input", fmt::format("{} bytes", contents.size()));
  MeasureBase64(options.megabytes << 20, options.common.rounds, report);
  MeasureGzip(contents, options.common.rounds, report);
  report.Finish(options.common.jsonFile);
}

}  // namespace

int main(int argc, char** argv) {
  Options options;
  CLI::App app("Measures base64 and gzip beside OpenSSL, zlib and the gzip program.", "codecs");
  app.footer(footer);
  AddCommonOptions(app, options.common);
  app.add_option("--megabytes", options.megabytes, "Random bytes for base64")
      ->check(CLI::Range(1, 1024))
      ->capture_default_str();
  app.add_option("FILE", options.file, "Text for gzip, for instance a library file")
      ->required()
      ->check(CLI::ExistingFile);
  return RunProgram(app, argc, argv, [&] { Measure(options); });
}
