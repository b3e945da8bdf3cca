#include "unit/xml/LiteralPass.h"

namespace tavrel::test {
namespace {

bool IsBlank(char byte) {
  return std::string_view(" \t\n\v\f\r").find(byte) != std::string_view::npos;
}

}  // namespace

LiteralPass::LiteralPass(std::string_view text)
    : bytes_(std::string(text) + '\0'), inUse_(bytes_.size(), true) {
  Run();
}

void LiteralPass::Run() {
  for (;;) {
    const std::size_t open = Find("<", position_);
    if (open == kNone) return;
    if (Begins(open, "<!--")) {
      const std::size_t end = Find("-->", open);
      if (end == kNone) return;
      position_ = end + 3;
      continue;
    }
    if (Begins(open, "<![CDATA[")) {
      if (!TakeSection(open)) return;
      continue;
    }
    const std::size_t close = TagEnd(open);
    if (close == kNone) return;
    bytes_[close] = '\0';
    bytes_[open] = '\0';
    position_ = close + 1;
    const char kind = bytes_[open + 1];
    if (kind == '?' || kind == '!') continue;
    if (kind == '/') {
      CloseElement();
    } else {
      OpenElement(open, close);
    }
  }
}

bool LiteralPass::TakeSection(std::size_t open) {
  const std::size_t end = Find("]]>", open);
  if (end == kNone) return false;
  std::size_t next = Find("<", end);
  while (next != kNone && Begins(next, "<![CDATA[")) {
    const std::size_t nextEnd = Find("]]>", next);
    if (nextEnd == kNone) return false;
    next = Find("<", nextEnd);
  }
  if (next == kNone) return false;
  MoveLeft(open + 9, end - open - 9, 9);
  MoveLeft(end + 3, next - end - 3, 12);
  for (std::size_t i = next - 12; i < next; ++i) bytes_[i] = ' ';
  position_ = end - 9;
  return true;
}

std::size_t LiteralPass::TagEnd(std::size_t open) const {
  std::size_t close = FindAnyOf("<>", open + 1);
  while (close != kNone && Begins(close, "<![CDATA[")) {
    const std::size_t end = Find("]]>", close);
    if (end == kNone) return kNone;
    close = FindAnyOf("<>", end + 3);
  }
  return close;
}

void LiteralPass::CloseElement() {
  if (open_ == kNone) return;
  LiteralElement& element = elements_[open_];
  if (element.text != kNone) {
    while (IsBlank(bytes_[element.text])) ++element.text;
    std::size_t last = element.text;
    while (bytes_[last] != '\0') ++last;
    for (--last; last != kNone && last > element.text && IsBlank(bytes_[last]); --last) {
      bytes_[last] = '\0';
    }
  }
  open_ = element.parentElement;
  if (open_ != kNone && elements_[open_].firstChild != kNone) elements_[open_].text = kNone;
}

void LiteralPass::OpenElement(std::size_t open, std::size_t close) {
  const char beforeClose = bytes_[close - 1];
  const std::size_t index = elements_.size();
  LiteralElement& element = elements_.emplace_back();
  element.name = open + 1;
  if (open_ != kNone) {
    LiteralElement& parent = elements_[open_];
    if (parent.currentChild != kNone) {
      elements_[parent.currentChild].nextSibling = index;
      element.previousSibling = parent.currentChild;
    } else {
      parent.firstChild = index;
    }
    parent.currentChild = index;
    element.parentElement = open_;
  }
  const std::size_t nameEnd = FindAnyOf(" /", element.name);
  if (nameEnd != kNone) {
    bytes_[nameEnd] = '\0';
    ScanAttributes(element, nameEnd + 1, close);
  }
  if (beforeClose != '/') {
    open_ = index;
    if (bytes_[close + 1] != '>') element.text = close + 1;
  }
}

void LiteralPass::ScanAttributes(LiteralElement& element, std::size_t from, std::size_t to) {
  int state = 0;
  LiteralAttribute pending;
  char quote = '\0';
  for (std::size_t at = from; at <= to; ++at) {
    const char byte = bytes_[at];
    if (state == 0) {
      if (IsBlank(byte)) continue;
      pending.name = at;
      state = 1;
    } else if (state == 1) {
      if (!IsBlank(byte) && byte != '=') continue;
      bytes_[at] = '\0';
      state = 2;
    } else if (state == 2) {
      if (byte != '"' && byte != '\'') continue;
      pending.value = at + 1;
      quote = byte;
      state = 3;
    } else if (state == 3) {
      if (byte == '<' && Begins(at, "<![CDATA[")) {
        state = 4;
      } else if (byte == quote) {
        bytes_[at] = '\0';
        RemoveMarkers(pending.value);
        element.attributes.push_back(pending);
        pending = {};
        state = 0;
      }
    } else if (byte == ']' && Begins(at, "]]>")) {
      state = 3;
    }
  }
}

void LiteralPass::RemoveMarkers(std::size_t value) {
  const std::size_t formerEnd = bytes_.find('\0', value);
  for (;;) {
    const std::size_t opener = Find("<![CDATA[", value);
    if (opener == kNone) break;
    std::size_t end = bytes_.find('\0', value);
    MoveLeft(opener + 9, end + 1 - (opener + 9), 9);
    const std::size_t marker = Find("]]>", opener);
    if (marker == kNone) break;
    end = bytes_.find('\0', value);
    MoveLeft(marker + 3, end + 1 - (marker + 3), 3);
  }
  for (std::size_t i = bytes_.find('\0', value) + 1; i <= formerEnd; ++i) inUse_[i] = false;
}

std::size_t LiteralPass::Find(std::string_view what, std::size_t from) const {
  const std::size_t found = bytes_.find(what, from);
  return found < bytes_.find('\0', from) ? found : kNone;
}

std::size_t LiteralPass::FindAnyOf(std::string_view bytes, std::size_t from) const {
  const std::size_t found = bytes_.find_first_of(bytes, from);
  return found < bytes_.find('\0', from) ? found : kNone;
}

bool LiteralPass::Begins(std::size_t at, std::string_view what) const {
  return bytes_.compare(at, what.size(), what) == 0;
}

void LiteralPass::MoveLeft(std::size_t from, std::size_t count, std::size_t distance) {
  for (std::size_t i = from; i < from + count; ++i) bytes_[i - distance] = bytes_[i];
}

}  // namespace tavrel::test
