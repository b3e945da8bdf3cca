// Adding a ringtone to iTunes, explained on the way.
#pragma once

#include <string>

#include "host/Commands.h"

namespace tavrel::host {

// file:  as the user wrote it.
// force: send the script also when the path changes it.
// What keeps the file from being added is a Failure, before anything is done.
ExitCode AddRingtone(const std::string& file, bool force, Session& session);

}  // namespace tavrel::host
