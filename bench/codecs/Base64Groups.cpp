#include <cstdlib>
#include <cstring>
#include <memory>
#include <optional>
#include <utility>

#include "bench/codecs/CodecGroups.h"
#include "bench/codecs/Group.h"
#include "bench/codecs/Peers.h"
#include "bench/support/Random.h"
#include "bench/support/Region.h"
#include "bench/support/Require.h"
#include "codecs/Base64.h"
#include "codecs/Base64Coding.h"

namespace tavrel::bench {
namespace {

using system::ByteBuffer;
using system::InstructionSet;
using system::WidestSet;

// The input of all of it, and a place for output that is resident as they are.
struct Material {
  ResidentRegion bytes;
  ResidentRegion text;   // without line breaks
  ResidentRegion lines;  // of 76 characters
  ResidentRegion output;

  [[nodiscard]] std::string_view Bytes() const { return {bytes.data(), bytes.size()}; }
  [[nodiscard]] std::string_view Text() const { return {text.data(), text.size()}; }
  [[nodiscard]] std::string_view Lines() const { return {lines.data(), lines.size()}; }
};

void Fill(const ResidentRegion& bytes) {
  Random random(1);
  for (std::size_t at = 0; at + 8 <= bytes.size(); at += 8) {
    const std::uint64_t value = random.Next();
    std::memcpy(bytes.data() + at, &value, sizeof value);
  }
}

void Encode(const Material& material, InstructionSet set) {
  const std::size_t taken =
      BlocksFor(set).encode(reinterpret_cast<const std::uint8_t*>(material.bytes.data()),
                            material.bytes.size(), material.output.data());
  Require(taken == material.bytes.size(), "encoding stopped early");
}

void Decode(const Material& material, std::string_view text, InstructionSet set) {
  auto* output = reinterpret_cast<std::uint8_t*>(material.output.data());
  Require(DecodeBase64Into(output, text, set).has_value(), "decoding stopped early");
}

// Whether the output is what is expected; it is cleared for the next check.
void RequireOutput(const Material& material, std::string_view expected, const char* what) {
  char* output = material.output.data();
  Require(std::memcmp(output, expected.data(), expected.size()) == 0, what);
  std::memset(output, 0, expected.size());
}

void Check(const Material& material) {
  for (const InstructionSet set : {InstructionSet::kBaseline, WidestSet()}) {
    Encode(material, set);
    RequireOutput(material, material.Text(), "encoding went wrong");
    Decode(material, material.Text(), set);
    RequireOutput(material, material.Bytes(), "decoding went wrong");
    Decode(material, material.Lines(), set);
    RequireOutput(material, material.Bytes(), "decoding lines went wrong");
  }
  if (!HasOpenSsl()) return;
  EncodeWithOpenSsl(material.Bytes(), material.output.data());
  RequireOutput(material, material.Text(), "OpenSSL encodes otherwise");
  DecodeWithOpenSsl(material.Text(), material.output.data());
  RequireOutput(material, material.Bytes(), "OpenSSL decodes otherwise");
  DecodeLinesWithOpenSsl(material.Lines(), material.output.data());
  RequireOutput(material, material.Bytes(), "OpenSSL decodes lines otherwise");
}

void AddTarget(Report& report, const char* name, Series ratio, double pass, double moonshot) {
  report.Add({15, name, std::move(ratio), Bound::kAtLeast, pass, moonshot});
}

void AddCopy(Group& group, const Material& material, std::string_view from) {
  group.Add("memcpy of the input",
            [&material, from] { std::memcpy(material.output.data(), from.data(), from.size()); });
}

void MeasureEncoding(const Material& material, std::uint32_t rounds, Report& report) {
  Group group("base64, encoding into resident memory", material.bytes.size());
  group.Add("ours", [&] { Encode(material, WidestSet()); });
  group.Add("ours, portable", [&] { Encode(material, InstructionSet::kBaseline); });
  if (HasOpenSsl()) {
    group.Add("EVP_EncodeBlock",
              [&] { EncodeWithOpenSsl(material.Bytes(), material.output.data()); });
  }
  AddCopy(group, material, material.Bytes());
  group.Measure(rounds, report);
  if (HasOpenSsl()) {
    AddTarget(report, "base64 encoding: EVP_EncodeBlock / ours", group.RatioTo("EVP_EncodeBlock"),
              4, 6);
  }
}

using DecodePeer = void (*)(std::string_view, char*);

Group MeasureDecoding(const Material& material, std::string_view text, std::string name,
                      const char* peerName, DecodePeer peer, std::uint32_t rounds, Report& report) {
  Group group("base64, decoding " + std::move(name) + " into resident memory", text.size());
  group.Add("ours", [&material, text] { Decode(material, text, WidestSet()); });
  group.Add("ours, portable",
            [&material, text] { Decode(material, text, InstructionSet::kBaseline); });
  group.Add("ours, by the rules alone",
            [&material, text] { Decode(material, text, InstructionSet::kPlain); });
  if (HasOpenSsl() && peer != nullptr) {
    group.Add(peerName, [&material, text, peer] { peer(text, material.output.data()); });
  }
  AddCopy(group, material, text);
  group.Measure(rounds, report);
  return group;
}

// The operations as they are called, each into memory that it takes from the system and gives back.
void MeasureFresh(const std::string& name, std::string_view input, std::size_t room,
                  std::function<void()> ours, DecodePeer peer, std::uint32_t rounds,
                  Report& report) {
  const auto intoFresh = [room](const std::function<void(char*)>& work) {
    const std::unique_ptr<char, void (*)(void*)> output(static_cast<char*>(std::malloc(room)),
                                                        std::free);
    Require(output != nullptr, "there is not enough memory");
    work(output.get());
  };
  Group group(name + ", with fresh memory for the result", input.size(), 2 * room);
  group.Add("ours", std::move(ours));
  if (HasOpenSsl()) {
    group.Add("EVP into malloc()", [=] { intoFresh([=](char* output) { peer(input, output); }); });
  }
  group.Add("memcpy into malloc()", [=] {
    intoFresh(
        [=](char* output) { std::memcpy(output, input.data(), std::min(input.size(), room)); });
  });
  group.Measure(rounds, report);
}

}  // namespace

void MeasureBase64(std::size_t size, std::uint32_t rounds, Report& report) {
  size = size / 57 * 57;  // whole lines: OpenSSL's functions count padding as bytes
  const std::size_t textSize = size / 3 * 4;
  const Material material{ResidentRegion(size), ResidentRegion(textSize),
                          ResidentRegion(textSize + size / 57),
                          ResidentRegion(textSize + size / 57 + 64)};
  Fill(material.bytes);
  const std::string text = EncodeBase64(material.Bytes(), 0, InstructionSet::kPlain);
  const std::string lines = EncodeBase64(material.Bytes(), 76, InstructionSet::kPlain);
  std::memcpy(material.text.data(), text.data(), text.size());
  std::memcpy(material.lines.data(), lines.data(), lines.size());
  Check(material);

  MeasureEncoding(material, rounds, report);
  const Group clean = MeasureDecoding(material, material.Text(), "clean text", "EVP_DecodeBlock",
                                      DecodeWithOpenSsl, rounds, report);
  const Group broken = MeasureDecoding(material, material.Lines(), "lines of 76",
                                       "EVP_DecodeUpdate", DecodeLinesWithOpenSsl, rounds, report);
  if (HasOpenSsl()) {
    AddTarget(report, "base64 decoding, clean: EVP_DecodeBlock / ours",
              clean.RatioTo("EVP_DecodeBlock"), 4, 6);
    AddTarget(report, "base64 decoding, lines of 76: EVP_DecodeUpdate / ours",
              broken.RatioTo("EVP_DecodeUpdate"), 8, 20);
  }
  // The worst for blocks: a break in the middle of every group.
  const std::string odd =
      EncodeBase64(material.Bytes().substr(0, size / 4), 4, InstructionSet::kPlain);
  MeasureDecoding(material, odd, "lines of 4", nullptr, nullptr, rounds, report);
  std::string worst = odd;
  for (std::size_t at = 0; at < worst.size(); ++at) {
    if (at % 5 == 3) std::swap(worst[at], worst[at + 1]);
  }
  MeasureDecoding(material, worst, "a break in every group", nullptr, nullptr, rounds, report);

  const ByteBuffer bytes = ByteBuffer::Copy(material.Bytes());
  MeasureFresh(
      "base64Encoding", bytes.view(), textSize + 1,
      [&] { Require(!base64Encoding(bytes).empty(), "there is no text"); }, EncodeWithOpenSsl,
      rounds, report);
  const std::optional<std::string> cleanText = text;
  MeasureFresh(
      "initWithBase64EncodedString, clean text", text, textSize,
      [&] { Require(bool{initWithBase64EncodedString(cleanText)}, "there are no bytes"); },
      DecodeWithOpenSsl, rounds, report);
  const std::optional<std::string> brokenText = lines;
  MeasureFresh(
      "initWithBase64EncodedString, lines of 76", lines, textSize,
      [&] { Require(bool{initWithBase64EncodedString(brokenText)}, "there are no bytes"); },
      DecodeLinesWithOpenSsl, rounds, report);
}

}  // namespace tavrel::bench
