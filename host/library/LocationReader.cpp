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
    ordinaryRoom_.resize(std::max(ordinaryRoom_.size(), location->size()));
    if (const auto length = text::PathOfOrdinaryUrl(location->data(), ordinaryRoom_.data())) {
      ordinary_ = std::string_view(ordinaryRoom_).substr(0, *length);
    }
  }
  file_ = {};
  if (!isSought || files_ == nullptr) return;
  file_ = ordinary_ ? files_->FindPath(*ordinary_) : files_->Find(location, type);
}

std::optional<std::string_view> LocationReader::WrittenPath() {
  if (ordinary_ || !fileUrl_) return ordinary_;
  other_ = text::PathOfUrl(*fileUrl_);
  return other_ ? std::optional<std::string_view>(*other_) : std::nullopt;
}

}  // namespace tavrel::host
