#include "tests/support/PropertySurvey.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>

namespace tavrel::test {
namespace {

// What is asked for key by key: more would take the square of a dictionary's length.
constexpr std::size_t kMostAsked = 100;

std::int32_t Keep(const char* key, const char* text, const char* type, void* context) {
  SeenPair pair{key, std::nullopt, type};
  if (text != nullptr) pair.text = text;
  static_cast<SeenPairs*>(context)->push_back(std::move(pair));
  return 1;
}

std::int32_t Stop(const char*, const char*, const char*, void* context) {
  ++*static_cast<int*>(context);
  return 0;
}

template <class Visit, class Get>
SeenPairs See(Visit visit, Get get) {
  SeenPairs pairs;
  const std::int32_t count = visit(Keep, &pairs);
  EXPECT_EQ(count, static_cast<std::int32_t>(pairs.size()));
  int calls = 0;
  EXPECT_EQ(visit(Stop, &calls), std::min(count, 1));
  EXPECT_EQ(calls, std::min(count, 1));
  EXPECT_EQ(visit(nullptr, nullptr), 0);
  for (std::size_t i = 0; i < std::min(pairs.size(), kMostAsked); ++i) {
    const std::string& key = pairs[i].key;
    EXPECT_EQ(
        AskTwice([&](char* buffer, std::int32_t size) { return get(key.c_str(), buffer, size); }),
        TextOf(pairs, key))
        << key;
  }
  char untouched[] = "untouched";
  EXPECT_EQ(get("no such key", untouched, 9), 0);
  EXPECT_EQ(get(nullptr, untouched, 9), 0);
  EXPECT_STREQ(untouched, "untouched");
  return pairs;
}

}  // namespace

void PrintTo(const SeenPair& pair, std::ostream* stream) {
  *stream << pair.key << " = " << pair.text.value_or("(no text)") << " (" << pair.type << ')';
}

SeenPairs SeeSongProperties(const HostFunctions& library, const PlaylistRecord* playlist,
                            std::int32_t index) {
  return See(
      [&](PropertyVisitor visitor, void* context) {
        return library.visitSongProperties(playlist, index, visitor, context);
      },
      [&](const char* key, char* buffer, std::int32_t size) {
        return library.getSongProperty(playlist, index, key, buffer, size);
      });
}

SeenPairs SeePlaylistProperties(const HostFunctions& library, const PlaylistRecord* playlist) {
  return See(
      [&](PropertyVisitor visitor, void* context) {
        return library.visitPlaylistProperties(playlist, visitor, context);
      },
      [&](const char* key, char* buffer, std::int32_t size) {
        return library.getPlaylistProperty(playlist, key, buffer, size);
      });
}

SeenPairs SeeLibraryProperties(const HostFunctions& library) {
  return See([&](PropertyVisitor visitor,
                 void* context) { return library.visitLibraryProperties(visitor, context); },
             [&](const char* key, char* buffer, std::int32_t size) {
               return library.getLibraryProperty(key, buffer, size);
             });
}

std::optional<std::string> TextOf(const SeenPairs& pairs, std::string_view key) {
  const auto found = std::find_if(pairs.begin(), pairs.end(),
                                  [key](const SeenPair& pair) { return pair.key == key; });
  return found == pairs.end() ? std::nullopt : found->text;
}

std::optional<std::string> AskTwice(const GetText& get) {
  constexpr char kUntouched = '\xA5';
  const std::int32_t size = get(nullptr, INT32_MAX);
  EXPECT_GE(size, 0);
  std::string buffer(static_cast<std::size_t>(size) + 2, kUntouched);
  const std::string before = buffer;
  for (const std::int32_t tooSmall : {size - 1, std::int32_t{0}, std::int32_t{-1}, INT32_MIN}) {
    EXPECT_EQ(get(buffer.data() + 1, std::min(tooSmall, size - 1)), size);
    EXPECT_EQ(buffer, before);
  }
  EXPECT_EQ(get(buffer.data() + 1, size), size);
  EXPECT_EQ(buffer.front(), kUntouched);
  EXPECT_EQ(buffer.back(), kUntouched);
  if (size == 0) return std::nullopt;
  const std::string text = buffer.substr(1, static_cast<std::size_t>(size) - 1);
  EXPECT_EQ(buffer[static_cast<std::size_t>(size)], '\0');
  EXPECT_EQ(text.find('\0'), std::string::npos);
  return text;
}

}  // namespace tavrel::test
