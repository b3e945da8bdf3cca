// The paths that locations in library files name, and those that the user writes in their stead. All begin
// with '/':
//
//   file:///Users/me/x.mp3              /Users/me/x.mp3
//   file://localhost/C:/Music/x.mp3     /C:/Music/x.mp3      a drive of Windows
//   file://localhost//nas/music/x.mp3   //nas/music/x.mp3    a share of another machine
//   file://nas/music/x.mp3              //nas/music/x.mp3    the same
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tavrel::host {

// The path without a '/' at the end; of the root itself that one '/' is left.
[[nodiscard]] std::string WithoutSlashAtEnd(std::string path);

// None for a URL that is malformed, whose path holds a NUL or is not UTF-8.
[[nodiscard]] std::optional<std::string> WrittenPath(std::string_view fileUrl);

// What the user calls a place of the library: one of the forms above, or C:\Music, C:/Music, \\nas\music.
// Without a '/' at the end. None when it is no full path.
[[nodiscard]] std::optional<std::string> FullPath(std::string_view text);

// A path as such paths compare: accents composed, the letter of a drive and the name of a machine in lower
// case. It has as many '/' as the path.
[[nodiscard]] std::string ComparablePath(std::string_view path);

// How many of the folders of `path`, from its start on, are those of `folder`, when it is one of them or the
// folder itself: what is left of the path then. None when it lies elsewhere. Both as ComparablePath() gives
// them; the result is what is left behind as many '/' of `written`, without one in front.
[[nodiscard]] std::optional<std::string_view> RestBelow(std::string_view folder,
                                                        std::string_view path,
                                                        std::string_view written) noexcept;

}  // namespace tavrel::host
