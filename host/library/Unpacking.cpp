#include "host/library/Unpacking.h"

#include <errno.h>
#include <poll.h>
#include <unistd.h>
#include <zlib.h>

#include <new>
#include <string_view>
#include <vector>

#include "system/Files.h"

namespace tavrel::host {
namespace {

constexpr std::size_t kUnpackedAtOnce = 1 << 18;
constexpr std::string_view kGzipStart = "\x1F\x8B";
constexpr int kGzipWindow = 15 + 16;  // the largest window, with a header of gzip's

// Reads until the piece is full or the input ends; false on an error.
bool ReadPiece(int from, std::vector<char>& piece) {
  piece.resize(kUnpackedAtOnce);
  std::size_t length = 0;
  while (length < piece.size()) {
    const ssize_t got = ::read(from, piece.data() + length, piece.size() - length);
    if (got == 0) break;
    if (got > 0) {
      length += static_cast<std::size_t>(got);
    } else if (errno == EAGAIN) {
      // A pipe that somebody else has made non-blocking.
      pollfd wait{from, POLLIN, 0};
      ::poll(&wait, 1, -1);
    } else if (errno != EINTR) {
      return false;
    }
  }
  piece.resize(length);
  return true;
}

// Takes the bytes, up to the limit.
class Target {
 public:
  Target(int to, std::int64_t most) : to_(to), left_(most) {}

  [[nodiscard]] Unpacked Write(std::string_view bytes) {
    left_ -= static_cast<std::int64_t>(bytes.size());
    if (left_ < 0) return Unpacked::TooLarge;
    return system::WriteFully(to_, bytes) ? Unpacked::Whole : Unpacked::NoRoom;
  }

 private:
  int to_;
  std::int64_t left_;
};

// Inflates piece by piece.
class Inflater {
 public:
  explicit Inflater(Target& target) : target_(target), buffer_(kUnpackedAtOnce) {
    if (::inflateInit2(&stream_, kGzipWindow) != Z_OK) throw std::bad_alloc();
  }
  Inflater(const Inflater&) = delete;
  Inflater& operator=(const Inflater&) = delete;
  ~Inflater() { ::inflateEnd(&stream_); }

  [[nodiscard]] Unpacked Take(std::string_view piece) {
    stream_.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(piece.data()));  // only read
    stream_.avail_in = static_cast<uInt>(piece.size());
    while (HasMore()) {
      if (isBetween_) BeginMember();
      if (isOver_) break;
      const Unpacked result = Step();
      if (result != Unpacked::Whole) return result;
    }
    return Unpacked::Whole;
  }

  [[nodiscard]] bool IsComplete() const { return isBetween_ || isOver_; }

 private:
  // Also output that had no room yet may be left when all input is taken.
  [[nodiscard]] bool HasMore() const {
    return !isOver_ && (stream_.avail_in > 0 || (isFull_ && !isBetween_));
  }

  // A further member begins as the first one does; anything else is no part of the data.
  void BeginMember() {
    isOver_ = *stream_.next_in != static_cast<Bytef>(kGzipStart[0]);
    if (isOver_) return;
    ::inflateReset(&stream_);
    isBetween_ = false;
  }

  Unpacked Step() {
    stream_.next_out = reinterpret_cast<Bytef*>(buffer_.data());
    stream_.avail_out = static_cast<uInt>(buffer_.size());
    const int result = ::inflate(&stream_, Z_NO_FLUSH);
    if (result == Z_MEM_ERROR) throw std::bad_alloc();
    const Unpacked written = target_.Write({buffer_.data(), buffer_.size() - stream_.avail_out});
    if (written != Unpacked::Whole) return written;
    isBetween_ = result == Z_STREAM_END;
    isFull_ = stream_.avail_out == 0;
    return result == Z_OK || isBetween_ || result == Z_BUF_ERROR ? Unpacked::Whole
                                                                 : Unpacked::Damaged;
  }

  Target& target_;
  std::vector<char> buffer_;
  z_stream stream_ = {};
  bool isFull_ = false;     // the last step filled the buffer
  bool isBetween_ = false;  // behind a member
  bool isOver_ = false;     // behind the last one
};

Unpacked Inflate(int from, std::vector<char>& piece, Target& target) {
  Inflater inflater(target);
  while (!piece.empty()) {
    const Unpacked result = inflater.Take({piece.data(), piece.size()});
    if (result != Unpacked::Whole) return result;
    if (!ReadPiece(from, piece)) return Unpacked::NoInput;
  }
  return inflater.IsComplete() ? Unpacked::Whole : Unpacked::CutOff;
}

}  // namespace

Unpacked Unpack(int from, int to, std::int64_t most) {
  Target target(to, most);
  std::vector<char> piece;
  if (!ReadPiece(from, piece)) return Unpacked::NoInput;
  if (std::string_view(piece.data(), piece.size()).starts_with(kGzipStart)) {
    return Inflate(from, piece, target);
  }
  while (!piece.empty()) {
    const Unpacked result = target.Write({piece.data(), piece.size()});
    if (result != Unpacked::Whole) return result;
    if (!ReadPiece(from, piece)) return Unpacked::NoInput;
  }
  return Unpacked::Whole;
}

}  // namespace tavrel::host
