// How copied files are to be named: "{albumArtist}/{album}/{track} {name}".
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/library/Fields.h"
#include "host/library/SongRecord.h"

namespace tavrel::host {

inline constexpr const char* kUsualPattern = "{albumArtist}/{album}/{track} {name}";

// Folders, and the file's name without its extension, parted by '/'. A field of docs/fields.md stands between
// braces; "{{" and "}}" are braces themselves. A song without the field leaves out what stands behind it up to
// the next one, too: "07 Nimrod", else "Nimrod".
//
//   {albumArtist}   the artist where there is none, "Various Artists" for a compilation
//   {track} {disc}  of two digits, and as it is
//   {name}          that of the file where there is none
class NamePattern {
 public:
  // A Failure (ExitCode::Usage) for a field that there is not, a brace without its other one, or a name
  // without a letter.
  explicit NamePattern(std::string_view text);

  // What SongRecordReader has to read.
  [[nodiscard]] const FieldSet& Fields() const noexcept { return fields_; }

  // The folders, then the file. They may hold anything but are not empty: what nothing is left of says so
  // ("Unknown Album"). path: of the song's file.
  [[nodiscard]] std::vector<std::string> NamesFor(const SongRecord& song,
                                                  std::string_view path) const;

 private:
  struct Piece {
    std::string text;  // a literal one, when there is no field
    std::optional<Field> field;
  };
  using Name = std::vector<Piece>;

  [[nodiscard]] static Name ParseName(std::string_view text);

  std::vector<Name> names_;
  FieldSet fields_;
};

}  // namespace tavrel::host
