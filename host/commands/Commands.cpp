#include "host/commands/Commands.h"

namespace tavrel::host {

void DefineCommands(CommandDefinition program) {
  DefineArtwork(program);
  DefineCheck(program);
  DefineExport(program);
  DefinePage(program);
  DefineCopy(program);
  DefinePlaylists(program);
  DefineRingtones(program);
  DefineSearch(program);
  DefineSongs(program);
  DefineStatistics(program);
}

}  // namespace tavrel::host
