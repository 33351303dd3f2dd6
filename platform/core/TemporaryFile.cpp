// SPDX-License-Identifier: MIT
#include "platform/core/TemporaryFile.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <charconv>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string_view>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/random.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace tallyscope {

namespace {

// Names that the temporaries of a target share, one after the other, so that forgotten ones are found without listing
// the folder. When all are taken, as somebody might do on purpose in a folder that is open to all, chance gives further
// ones.
constexpr int kNames = 32;
constexpr int kTries = 2 * kNames;
constexpr std::size_t kNameRoom = 64;
constexpr const char* kAccessList = "system.posix_acl_access";

// FNV-1a, 64 bits.
std::uint64_t Hash(std::string_view text) {
  std::uint64_t hash = 0xcbf29ce484222325;
  for (const char c : text) hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001b3;
  return hash;
}

// A name that a signal removes. A handler may touch nothing that moves, allocates or locks.
struct NotedName {
  enum State { kFree, kTaken, kSet };
  std::atomic<int> state{kFree};
  pid_t process = 0;  // a child that was forked must not remove its parent's
  int folder = -1;
  char name[kNameRoom] = {};
};
std::array<NotedName, 64> notedNames;
static_assert(std::atomic<int>::is_always_lock_free);

void RemoveNotedNames(int signal) {
  for (auto& noted : notedNames) {
    if (noted.state.load() == NotedName::kSet && noted.process == ::getpid()) ::unlinkat(noted.folder, noted.name, 0);
  }
  ::raise(signal);  // waits for the end of the handler, and then does what it does without one
}

// Whether somebody still writes the file, or it can't be told.
bool IsHeld(int file) {
  return ::flock(file, LOCK_EX | LOCK_NB) != 0;
}

// The list of those with rights of their own, beside owner, group and others.
bool CopyAccessList(const CString& path, int to) {
  const auto size = ::getxattr(path.c_str(), kAccessList, nullptr, 0);
  if (size <= 0) {
    ::fremovexattr(to, kAccessList);  // which a folder may have given it
    return true;
  }
  std::vector<char> list(static_cast<std::size_t>(size));
  const auto got = ::getxattr(path.c_str(), kAccessList, list.data(), list.size());
  return got > 0 && ::fsetxattr(to, kAccessList, list.data(), static_cast<std::size_t>(got), 0) == 0;
}

int ChooseCount(int tried) {
  std::uint32_t chance = 0;
  if (tried < kNames || ::getrandom(&chance, sizeof chance, 0) < 0) return tried;
  return kNames + static_cast<int>(chance >> 1) % 1'000'000'000;
}

CString HandlePath(int file) {
  return "/proc/self/fd/" + std::to_string(file);
}

}  // namespace

void CTemporaryFile::RemoveOnSignals() {
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    struct sigaction action {};
    if (::sigaction(signal, nullptr, &action) != 0 || action.sa_handler == SIG_IGN) continue;
    action = {};
    action.sa_handler = RemoveNotedNames;
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    ::sigemptyset(&action.sa_mask);
    ::sigaction(signal, &action, nullptr);
  }
}

