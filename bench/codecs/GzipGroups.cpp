#include <fmt/format.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>

#include "bench/codecs/CodecGroups.h"
#include "bench/codecs/Group.h"
#include "bench/codecs/Peers.h"
#include "bench/support/Region.h"
#include "bench/support/Require.h"
#include "bench/support/TemporaryFolder.h"
#include "codecs/Gzip.h"

namespace tavrel::bench {
namespace {

using system::ByteBuffer;

// Files for the gzip program.
class GzipFolder {
 public:
  void Write(const char* name, std::string_view bytes) const {
    std::ofstream file(folder_.path() + "/" + name, std::ios::binary);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    Require(file.flush().good(), "a temporary file cannot be written");
  }

  // Runs a command of the shell there, and says whether it succeeded.
  [[nodiscard]] bool Run(const std::string& command) const {
    return std::system(("cd '" + folder_.path() + "' && " + command + " 2> /dev/null").c_str()) ==
           0;
  }

 private:
  TemporaryFolder folder_;
};

}  // namespace

void MeasureGzip(std::string_view contents, std::uint32_t rounds, Report& report) {
  const ByteBuffer bytes = ByteBuffer::Copy(contents);
  const ByteBuffer stream = gzipDeflate(bytes);
  Require(gzipInflate(stream).view() == contents, "inflating went wrong");
  const ResidentRegion output(contents.size());
  Require(InflateWithZlib(stream.view(), output.data(), output.size()) == contents.size() &&
              std::memcmp(output.data(), contents.data(), contents.size()) == 0,
          "zlib inflates otherwise");
  Require(InflateGrowing(stream.view()) == contents, "zlib inflates otherwise");

  const GzipFolder folder;
  folder.Write("text", contents);
  folder.Write("text.gz", stream.view());
  const bool hasProgram = folder.Run("gzip -t text.gz");
  if (!hasProgram) fmt::print(stderr, "codecs: there is no gzip program to measure beside ours\n");

  Group inflating(fmt::format("gzip, inflating {} bytes to {}", stream.size(), contents.size()),
                  contents.size(), 2 * contents.size());
  inflating.Add("gzipInflate, fresh result",
                [&] { Require(bool{gzipInflate(stream)}, "there are no bytes"); });
  inflating.Add("zlib into a resident buffer",
                [&] { InflateWithZlib(stream.view(), output.data(), output.size()); });
  inflating.Add("zlib, growing by half", [&] {
    Require(InflateGrowing(stream.view()).size() == contents.size(), "bytes are missing");
  });
  if (hasProgram) {
    inflating.Add("gzip -dc > /dev/null",
                  [&] { Require(folder.Run("gzip -dc text.gz > /dev/null"), "gzip failed"); });
  }
  inflating.Measure(rounds, report);

  Group deflating("gzip, deflating the same", contents.size(), contents.size());
  deflating.Add("gzipDeflate, fresh result",
                [&] { Require(bool{gzipDeflate(bytes)}, "there are no bytes"); });
  if (hasProgram) {
    deflating.Add("gzip -c > /dev/null",
                  [&] { Require(folder.Run("gzip -c text > /dev/null"), "gzip failed"); });
  }
  deflating.Measure(std::max(rounds / 5, 1U), report);
  report.Add({16, "gzipInflate: zlib, resident buffer / ours, fresh result",
              inflating.RatioTo("zlib into a resident buffer"), Bound::kAtLeast, 0.9, 1.0});
}

}  // namespace tavrel::bench
