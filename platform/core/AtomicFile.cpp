// SPDX-License-Identifier: MIT
#include "platform/core/AtomicFile.h"

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tallyscope {

namespace {

constexpr std::size_t kBuffer = 1 << 20;

struct FreePath {
  void operator()(char* path) const { std::free(path); }  // NOLINT: realpath takes it from malloc
};

}  // namespace

CAtomicFile::CAtomicFile(CString target) : target_(std::move(target)) {
  Open();
}

bool CAtomicFile::Open() {
  if (target_.empty()) return Fail(ENOENT);
  if (target_.find('\0') != CString::npos) return Fail(EINVAL);
  struct stat status {};
  if (::stat(target_.c_str(), &status) != 0) {
    if (errno != ENOENT) return Fail(errno);
    if (::lstat(target_.c_str(), &status) == 0) return Fail(ENOENT, "it is a symbolic link that leads nowhere");
    return OpenBeside(target_, nullptr);
  }
  if (S_ISDIR(status.st_mode)) return Fail(EISDIR);
  // A file that was made read-only isn't replaced behind its owner's back.
  if (::faccessat(AT_FDCWD, target_.c_str(), W_OK, AT_EACCESS) != 0) return Fail(errno);
  if (!S_ISREG(status.st_mode)) return OpenStraight();
  struct stat link {};
  if (::lstat(target_.c_str(), &link) != 0 || !S_ISLNK(link.st_mode)) return OpenBeside(target_, &status);
  const std::unique_ptr<char, FreePath> place(::realpath(target_.c_str(), nullptr));
  if (place) return OpenBeside(place.get(), &status);
  // A file that has no name any more can still be reached through an open handle, as /dev/fd/3.
  return errno == ENOENT ? OpenStraight() : Fail(errno);
}

bool CAtomicFile::OpenStraight() {
  straight_ = ::open(target_.c_str(), O_WRONLY | O_TRUNC | O_CLOEXEC);
  return straight_ >= 0 || Fail(errno);
}

bool CAtomicFile::OpenBeside(const CString& place, const struct stat* old) {
  const auto slash = place.rfind('/');
  const CString folder = slash == CString::npos ? "." : place.substr(0, slash + 1);
  const CString name = slash == CString::npos ? place : place.substr(slash + 1);
  if (name.empty()) return Fail(EISDIR);
  const int number = temporary_.Open(folder, name, old);
  return number == 0 || Fail(number);
}

bool CAtomicFile::Write(std::string_view text) {
  if (!IsGood() || GetHandle() < 0) return false;
  buffer_.append(text);
  return buffer_.size() < kBuffer || Flush();
}

bool CAtomicFile::Flush() {
  for (std::size_t done = 0; done < buffer_.size();) {
    const auto written = ::write(GetHandle(), buffer_.data() + done, buffer_.size() - done);
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return Fail(written < 0 ? errno : EIO);
    done += static_cast<std::size_t>(written);
  }
  buffer_.clear();
  return true;
}

bool CAtomicFile::Commit() {
  if (!IsGood() || GetHandle() < 0 || !Flush()) return false;
  if (straight_ >= 0) return ::close(std::exchange(straight_, -1)) == 0 || Fail(errno);
  if (::fsync(GetHandle()) != 0) return Fail(errno);
  const int number = temporary_.TakePlace();
  return number == 0 || Fail(number);
}

bool CAtomicFile::Fail(int number, const char* words) {
  if (words == nullptr) words = strerrordesc_np(number);  // never translated, as our other sentences are not
  errorNumber_ = number;
  error_ = target_ + " can't be written: " + (words != nullptr ? words : "unknown error") + ".";
  Discard();
  return false;
}

void CAtomicFile::Discard() {
  if (straight_ >= 0) ::close(std::exchange(straight_, -1));
  temporary_.Discard();
  buffer_.clear();
}

}  // namespace tallyscope
