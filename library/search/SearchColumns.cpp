#include "library/search/SearchColumns.h"

#include <algorithm>
#include <limits>
#include <optional>

#include "library/file/XmlText.h"
#include "system/Prefetch.h"

namespace tavrel {
namespace {

using Column = SearchSources::Column;
using system::ZeroedBlock;

// Hands out the parts of a block, one behind the other. Without a block it only counts: asked for the
// same parts twice, it first tells the block's size and then where everything stands.
class Layout {
 public:
  explicit Layout(char* block) noexcept : block_(block) {}

  template <class Record>
  std::span<Record> Take(std::size_t count) noexcept {
    constexpr std::size_t kAlignment = alignof(std::uint64_t);
    char* place = block_ == nullptr ? nullptr : block_ + size_;
    std::size_t bytes = 0;
    const bool tooLarge = __builtin_mul_overflow(count, sizeof(Record), &bytes) ||
                          __builtin_add_overflow(bytes, kAlignment - 1, &bytes) ||
                          __builtin_add_overflow(size_, bytes / kAlignment * kAlignment, &size_);
    isTooLarge_ = isTooLarge_ || tooLarge;
    return {reinterpret_cast<Record*>(place), place == nullptr ? 0 : count};
  }
  [[nodiscard]] std::size_t size() const noexcept { return size_; }
  // More than there are addresses.
  [[nodiscard]] bool isTooLarge() const noexcept { return isTooLarge_; }

 private:
  char* block_;
  std::size_t size_ = 0;
  bool isTooLarge_ = false;
};

// The parts that are not seen by who reads the columns: he sees them joined, as `columns.texts`.
struct Parts {
  std::span<std::uint64_t> joined;
  std::span<char> texts;
};

// What the folded texts, a zero byte behind each and one at the end may take at most; none when that
// is more than there are addresses.
std::optional<std::size_t> MostTextBytes(const SearchSources& sources) noexcept {
  std::size_t bytes = 0;
  if (__builtin_mul_overflow(sources.textBytes(), text::kFoldingGrowth, &bytes))
    return std::nullopt;
  for (const Column& column : sources.columns()) {
    if (__builtin_add_overflow(bytes, column.sources.size(), &bytes)) return std::nullopt;
  }
  if (__builtin_add_overflow(bytes, 1, &bytes)) return std::nullopt;
  return bytes;
}

// Lays everything out in the order in which the header draws it.
Parts LayOut(Layout& layout, const SearchSources& sources, std::size_t textBytes,
             SearchColumns& columns) noexcept {
  columns.trackIds = layout.Take<std::int32_t>(sources.trackIds().size());
  for (std::size_t i = 0; i < columns.columns.size(); ++i) {
    const Column& column = sources.columns()[i];
    columns.columns[i].runs = layout.Take<TextRun>(column.sources.size() + 1);  // one for the end
    columns.columns[i].faulty = layout.Take<FaultyText>(column.withReferences);
  }
  Parts parts;
  parts.joined = layout.Take<std::uint64_t>(textBytes / 64 + 1);
  parts.texts = layout.Take<char>(textBytes);
  return parts;
}

// Writes the folded texts, one behind the other.
class ColumnWriter {
 public:
  ColumnWriter(const Parts& parts, char* scratch) noexcept
      : target_{parts.texts.data(), parts.joined.data()}, scratch_(scratch) {}

  [[nodiscard]] bool Write(std::span<const TextSource> sources, std::uint32_t trackCount,
                           SearchColumn& column) noexcept;
  [[nodiscard]] std::size_t size() const noexcept { return size_; }

 private:
  [[nodiscard]] bool WriteText(const TextSource& source, bool& isFaulty) noexcept;

