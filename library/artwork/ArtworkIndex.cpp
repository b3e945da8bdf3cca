#include "library/artwork/ArtworkIndex.h"

#include <bit>
#include <cstddef>
#include <cstring>

#include "library/artwork/ArtworkRecords.h"
#include "library/file/PersistentId.h"
#include "system/Memory.h"
#include "text/PathNames.h"

namespace tavrel {

// A hash table with open addressing, at most half full.
class ArtworkIndex {
 public:
  // Takes in what the catalogue has gained. False when memory is exhausted.
  [[nodiscard]] bool Renew(const GlobalState& state) noexcept {
    const std::int32_t count = state.artworkFileCount;
    if (indexed_ > count) indexed_ = 0;
    if (indexed_ < count && slotCount_ / 2 < static_cast<std::size_t>(count) && !Resize(count)) {
      return false;
    }
    for (; indexed_ < count; ++indexed_) Add(state.artworkFiles[indexed_]);
    return true;
  }

  [[nodiscard]] const ArtworkFileEntry* Find(const ArtworkIds& ids) const noexcept {
    return slotCount_ == 0 ? nullptr : SlotOf(ids).entry;
  }

  void Release() noexcept { system::Release(slots_); }

 private:
  struct Slot {
    ArtworkIds ids;
    const ArtworkFileEntry* entry;  // none in an empty slot
  };

  // Empty afterwards: the names are read again.
  bool Resize(std::int32_t count) noexcept {
    const std::size_t slots = std::bit_ceil(static_cast<std::size_t>(count)) * 2;
    void* block = system::AllocateZeroed(slots * sizeof(Slot));
    if (block == nullptr) return false;
    system::Release(slots_);
    slots_ = static_cast<Slot*>(block);
    slotCount_ = slots;
    indexed_ = 0;
    return true;
  }

  // The first file of several with the same IDs stays.
  void Add(const ArtworkFileEntry* entry) noexcept {
    const auto ids = ArtworkIdsIn(entry->path);
    if (!ids) return;
    Slot& slot = SlotOf(*ids);
    if (slot.entry == nullptr) slot = {*ids, entry};
  }

  // The slot that holds `ids`, or the empty one where they belong.
  [[nodiscard]] Slot& SlotOf(const ArtworkIds& ids) const noexcept {
    std::size_t at = Hash(ids) & (slotCount_ - 1);
    while (slots_[at].entry != nullptr && slots_[at].ids != ids) at = (at + 1) & (slotCount_ - 1);
    return slots_[at];
  }

  // Takes the table's address in, so that no set of names is bad for every run.
  [[nodiscard]] std::size_t Hash(const ArtworkIds& ids) const noexcept {
    std::uint64_t library = 0;
    std::uint64_t track = 0;
    std::memcpy(&library, ids.data(), sizeof(library));
    std::memcpy(&track, ids.data() + sizeof(library), sizeof(track));
    constexpr std::uint64_t kFactor = 0x9E3779B97F4A7C15;
    std::uint64_t hash = (library ^ reinterpret_cast<std::uintptr_t>(slots_)) * kFactor;
    hash = (hash ^ hash >> 32 ^ track) * kFactor;
    hash = (hash ^ hash >> 29) * kFactor;
    return static_cast<std::size_t>(hash ^ hash >> 32);
  }

  Slot* slots_;
  std::size_t slotCount_;  // a power of two, or 0
  std::int32_t indexed_;   // entries of the catalogue that have been taken in
};

namespace {

constexpr std::size_t kIdLength = 16;

const char* FindByTryingEveryName(const GlobalState& state, const ArtworkIds& ids) noexcept {
  for (std::int32_t i = 0; i < state.artworkFileCount; ++i) {
    if (ArtworkIdsIn(state.artworkFiles[i]->path) == ids) return state.artworkFiles[i]->path;
  }
  return nullptr;
}

// None when memory is exhausted.
ArtworkIndex* IndexOf(LibraryState& state) noexcept {
  ArtworkIndex*& index = state.artworkIndex;
  if (index == nullptr) {
    index = static_cast<ArtworkIndex*>(system::AllocateZeroed(sizeof(ArtworkIndex)));
  }
  return index;
}

}  // namespace

std::optional<ArtworkIds> ArtworkIdsIn(std::string_view path) noexcept {
  std::string_view name = text::SplitExtension(path).base;
  name.remove_prefix(name.rfind('/') + 1);  // 0 when there is none
  if (name.size() != 2 * kIdLength + 1 || name.find('-') != kIdLength) return std::nullopt;
  ArtworkIds ids{};
  // Each reads 16 characters and stops there.
  ParsePersistentId(name.data(), ids.data());
  ParsePersistentId(name.data() + kIdLength + 1, ids.data() + ids.size() / 2);
  return ids;
}

const char* FindArtworkFile(LibraryState& state, const ArtworkIds& ids) noexcept {
  if (state.artworkDestroyed) return nullptr;
  ArtworkIndex* index = IndexOf(state);
  if (index == nullptr || !index->Renew(state)) return FindByTryingEveryName(state, ids);
  const ArtworkFileEntry* entry = index->Find(ids);
  return entry == nullptr ? nullptr : entry->path;
}

void ReleaseArtworkIndex(LibraryState& state) noexcept {
  ArtworkIndex*& index = state.artworkIndex;
  if (index == nullptr) return;
  index->Release();
  system::Release(index);
  index = nullptr;
}

}  // namespace tavrel
