#include <plist/plist.h>

#include <stdexcept>

#include "bench/load/Loaders.h"
#include "bench/support/WholeFile.h"

namespace tavrel::bench {
namespace {

LoadFigures LoadWithLibplist(const std::string& path) {
  LoadMeter meter;
  std::size_t size = 0;
  Buffer buffer = ReadWholeFile(path, size);
  plist_t root = nullptr;
  plist_from_xml(buffer.get(), static_cast<std::uint32_t>(size), &root);
  meter.Loaded();
  if (root == nullptr) throw std::runtime_error("libplist cannot parse the file");
  meter.Found(plist_dict_get_size(plist_dict_get_item(root, "Tracks")));

  meter.ReleaseBegins();
  plist_free(root);
  buffer.reset();
  return meter.Released();
}

}  // namespace

Loader LibplistLoader() {
  return {kLibplist, TAVREL_LIBPLIST_VERSION, true, LoadWithLibplist};
}

}  // namespace tavrel::bench
