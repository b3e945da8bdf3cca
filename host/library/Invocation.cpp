#include "host/library/Invocation.h"

namespace tavrel::host {
namespace {

bool IsPlain(char character) {
  constexpr std::string_view kPlain = "%+,-./:=@_";
  return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
         (character >= '0' && character <= '9') ||
         kPlain.find(character) != std::string_view::npos ||
         (static_cast<unsigned char>(character) & 0x80u) != 0;
}

bool IsPlain(std::string_view word) {
  for (const char character : word) {
    if (!IsPlain(character)) return false;
  }
  return !word.empty();
}

}  // namespace

std::string Quoted(std::string_view word) {
  if (IsPlain(word)) return std::string(word);
  std::string quoted = "'";
  for (const char character : word) {
    if (character == '\'') {
      quoted += "'\\''";
    } else {
      quoted += character;
    }
  }
  return quoted + "'";
}

std::string Invocation(const Options& options, std::string_view rest) {
  std::string text = "tavrel ";
  if (options.home) text += "--home " + Quoted(*options.home) + " ";
  if (options.library && !options.isLibraryOfEnvironment) {
    text += "-l " + Quoted(*options.library) + " ";
  }
  if (options.paths.music) text += "--music " + Quoted(*options.paths.music) + " ";
  for (const std::string& map : options.paths.maps) text += "--map " + Quoted(map) + " ";
  return text.append(rest);
}

}  // namespace tavrel::host
