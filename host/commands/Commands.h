// What the program can do: a file for each command, which defines its own part of the command line.
//
// A new command is a file with its function here, and a line in Commands.cpp.
#pragma once

#include "host/arguments/CommandDefinition.h"

namespace tavrel::host {

// All of them, in the order in which help shows them.
void DefineCommands(CommandDefinition program);

void DefineArtwork(CommandDefinition program);
void DefineCheck(CommandDefinition program);
void DefineExport(CommandDefinition program);
void DefinePage(CommandDefinition program);
void DefineCopy(CommandDefinition program);
void DefinePlaylists(CommandDefinition program);
void DefineRingtones(CommandDefinition program);
void DefineRingtoneAdding(CommandDefinition ringtones);
void DefineSearch(CommandDefinition program);
void DefineSongs(CommandDefinition program);
void DefineStatistics(CommandDefinition program);

// Without a command.
[[nodiscard]] ExitCode ShowOverview(Session& session);

}  // namespace tavrel::host
