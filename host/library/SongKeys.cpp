#include "host/library/SongKeys.h"

#include <utility>

#include "host/library/KeptFailure.h"

namespace tavrel::host {

// ---- Other keys ---------------------------------------------------------------------------------

void OtherKeys::Add(std::string_view key) {
  if (numbers_.find(key) != numbers_.end()) return;
  numbers_.emplace(key, keys_.size());
  keys_.emplace_back(key);
}

std::optional<std::size_t> OtherKeys::Find(std::string_view key) const {
  if (keys_.empty()) return std::nullopt;
  const auto known = numbers_.find(key);
  return known == numbers_.end() ? std::nullopt : std::optional(known->second);
}

void CollectOtherKeys(const LibraryFunctions& library, PlaylistRecord* playlist, std::int32_t from,
                      OtherKeys& keys) {
  struct Context {
    OtherKeys& keys;
    SongKeys known{&keys};
    KeptFailure failure = {};
  } context{keys};
  const auto visit = [](const char* key, const char*, const char*, void* pointer) {
    auto& collected = *static_cast<Context*>(pointer);
    return collected.failure.Keep([&] {
      if (collected.known.Find(key) == SongKeys::kUnknown) collected.keys.Add(key);
      return 1;
    });
  };
  const std::int32_t count = library.getSongCount(playlist);
  for (std::int32_t i = from; i < count; ++i) {
    library.visitSongProperties(playlist, i, visit, &context);
    context.failure.Throw();
  }
}

// ---- The keys of songs --------------------------------------------------------------------------

SongKeys::SongKeys(const OtherKeys* others) : others_(others) {
  for (const FieldFacts& field : kFields) known_.push_back({field.key.data(), 0, 0});
}

std::size_t SongKeys::LookUp(const char* key) {
  std::swap(known_[last_].next, known_[last_].before);
  const std::size_t guess = known_[last_].next;
  if (std::strcmp(known_[guess].key, key) == 0) return last_ = guess;
  std::size_t number = kUnknown;
  if (const auto field = fields_.Find(key)) {
    number = IndexOf(*field);
  } else if (const auto other = others_ != nullptr ? others_->Find(key) : std::nullopt) {
    number = kFieldCount + *other;
  }
  if (number == kUnknown) return kUnknown;
  while (number >= known_.size()) {
    known_.push_back({others_->All()[known_.size() - kFieldCount].c_str(), 0, 0});
  }
  last_ = known_[last_].next = number;
  return number;
}

}  // namespace tavrel::host
