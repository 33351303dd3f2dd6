// SPDX-License-Identifier: MIT
#include "host/TextSource.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

namespace tallyscope {

namespace {

CString Because(const CString& path, int reason) {
  const char* const words = strerrordesc_np(reason);  // never translated, as our other sentences are not
  return path + " can't be read: " + (words != nullptr ? words : "unknown error") + ".";
}

}  // namespace

CTextSource::~CTextSource() {
  if (file_ >= 0) close(file_);
}

// A socket has no name that could be opened, but is open already where it is standard input.
bool CTextSource::OpenFile(const CString& path) {
  file_ = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (file_ < 0 && errno == ENXIO && path == "/dev/stdin") file_ = fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 0);
  return file_ >= 0;
}

bool CTextSource::Open(const CString& path, CString& error) {
  if (!OpenFile(path)) {
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
  if (!S_ISREG(facts.st_mode) || facts.st_size == 0) {
    if (!ReadStream(path, error)) return false;
    close(std::exchange(file_, -1));
  } else {
    size_ = static_cast<std::size_t>(facts.st_size);
    changed_ = facts.st_mtim;
    posix_fadvise(file_, 0, 0, POSIX_FADV_SEQUENTIAL);
  }
  if (size_ > 0) return true;
  error = path + " is empty.";
  return false;
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
  size_ = used;
  return true;
}

std::string_view CTextSource::Look(std::size_t at, std::size_t bytes) {
  at = std::min(at, size_);
  if (file_ < 0) return text_.substr(at);
  const bool overlaps = at >= start_ && at <= start_ + filled_;
  const std::size_t kept = overlaps ? start_ + filled_ - at : 0;
  const char* const keptBytes = window_.get() + (overlaps ? at - start_ : 0);
  if (kept >= std::min(bytes, size_ - at)) return {keptBytes, kept};
  const std::size_t wanted = std::min(std::max(bytes, kWindow), size_ - at);
  if (wanted > room_) {
    auto larger = std::make_unique_for_overwrite<char[]>(wanted);
    if (kept > 0) std::memcpy(larger.get(), keptBytes, kept);
    window_ = std::move(larger);
    room_ = wanted;
  } else if (kept > 0) {
    std::memmove(window_.get(), keptBytes, kept);
  }
  start_ = at;
  filled_ = kept;
  Fill(wanted);
  return {window_.get(), filled_};
}

void CTextSource::Fill(std::size_t wanted) {
  while (filled_ < wanted && !hasChanged_ && readError_ == 0) {
    const ssize_t got = pread(file_, window_.get() + filled_, wanted - filled_, static_cast<off_t>(start_ + filled_));
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) {
      readError_ = errno;
    } else if (got == 0) {
      hasChanged_ = true;  // it was longer
    } else {
      filled_ += static_cast<std::size_t>(got);
    }
  }
}

bool CTextSource::IsUnchanged() {
  struct stat facts {};
  if (file_ < 0) return true;
  if (fstat(file_, &facts) != 0) {
    readError_ = errno;
  } else if (static_cast<std::size_t>(facts.st_size) != size_ || facts.st_mtim.tv_sec != changed_.tv_sec ||
             facts.st_mtim.tv_nsec != changed_.tv_nsec) {
    hasChanged_ = true;
  }
  return !hasChanged_ && readError_ == 0;
}

CString CTextSource::GetFailure(const CString& file) const {
  return readError_ != 0 ? Because(file, readError_) : GetChangedSentence(file);
}

CString GetChangedSentence(const CString& file) {
  return file + " changed while it was read.";
}

}  // namespace tallyscope
