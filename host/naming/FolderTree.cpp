#include "host/naming/FolderTree.h"

#include "host/output/Text.h"

namespace tavrel::host {
namespace {

std::string Joined(const std::string& parent, const std::string& name) {
  return parent.empty() ? name : parent + '/' + name;
}

}  // namespace

std::string FolderTree::Folder(const std::string& parent, std::string_view text) {
  std::string& path = rooms_[parent].folders[FoldFileName(SafeName(text))];
  if (path.empty()) path = NewFolder(parent, text);
  return path;
}

std::string FolderTree::NewFolder(const std::string& parent, std::string_view text) {
  return NewFile(parent, text, {});
}

std::string FolderTree::NewFile(const std::string& parent, std::string_view text,
                                std::string_view extension) {
  return Joined(parent, rooms_[parent].names.Take(SafeName(text), extension));
}

}  // namespace tavrel::host
