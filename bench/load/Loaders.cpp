#include "bench/load/Loaders.h"

namespace tavrel::bench {

std::vector<Program> AllPeers() {
  std::vector<Program> peers;
#if defined(TAVREL_HAS_PUGIXML)
  peers.push_back(PugixmlProgram());
  peers.push_back(PugixmlHugeProgram());
#endif
#if defined(TAVREL_HAS_RAPIDXML)
  peers.push_back(RapidxmlProgram());
#endif
#if defined(TAVREL_HAS_EXPAT)
  peers.push_back(ExpatProgram());
#endif
#if defined(TAVREL_HAS_LIBXML)
  peers.push_back(LibxmlProgram());
#endif
#if defined(TAVREL_HAS_LIBPLIST)
  peers.push_back(LibplistProgram());
#endif
  if (HasPlistlib()) peers.push_back(PlistlibProgram());
  return peers;
}

}  // namespace tavrel::bench
