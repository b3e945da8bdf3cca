#include "host/commands/SongColumns.h"

#include <algorithm>
#include <array>

#include "host/output/EditDistance.h"
#include "host/output/Failure.h"
#include "host/output/Format.h"
#include "host/output/Text.h"

namespace tavrel::host {
namespace {

constexpr std::size_t kWidestLine = 78;  // of a message
constexpr std::size_t kFieldIndent = 3;
constexpr std::size_t kLongestField = 40;  // in bytes; no name of a field comes near

// What people call a field that goes by another name here.
struct FieldGuess {
  std::string_view word;
  Field field;
};

constexpr std::array kGuesses{
    FieldGuess{"title", Field::Name},       FieldGuess{"song", Field::Name},
    FieldGuess{"time", Field::Seconds},     FieldGuess{"duration", Field::Seconds},
    FieldGuess{"length", Field::Seconds},   FieldGuess{"date", Field::Added},
    FieldGuess{"stars", Field::Rating},     FieldGuess{"count", Field::Plays},
    FieldGuess{"number", Field::Track},     FieldGuess{"file", Field::Path},
    FieldGuess{"url", Field::Location},     FieldGuess{"format", Field::Kind},
    FieldGuess{"comment", Field::Comments}, FieldGuess{"episodeOrder", Field::Episode},
};

std::string WithoutBlanks(std::string_view text) {
  std::string rest(text);
  rest.erase(std::remove(rest.begin(), rest.end(), ' '), rest.end());
  return rest;
}

std::string_view NearestField(const std::string& folded) {
  const EditDistance distance(folded);
  std::string_view nearest;
  std::size_t least = std::max<std::size_t>(2, folded.size() / 3) + 1;
  for (const FieldFacts& field : kFields) {
    const std::size_t far = distance.To(Fold(field.name));
    if (far >= least) continue;
    least = far;
    nearest = field.name;
  }
  return nearest;
}

// The field that is guessed at, called by its key in the file, or mistyped; empty when none is near.
std::string_view MeantBy(std::string_view name) {
  const std::string folded = Fold(WithoutBlanks(name));
  for (const FieldGuess& guess : kGuesses) {
    if (Fold(guess.word) == folded) return FactsOf(guess.field).name;
  }
  for (const FieldFacts& field : kFields) {
    if (Fold(WithoutBlanks(field.key)) == folded) return field.name;
    if (Fold(WithoutBlanks(field.heading)) == folded) return field.name;
  }
  return NearestField(folded.substr(0, kLongestField));
}

Failure NoSuchField(std::string_view name) {
  std::string message = "there is no field \"" + Clean(name) + '"';
  if (name.empty()) message = "a name of a field is missing";
  const std::string_view meant = name.empty() ? name : MeantBy(name);
  if (!meant.empty()) message.append("; do you mean ").append(meant).append("?");
  if (name.starts_with('-')) message += " --reverse turns the order round.";
  message += "\n  The fields are:";
  std::size_t column = message.size() - message.rfind('\n');
  for (const FieldFacts& field : kFields) {
    column += 1 + field.name.size();
    if (column > kWidestLine) {
      message += "\n   ";
      column = kFieldIndent + 1 + field.name.size();
    }
    message.append(" ").append(field.name);
  }
  return {ExitCode::Usage, message};
}

std::string_view WithoutBlanksAround(std::string_view text) {
  while (text.starts_with(' ')) text.remove_prefix(1);
  while (text.ends_with(' ')) text.remove_suffix(1);
  return text;
}

}  // namespace

FieldSet SongColumns::Wanted() const {
  FieldSet wanted;
  for (const Field field : fields) wanted.set(IndexOf(field));
  return wanted;
}

std::string NameOfKey(std::string_view key) {
  constexpr std::string_view kMark = "key:";
  constexpr std::string_view kLists = "lists";  // which a search can add
  const bool isOurs =
      key == kLists || std::any_of(kFields.begin(), kFields.end(),
                                   [key](const FieldFacts& field) { return field.name == key; });
  const bool isMarked = isOurs || key.starts_with(kMark);
  return std::string(isMarked ? kMark : "").append(key);
}

std::vector<Field> AllFields() {
  std::vector<Field> fields;
  for (std::size_t i = 0; i < kFieldCount; ++i) fields.push_back(static_cast<Field>(i));
  return fields;
}

std::vector<Field> ParseFields(std::string_view text, bool* isAll) {
  if (isAll != nullptr) *isAll = text == "all";
  if (isAll != nullptr && *isAll) return AllFields();
  std::vector<Field> fields;
  for (;;) {
    const std::size_t comma = text.find(',');
    const std::string_view name = WithoutBlanksAround(text.substr(0, comma));
    const std::optional<Field> field = FindField(name);
    if (!field) throw NoSuchField(name);
    fields.push_back(*field);
    if (comma == std::string_view::npos) return fields;
    text.remove_prefix(comma + 1);
  }
}

std::string ShownValue(const SongRecord& song, Field field) {
  constexpr std::size_t kDay = 10;
  constexpr std::size_t kMinute = 16;
  const std::string_view value = song.Text(field).value_or("");
  switch (FactsOf(field).type) {
    case FieldType::Seconds:
      return Clock(song.Milliseconds());
    case FieldType::Flag:
      return value == "true" ? "yes" : "";
    case FieldType::Date:
      if (value.empty()) return {};
      return std::string(value.substr(0, kDay)) + ' ' +
             std::string(value.substr(kDay + 1, kMinute - kDay - 1));
    case FieldType::Text:
    case FieldType::Number:
      break;
  }
  return std::string(value);
}

Column ColumnOf(Field field) {
  const FieldFacts& facts = FactsOf(field);
  const bool isNumber = facts.type == FieldType::Number || facts.type == FieldType::Seconds;
  return {.title = facts.heading,
          .align = isNumber ? Align::Right : Align::Left,
          .weight = facts.weight,
          .cut = field == Field::Name ? Cut::Middle : Cut::End};
}

}  // namespace tavrel::host
