#include "host/export/Xspf.h"

#include <utility>

#include "host/output/PercentEscaping.h"
#include "host/output/Text.h"
#include "text/FileUrl.h"

namespace tavrel::host {
namespace {

// Of what XML 1.0 has not, UTF-8 has only these.
bool IsInXml(std::int32_t code) {
  const bool isLineEndOrTab = code == '\t' || code == '\n' || code == '\r';
  return code >= 0 && (code >= ' ' || isLineEndOrTab) && code != 0xFFFE && code != 0xFFFF;
}

std::string_view NameOfReference(char letter) {
  switch (letter) {
    case '&':
      return "&amp;";
    case '<':
      return "&lt;";
    case '>':
      return "&gt;";
    default:
      return {};
  }
}

// Nothing for an empty text.
void AppendElement(std::string& xml, std::string_view name, std::string_view text) {
  if (text.empty()) return;
  xml.append("      <").append(name).append(">");
  AppendXmlText(xml, text);
  xml.append("</").append(name).append(">\n");
}

}  // namespace

void AppendXmlText(std::string& xml, std::string_view text) {
  while (!text.empty()) {
    const Character first = FirstCharacter(text);
    const std::string_view reference = NameOfReference(text.front());
    if (!IsInXml(first.code)) {
      xml += kReplacementCharacter;
    } else if (!reference.empty()) {
      xml += reference;
    } else if (IsUnseen(first.code) || first.code == 0x2028 || first.code == 0x2029) {
      xml += "&#" + std::to_string(first.code) + ';';
    } else {
      xml += text.substr(0, first.length);
    }
    text.remove_prefix(first.length);
  }
}

std::string UrlOfPath(std::string_view path) {
  return path.starts_with('/') ? text::FileUrlOfPath(std::string(path))
                               : PercentEscaped(path, "/-._~");
}

XspfText::XspfText(std::string_view name)
    : text_(
          "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
          "<playlist version=\"1\" xmlns=\"http://xspf.org/ns/0/\">\n") {
  text_ += "  <title>";
  AppendXmlText(text_, name);
  text_ += "</title>\n  <trackList>\n";
}

void XspfText::Add(const PlaylistEntry& entry) {
  text_ += "    <track>\n";
  AppendElement(text_, "location",
                entry.url.empty() ? UrlOfPath(entry.written) : std::string(entry.url));
  AppendElement(text_, "title", entry.name.value_or(""));
  AppendElement(text_, "creator", entry.artist.value_or(""));
  AppendElement(text_, "album", entry.album.value_or(""));
  // Both are counts, and no song has the number 0.
  if (entry.track.value_or(0) > 0) AppendElement(text_, "trackNum", std::to_string(*entry.track));
  if (entry.milliseconds > 0) AppendElement(text_, "duration", std::to_string(entry.milliseconds));
  text_ += "    </track>\n";
}

std::string XspfText::Finish() {
  text_ += "  </trackList>\n</playlist>\n";
  return std::move(text_);
}

}  // namespace tavrel::host