  text::FoldingTarget target_;
  char* scratch_;  // room for any decoded text
  std::size_t size_ = 0;
};

bool ColumnWriter::WriteText(const TextSource& source, bool& isFaulty) noexcept {
  isFaulty = false;
  std::string_view text(source.text, source.length);
  if (source.hasReferences != 0) {
    const auto room = static_cast<std::int32_t>(text.size() + 1);
    const Decoding decoding = DecodeReferences(scratch_, source.text, room);
    isFaulty = decoding.error != DecodingError::kNone;
    text = {scratch_, static_cast<std::size_t>(decoding.length)};
  }
  const std::optional<std::size_t> length = FoldText(text, target_, size_);
  if (!length) return false;
  size_ += *length + 1;  // the zero byte behind it stands there already
  return size_ <= std::numeric_limits<std::uint32_t>::max();
}

bool ColumnWriter::Write(std::span<const TextSource> sources, std::uint32_t trackCount,
                         SearchColumn& column) noexcept {
  constexpr std::size_t kAhead = 12;  // enough to hide that the texts lie far apart
  std::size_t faultyCount = 0;
  for (std::size_t i = 0; i < sources.size(); ++i) {
    if (i + kAhead < sources.size()) system::FetchToRead(sources[i + kAhead].text);
    const TextSource& source = sources[i];
    column.runs[i] = {static_cast<std::uint32_t>(size_), source.firstTrack};
    bool isFaulty = false;
    if (!WriteText(source, isFaulty)) return false;
    if (!isFaulty) continue;
    const std::uint32_t end = i + 1 < sources.size() ? sources[i + 1].firstTrack : trackCount;
    column.faulty[faultyCount++] = {source.text, source.firstTrack, end};
  }
  column.runs.back() = {static_cast<std::uint32_t>(size_), trackCount};
  column.faulty = column.faulty.first(faultyCount);
  return true;
}

// Fills what LayOut() has laid out; the number of bytes that the texts take, none on failure.
std::optional<std::size_t> Fill(const SearchSources& sources, const Parts& parts,
                                SearchColumns& columns) noexcept {
  auto* scratch = static_cast<char*>(system::Allocate(sources.longestWithReferences() + 1));
  if (scratch == nullptr) return std::nullopt;
  std::copy(sources.trackIds().begin(), sources.trackIds().end(), columns.trackIds.begin());
  const auto trackCount = static_cast<std::uint32_t>(columns.trackIds.size());
  ColumnWriter writer(parts, scratch);
  bool isComplete = true;
  for (std::size_t i = 0; i < columns.columns.size() && isComplete; ++i) {
    isComplete = writer.Write(sources.columns()[i].sources, trackCount, columns.columns[i]);
  }
  system::Release(scratch);
  return isComplete ? std::optional(writer.size()) : std::nullopt;
}

}  // namespace

bool ReadSearchColumns(const TBXML& document, std::uint32_t mostTracks,
                       SearchColumns& columns) noexcept {
  SearchSources sources;
  if (!sources.Read(document, mostTracks)) return false;
  const std::optional<std::size_t> mostTextBytes = MostTextBytes(sources);
  if (!mostTextBytes) return false;
  Layout counted(nullptr);
  (void)LayOut(counted, sources, *mostTextBytes, columns);
  if (counted.isTooLarge()) return false;
  ZeroedBlock block = system::AllocateBlock(counted.size());
  if (block.address == nullptr) return false;

  Layout layout(block.address);
  const Parts parts = LayOut(layout, sources, *mostTextBytes, columns);
  const std::optional<std::size_t> textBytes = Fill(sources, parts, columns);
  if (!textBytes) {
    system::ReleaseBlock(block);
    columns = {};
    return false;
  }
  // What the texts, at the end, did not need goes back. A mapped block stays where it is; a small
  // one might not, and is not worth it.
  const auto before = static_cast<std::size_t>(parts.texts.data() - block.address);
  if (block.mappedBytes > 0) system::TrimBlock(block, before + *textBytes);
  columns.block = block;
  columns.texts = {parts.texts.data(), parts.joined.data()};
  return true;
}

}  // namespace tavrel
