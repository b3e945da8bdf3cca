// Where text goes, piece by piece.
#pragma once

#include <string_view>

namespace tavrel::host {

class Sink {
 public:
  virtual ~Sink() = default;

  // What cannot be written is a Failure.
  virtual void Write(std::string_view text) = 0;
  void WriteLine(std::string_view text) {
    Write(text);
    Write("\n");
  }
};

}  // namespace tavrel::host
