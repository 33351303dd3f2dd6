// SPDX-License-Identifier: MIT
#include "host/TextSource.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace tallyscope {

namespace {

CString Because(const CString& path, int reason) {
  const char* const words = strerrordesc_np(reason);  // never translated, as our other sentences are not
  return path + " can't be read: " + (words != nullptr ? words : "unknown error") + ".";
}

}  // namespace

CTextSource::~CTextSource() {
  if (map_ != nullptr) munmap(map_, text_.size());
  if (file_ >= 0) close(file_);
}

bool CTextSource::Open(const CString& path, CString& error) {
  file_ = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (file_ < 0) {
    error = errno == ENOENT ? "There is no file " + path + "." : Because(path, errno);
    return false;
  }
  struct stat facts {};
  if (fstat(file_, &facts) != 0) {
    error = Because(path, errno);
    return false;
  }
  if (S_ISDIR(facts.st_mode)) {
    error = path + " is a folder, not a table.";
    return false;
  }
  // Files that the system makes up as they are read say that they are empty, so they are read as streams.
  const bool mapped = S_ISREG(facts.st_mode) && facts.st_size > 0 && Map(static_cast<std::size_t>(facts.st_size));
  if (!mapped && !ReadStream(path, error)) return false;
  if (!text_.empty()) return true;
  error = path + " is empty.";
  return false;
}

bool CTextSource::Map(std::size_t size) {
  void* map = mmap(nullptr, size, PROT_READ, MAP_PRIVATE, file_, 0);
  if (map == MAP_FAILED) return false;
  map_ = map;
  text_ = {static_cast<const char*>(map), size};
  madvise(map_, size, MADV_SEQUENTIAL);
  return true;
}

bool CTextSource::ReadStream(const CString& path, CString& error) {
  constexpr std::size_t kPiece = std::size_t{1} << 20;
  std::size_t used = 0;
  for (;;) {
    if (used > kStreamLimit) {
      error = path + " goes on for more than 4 GB: save it as a file first.";
      return false;
    }
    if (used == stream_.size()) stream_.resize(used + std::max(kPiece, used / 2));
    const ssize_t got = read(file_, stream_.data() + used, stream_.size() - used);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) {
      error = Because(path, errno);
      return false;
    }
    const auto piece = std::string_view(stream_).substr(used, static_cast<std::size_t>(got));
    used += piece.size();
    // A stream of zero bytes may have no end. The reader refuses it for what has come so far.
    if (piece.empty() || (used <= 2 * kPiece && piece.find('\0') != std::string_view::npos)) break;
  }
  stream_.resize(used);
  text_ = stream_;
  return true;
}

bool CTextSource::HasShrunk() const {
  struct stat facts {};
  return map_ != nullptr && fstat(file_, &facts) == 0 && static_cast<std::size_t>(facts.st_size) < text_.size();
}

void CTextSource::Release(std::size_t done) {
  constexpr std::size_t kPiece = std::size_t{4} << 20;
  if (map_ == nullptr || done < released_ + kPiece) return;
  const std::size_t upTo = done / kPiece * kPiece;
  madvise(static_cast<char*>(map_) + released_, upTo - released_, MADV_DONTNEED);
  released_ = upTo;
}

}  // namespace tallyscope
