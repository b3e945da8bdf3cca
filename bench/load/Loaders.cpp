#include "bench/load/Loaders.h"

namespace tavrel::bench {

std::vector<Loader> AllPeers() {
  std::vector<Loader> peers;
#if defined(TAVREL_HAS_PUGIXML)
  peers.push_back(PugixmlLoader());
  peers.push_back(PugixmlHugeLoader());
#endif
#if defined(TAVREL_HAS_RAPIDXML)
  peers.push_back(RapidxmlLoader());
#endif
#if defined(TAVREL_HAS_EXPAT)
  peers.push_back(ExpatLoader());
#endif
#if defined(TAVREL_HAS_LIBXML)
  peers.push_back(LibxmlLoader());
#endif
#if defined(TAVREL_HAS_LIBPLIST)
  peers.push_back(LibplistLoader());
#endif
  if (HasPlistlib()) peers.push_back(PlistlibLoader());
  return peers;
}

}  // namespace tavrel::bench