int CTemporaryFile::Open(const CString& folder, const CString& name, const struct stat* old, Kind kind) {
  target_ = name;
  replaces_ = old != nullptr;
  // A path alone: a folder may be one that we can't list, and a name in it stays valid when the folder is moved.
  folder_ = ::open(folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
  if (folder_ < 0) return errno;
  const uid_t owner = old != nullptr ? old->st_uid : ::geteuid();
  for (int i = 0; i < kNames; ++i) RemoveStale(MakeName(i), owner);
  const mode_t mode = old != nullptr ? old->st_mode & 0700 : 0666;
  int number = kind == Kind::kUnnamed ? OpenUnnamed(mode) : EOPNOTSUPP;
  if (number != 0) number = OpenNamed(mode);
  if (number == 0 && old != nullptr) number = LikenTo(*old);
  if (number != 0) Discard();
  return number;
}

int CTemporaryFile::OpenUnnamed(mode_t mode) {
  file_ = ::openat(folder_, ".", O_TMPFILE | O_WRONLY | O_CLOEXEC, mode);
  if (file_ < 0) return errno;
  IsHeld(file_);  // locks it
  // It gets its name through this path, which some systems lack.
  if (::access(HandlePath(file_).c_str(), F_OK) == 0) return 0;
  const int number = errno;
  ::close(std::exchange(file_, -1));
  return number;
}

int CTemporaryFile::OpenNamed(mode_t mode) {
  int number = EEXIST;
  for (int i = 0; i < kTries && number == EEXIST; ++i) {
    const CString name = MakeName(ChooseCount(i));
    file_ = ::openat(folder_, name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode);
    if (file_ < 0) {
      number = errno;
      continue;
    }
    // Another process may have taken it for a forgotten one before it was locked.
    struct stat status {};
    const bool lost = IsHeld(file_) && errno == EWOULDBLOCK;
    if (!lost && ::fstat(file_, &status) == 0 && status.st_nlink > 0) {
      NoteName(name);
      return 0;
    }
    ::close(std::exchange(file_, -1));
  }
  return number;
}

int CTemporaryFile::LikenTo(const struct stat& old) const {
  struct stat mine {};
  if (::fstat(file_, &mine) != 0) return errno;
  bool keepsOwner = mine.st_uid == old.st_uid;
  bool keepsGroup = mine.st_gid == old.st_gid;
  if (!keepsOwner || !keepsGroup) {
    if (::fchown(file_, old.st_uid, old.st_gid) == 0) {
      keepsOwner = keepsGroup = true;
    } else if (!keepsGroup) {
      keepsGroup = ::fchown(file_, static_cast<uid_t>(-1), old.st_gid) == 0;
    }
  }
  mode_t mode = old.st_mode & 07777;
  if (!keepsOwner) mode &= ~mode_t{S_ISUID};
  if (!keepsGroup) mode &= ~mode_t{S_ISGID | S_IRWXG} | (mode << 3 & S_IRWXG);
  // With an access list the group's bits are the bounds of the whole list.
  const CString path = HandlePath(folder_) + "/" + target_;
  if (!CopyAccessList(path, file_)) mode &= ~mode_t{S_IRWXG};
  return ::fchmod(file_, mode) == 0 ? 0 : errno;
}

CString CTemporaryFile::MakeName(int count) const {
  char digits[16];
  const auto end = std::to_chars(digits, digits + sizeof digits, Hash(target_), 16).ptr;
  return ".tallyscope-" + CString(digits, end) + "-" + std::to_string(count) + ".tmp";
}

// Ours, of this name, a plain file, and of a process that is gone.
void CTemporaryFile::RemoveStale(const CString& name, uid_t owner) const {
  struct stat named {};
  if (::fstatat(folder_, name.c_str(), &named, AT_SYMLINK_NOFOLLOW) != 0 || !S_ISREG(named.st_mode)) return;
  if (named.st_uid != ::geteuid() && named.st_uid != owner) return;
  const int file = ::openat(folder_, name.c_str(), O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
  if (file < 0) return;
  struct stat opened {};
  const bool stale = !IsHeld(file) && ::fstat(file, &opened) == 0 &&
                     ::fstatat(folder_, name.c_str(), &named, AT_SYMLINK_NOFOLLOW) == 0 &&
                     named.st_ino == opened.st_ino && named.st_dev == opened.st_dev;
  if (stale) ::unlinkat(folder_, name.c_str(), 0);
  ::close(file);
}

void CTemporaryFile::NoteName(const CString& name) {
  temporary_ = name;
  for (std::size_t i = 0; i < notedNames.size(); ++i) {
    auto& noted = notedNames[i];
    int expected = NotedName::kFree;
    if (!noted.state.compare_exchange_strong(expected, NotedName::kTaken)) continue;
    noted.process = ::getpid();
    noted.folder = folder_;
    noted.name[name.copy(noted.name, kNameRoom - 1)] = '\0';
    noted.state.store(NotedName::kSet);
    noted_ = static_cast<int>(i);
    return;
  }
}

void CTemporaryFile::ForgetName() {
  if (noted_ >= 0) notedNames[static_cast<std::size_t>(std::exchange(noted_, -1))].state.store(NotedName::kFree);
}

// A link can't replace a file, so an unnamed one that is to do that gets a name of its own for a moment.
int CTemporaryFile::GiveName() {
  const CString handle = HandlePath(file_);
  const auto link = [&](const CString& name) {
    return ::linkat(AT_FDCWD, handle.c_str(), folder_, name.c_str(), AT_SYMLINK_FOLLOW) == 0 ? 0 : errno;
  };
  if (!replaces_) {
    const int number = link(target_);
    if (number != EEXIST) return number;  // there, or never to be
  }
  int number = EEXIST;
  for (int i = 0; i < kTries && number == EEXIST; ++i) {
    const CString name = MakeName(ChooseCount(i));
    number = link(name);
    if (number == 0) NoteName(name);
  }
  return number;
}

int CTemporaryFile::TakePlace() {
  int number = temporary_.empty() ? GiveName() : 0;
  if (number == 0 && !temporary_.empty()) {
    ForgetName();  // a signal must not remove another's of the same name
    if (::renameat(folder_, temporary_.c_str(), folder_, target_.c_str()) == 0) {
      temporary_.clear();
    } else {
      number = errno;
    }
  }
  if (number == 0) {
    // The new name is on the disk once its folder is. Not every file system can do that, so failure doesn't count.
    const int folder = ::openat(folder_, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folder >= 0) {
      ::fsync(folder);
      ::close(folder);
    }
  }
  Discard();
  return number;
}

void CTemporaryFile::Discard() {
  ForgetName();
  if (!temporary_.empty()) ::unlinkat(folder_, temporary_.c_str(), 0);
  temporary_.clear();
  if (file_ >= 0) ::close(std::exchange(file_, -1));
  if (folder_ >= 0) ::close(std::exchange(folder_, -1));
}

}  // namespace tallyscope
