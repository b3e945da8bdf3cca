#include "host/page/SongBlock.h"

#include <cstring>

#include "host/library/KeptFailure.h"
#include "host/library/SongPlaces.h"

namespace tavrel::host {
namespace {

constexpr std::size_t kMostKnown = 256;

}  // namespace

void SongBlock::Clear() noexcept {
  texts_.clear();
  for (std::vector<Value>& values : values_) values.clear();
  songs_ = 0;
}

void SongBlock::Add(std::size_t key, const char* text) {
  std::vector<Value>& values = values_[key];
  const auto song = static_cast<std::uint32_t>(songs_);
  if (!values.empty() && values.back().song == song) return;
  const std::size_t size = text == nullptr ? 0 : std::strlen(text);
  values.push_back({texts_.size(), size, song, text != nullptr});
  if (text != nullptr) texts_.append(text, size + 1);
}

SongWalk::SongWalk(const LibraryFunctions& library, const FieldSet& wanted)
    : library_(library), wanted_(wanted), keys_(&others_) {
  others_.Add(kTrackIdKey);
}

void SongWalk::Show(PlaylistRecord* playlist, std::int32_t position, SongBlock& block) {
  struct Context {
    SongWalk& walk;
    SongBlock& block;
    KeptFailure failure = {};
  } context{*this, block};
  const auto visit = [](const char* key, const char* text, const char*, void* pointer) {
    auto& shown = *static_cast<Context*>(pointer);
    return shown.failure.Keep([&] {
      shown.walk.Take(key, text, shown.block);
      return 1;
    });
  };
  library_.visitSongProperties(playlist, position, visit, &context);
  context.failure.Throw();
  block.EndSong();
}

void SongWalk::Take(const char* key, const char* text, SongBlock& block) {
  const std::size_t number = keys_.Find(key);
  if (number == SongKeys::kUnknown) {
    if (others_.All().size() < kMostKnown) others_.Add(key);
  } else if (number < kFieldCount ? wanted_[number] : number == SongBlock::kTrackId) {
    block.Add(number, text);
  }
}

}  // namespace tavrel::host
