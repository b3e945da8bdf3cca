// Whether two programs that are compared have given the same answer.
#pragma once

#include <string>

namespace tavrel::bench {

// task: what the peer's script calls it. ours: the output of tavrel, JSON where it has an answer of few lines.
// Throws std::runtime_error when theirs is another.
void Compare(const std::string& task, const std::string& ours, const std::string& theirs);

}  // namespace tavrel::bench
