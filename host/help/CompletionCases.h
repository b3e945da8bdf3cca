// What bash and zsh have in common: a function that follows the words of a command line.
#pragma once

#include <string>

#include "host/arguments/CommandSummary.h"

namespace tavrel::host {

// The function _tavrel_answers. Called with the words before the one to be completed, it sets what may stand
// there, in variables of its caller:
//   choices  words, one a line; what a word is stands behind it and a colon
//   commas   not empty: several of the choices may stand there, parted by commas
//   files    not empty: files, too
//   lists    not empty: the names of playlists, too
//   library  an array: what was given of the program's own options that take a value
// It asks the caller's `word` for one thing: whether an option was begun.
[[nodiscard]] std::string CompletionCases(const CommandSummary& program);

}  // namespace tavrel::host
