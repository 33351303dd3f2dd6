// SPDX-License-Identifier: MIT
#include "platform/core/AtomicFile.h"

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tallyscope {

namespace {

constexpr std::size_t kBuffer = 1 << 20;
constexpr int kTries = 100;

// Where a path leads once links are followed; itself when nothing is there yet.
CString FollowLinks(const CString& path) {
  char* resolved = ::realpath(path.c_str(), nullptr);
  if (resolved == nullptr) return path;
  CString place(resolved);
  std::free(resolved);  // NOLINT: realpath takes it from malloc
  return place;
}

CString FolderOf(const CString& path) {
  const auto slash = path.rfind('/');
  if (slash == CString::npos) return ".";
  return slash == 0 ? "/" : path.substr(0, slash);
}

// The new name is on the disk once its folder is. Not every file system can do that, so failure doesn't count.
void FlushFolder(const CString& folder) {
  const int file = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (file < 0) return;
  ::fsync(file);
  ::close(file);
}

}  // namespace

CAtomicFile::CAtomicFile(CString target) : target_(std::move(target)), place_(FollowLinks(target_)) {
  if (target_.empty()) {
    Fail(ENOENT);
    return;
  }
  struct stat status {};
  const bool exists = ::stat(place_.c_str(), &status) == 0;
  if (exists && S_ISDIR(status.st_mode)) {
    Fail(EISDIR);
    return;
  }
  // A file that was made read-only isn't replaced behind its owner's back.
  if (exists && ::access(place_.c_str(), W_OK) != 0) {
    Fail(errno);
    return;
  }
  if (exists && !S_ISREG(status.st_mode)) {
    file_ = ::open(place_.c_str(), O_WRONLY | O_CLOEXEC);
    if (file_ < 0) Fail(errno);
    return;
  }
  if (OpenBeside(place_) && exists) ::fchmod(file_, status.st_mode & 07777);
}

CAtomicFile::~CAtomicFile() {
  Discard();
}

bool CAtomicFile::OpenBeside(const CString& place) {
  const CString stem = place + "." + std::to_string(::getpid()) + ".";
  for (int i = 0; i < kTries; ++i) {
    temporary_ = stem + std::to_string(i) + ".tmp";
    file_ = ::open(temporary_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (file_ >= 0) return true;
    if (errno != EEXIST) break;
  }
  const int number = errno;
  temporary_.clear();  // not ours
  return Fail(number);
}

bool CAtomicFile::Write(std::string_view text) {
  if (!IsGood() || file_ < 0) return false;
  buffer_.append(text);
  return buffer_.size() < kBuffer || Flush();
}

bool CAtomicFile::Flush() {
  for (std::size_t done = 0; done < buffer_.size();) {
    const auto written = ::write(file_, buffer_.data() + done, buffer_.size() - done);
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return Fail(written < 0 ? errno : EIO);
    done += static_cast<std::size_t>(written);
  }
  buffer_.clear();
  return true;
}

bool CAtomicFile::Commit() {
  if (!IsGood() || file_ < 0 || !Flush()) return false;
  if (!temporary_.empty() && ::fsync(file_) != 0) return Fail(errno);
  if (::close(std::exchange(file_, -1)) != 0) return Fail(errno);
  if (temporary_.empty()) return true;
  if (std::rename(temporary_.c_str(), place_.c_str()) != 0) return Fail(errno);
  temporary_.clear();
  FlushFolder(FolderOf(place_));
  return true;
}

bool CAtomicFile::Fail(int number) {
  const char* const words = strerrordesc_np(number);  // never translated, as our other sentences are not
  errorNumber_ = number;
  error_ = target_ + " can't be written: " + (words != nullptr ? words : "unknown error") + ".";
  Discard();
  return false;
}

void CAtomicFile::Discard() {
  if (file_ >= 0) ::close(std::exchange(file_, -1));
  if (!temporary_.empty()) ::unlink(temporary_.c_str());
  temporary_.clear();
  buffer_.clear();
}

}  // namespace tallyscope
