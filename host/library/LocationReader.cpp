#include "host/library/LocationReader.h"

#include <algorithm>

#include "text/FileUrl.h"
#include "text/OrdinaryUrl.h"

namespace tavrel::host {

void LocationReader::Read(std::optional<std::string_view> location, std::string_view type,
                          bool isSought) {
  fileUrl_.reset();
  ordinary_.reset();
  if (location && text::IsFileUrl(*location)) {
    fileUrl_ = location;
    ReadOrdinary(*location);
  }
  file_ = {};
  if (!isSought || files_ == nullptr) return;
  file_ = ordinary_ ? files_->FindPath(*ordinary_) : files_->Find(location, type);
}

void LocationReader::ReadOrdinary(std::string_view url) {
  ordinaryRoom_.resize(std::max(ordinaryRoom_.size(), url.size()));
  char* const path = ordinaryRoom_.data();
  const std::size_t name = url.rfind('/') + 1;
  if (url.substr(0, name) != folderUrl_) {
    folderUrl_ = url.substr(0, name);
    const auto folder = text::PathOfOrdinaryUrl(folderUrl_.c_str(), path);
    folderLength_ = folder ? *folder + 1 : 0;
  }
  if (folderLength_ == 0) return;
  const auto length = text::PathOfOrdinaryName(url.data() + name, path, folderLength_);
  if (length) ordinary_ = std::string_view(ordinaryRoom_).substr(0, *length);
}

std::optional<std::string_view> LocationReader::WrittenPath() {
  if (ordinary_ || !fileUrl_) return ordinary_;
  other_ = text::PathOfUrl(*fileUrl_);
  return other_ ? std::optional<std::string_view>(*other_) : std::nullopt;
}

}  // namespace tavrel::host
