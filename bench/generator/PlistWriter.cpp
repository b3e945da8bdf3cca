#include "bench/generator/PlistWriter.h"

#include <algorithm>
#include <charconv>
#include <chrono>

namespace tavrel::bench {
namespace {

constexpr std::size_t bufferLimit = std::size_t{1} << 20;
constexpr std::size_t dataLineLength = 72;

}  // namespace

PlistWriter::PlistWriter(OutputFile& file) : output(file) {
  buffer.reserve(bufferLimit + (bufferLimit >> 3));
  buffer +=
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      "<!DOCTYPE plist PUBLIC \"-//Apple Computer//DTD PLIST 1.0//EN\" "
      "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
      "<plist version=\"1.0\">\n";
}

void PlistWriter::Begin(std::string_view element) {
  Indent();
  buffer.append("<").append(element).append(">");
  EndLine();
  ++depth;
}

void PlistWriter::End(std::string_view element) {
  --depth;
  Indent();
  buffer.append("</").append(element).append(">");
  EndLine();
}

void PlistWriter::Key(std::string_view key) {
  Open(key);
  EndLine();
}

void PlistWriter::String(std::string_view key, std::string_view value) {
  Open(key);
  buffer += "<string>";
  AppendEscaped(value);
  buffer += "</string>";
  EndLine();
}

void PlistWriter::Integer(std::string_view key, std::uint64_t value) {
  Open(key);
  buffer += "<integer>";
  AppendNumber(value);
  buffer += "</integer>";
  EndLine();
}

void PlistWriter::Boolean(std::string_view key, bool value) {
  Open(key);
  buffer += value ? "<true/>" : "<false/>";
  EndLine();
}

void PlistWriter::Date(std::string_view key, std::uint64_t seconds) {
  using std::chrono::sys_days, std::chrono::days, std::chrono::year_month_day;
  constexpr std::uint64_t secondsADay = 86400;
  const year_month_day date(sys_days(days(static_cast<int>(seconds / secondsADay))));
  const std::uint64_t rest = seconds % secondsADay;
  Open(key);
  buffer += "<date>";
  AppendPadded(static_cast<std::uint64_t>(static_cast<int>(date.year())), 4);
  buffer += '-';
  AppendPadded(static_cast<unsigned>(date.month()), 2);
  buffer += '-';
  AppendPadded(static_cast<unsigned>(date.day()), 2);
  buffer += 'T';
  AppendPadded(rest / 3600, 2);
  buffer += ':';
  AppendPadded(rest / 60 % 60, 2);
  buffer += ':';
  AppendPadded(rest % 60, 2);
  buffer += "Z</date>";
  EndLine();
}

void PlistWriter::PersistentId(std::string_view key, std::uint64_t value) {
  Open(key);
  buffer += "<string>";
  for (int shift = 60; shift >= 0; shift -= 4) buffer += "0123456789ABCDEF"[(value >> shift) & 15];
  buffer += "</string>";
  EndLine();
}

// Unlike everything inside a dictionary, the lines of a data value stand as deep as the key.
void PlistWriter::Data(std::string_view key, std::string_view base64) {
  Key(key);
  Indent();
  buffer += "<data>";
  EndLine();
  while (!base64.empty()) {
    Indent();
    buffer += base64.substr(0, dataLineLength);
    EndLine();
    base64.remove_prefix(std::min(dataLineLength, base64.size()));
  }
  Indent();
  buffer += "</data>";
  EndLine();
}

void PlistWriter::Finish() {
  buffer += "</plist>\n";
  output.Write(buffer);
  buffer.clear();
}

void PlistWriter::Indent() {
  buffer.append(depth, '\t');
}

void PlistWriter::Open(std::string_view key) {
  Indent();
  buffer.append("<key>").append(key).append("</key>");
}

void PlistWriter::AppendNumber(std::uint64_t value) {
  char digits[20];
  const std::to_chars_result end = std::to_chars(std::begin(digits), std::end(digits), value);
  buffer.append(digits, end.ptr);
}

void PlistWriter::AppendPadded(std::uint64_t value, std::size_t digits) {
  const std::size_t start = buffer.size();
  AppendNumber(value);
  const std::size_t written = buffer.size() - start;
  if (written < digits) buffer.insert(start, digits - written, '0');
}

void PlistWriter::AppendEscaped(std::string_view text) {
  while (true) {
    const std::size_t plain = std::min(text.find_first_of("&<>"), text.size());
    buffer += text.substr(0, plain);
    if (plain == text.size()) return;
    buffer += "&#";
    AppendNumber(static_cast<unsigned char>(text[plain]));
    buffer += ';';
    text.remove_prefix(plain + 1);
  }
}

void PlistWriter::EndLine() {
  buffer += '\n';
  if (buffer.size() < bufferLimit) return;
  output.Write(buffer);
  buffer.clear();
}

}  // namespace tavrel::bench
