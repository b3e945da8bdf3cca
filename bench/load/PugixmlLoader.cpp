#include <stdexcept>

#include "bench/Loaders.h"

#if defined(TAVREL_HAS_PUGIXML)

#include <fcntl.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <memory>
#include <pugixml.hpp>
#include <system_error>

namespace tavrel::bench {
namespace {

struct Freed {
  void operator()(char* memory) const noexcept { free(memory); }
};
using Buffer = std::unique_ptr<char, Freed>;

Buffer ReadFile(const std::string& file, std::size_t& size) {
  const int descriptor = open(file.c_str(), O_RDONLY | O_CLOEXEC);
  struct stat status {};
  if (descriptor < 0 || fstat(descriptor, &status) != 0) {
    throw std::system_error(errno, std::generic_category(), "cannot read \"" + file + "\"");
  }
  size = static_cast<std::size_t>(status.st_size);
  Buffer buffer(static_cast<char*>(malloc(size)));
  if (buffer == nullptr) throw std::bad_alloc();
  for (std::size_t got = 0; got < size;) {
    const ssize_t piece = read(descriptor, buffer.get() + got, size - got);
    if (piece < 0 && errno == EINTR) continue;
    if (piece <= 0) throw std::runtime_error("cannot read \"" + file + "\" to its end");
    got += static_cast<std::size_t>(piece);
  }
  close(descriptor);
  return buffer;
}

}  // namespace

bool HasPugixml() noexcept {
  return true;
}

LoadTimes LoadWithPugixml(const std::string& file) {
  LoadTimes times{};
  const double start = SecondsNow();
  std::size_t size = 0;
  Buffer buffer = ReadFile(file, size);
  pugi::xml_document document;
  const pugi::xml_parse_result result = document.load_buffer_inplace(
      buffer.get(), size, pugi::parse_minimal | pugi::parse_embed_pcdata, pugi::encoding_utf8);
  times.loadSeconds = SecondsNow() - start;
  if (!result) throw std::runtime_error(std::string("pugixml: ") + result.description());

  const pugi::xml_node tracks = document.document_element().first_child().child("dict");
  for (const pugi::xml_node track : tracks.children("dict")) times.songCount += track ? 1 : 0;

  const double end = SecondsNow();
  document.reset();
  buffer.reset();
  times.releaseSeconds = SecondsNow() - end;
  return times;
}

}  // namespace tavrel::bench

#else

namespace tavrel::bench {

bool HasPugixml() noexcept {
  return false;
}

LoadTimes LoadWithPugixml(const std::string&) {
  throw std::runtime_error("built without pugixml");
}

}  // namespace tavrel::bench

#endif
