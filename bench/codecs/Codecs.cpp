// codecs: measures base64 and gzip beside OpenSSL, zlib and the gzip program.
#include <fmt/format.h>
#include <zlib.h>

#include <cstddef>
#include <cstdint>
#include <string>

#include "bench/codecs/CodecGroups.h"
#include "bench/codecs/Peers.h"
#include "bench/report/Benchmark.h"
#include "bench/support/WholeFile.h"
#include "codecs/Base64Blocks.h"
#include "codecs/Crc32.h"

namespace {

using namespace tavrel::bench;

constexpr char kFooter[] =
    "Times are processor times, system calls included: other programs disturb them less than\n"
    "the wall clock. Ours and the peers take turns, and each ratio is one of a round. Times\n"
    "of different calls must not be compared, ratios may.\n"
    "\n"
    "Example:\n"
    "  generate_library --tracks 42000 -o library.xml && codecs library.xml";

struct Options {
  std::uint64_t megabytes = 64;
  std::string file;
};

void Measure(const Options& options, std::uint32_t rounds, Report& report) {
  const std::string contents = ContentsOf(options.file);
  const bool isWide = tavrel::system::IsSupported(tavrel::system::InstructionSet::kAvx2);
  report.Fact("base64", isWide ? "with AVX2" : "portable");
  report.Fact("checksum", tavrel::IsCrc32Fast() ? "with PCLMULQDQ" : "by zlib");
  report.Fact("OpenSSL", HasOpenSsl() ? OpenSslVersion() : "missing: base64 is measured alone");
  report.Fact("zlib", zlibVersion());
  report.Fact("random bytes", fmt::format("{} MB", options.megabytes));
  report.Fact("gzip's input", fmt::format("{} bytes", contents.size()));
  MeasureBase64(options.megabytes << 20, rounds, report);
  MeasureGzip(contents, rounds, report);
}

}  // namespace

int main(int argc, char** argv) {
  Options options;
  Benchmark benchmark("codecs",
                      "Measures base64 and gzip beside OpenSSL, zlib and the gzip program.", 15);
  benchmark.Explain(kFooter);
  benchmark.Take(options.file);
  benchmark.arguments().Number("--megabytes", options.megabytes, "Random bytes for base64", 1,
                               1024);
  return benchmark.Run(argc, argv,
                       [&](Report& report) { Measure(options, benchmark.rounds(), report); });
}
