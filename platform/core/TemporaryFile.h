// SPDX-License-Identifier: MIT
#pragma once

#include <sys/stat.h>

#include "platform/core/String.h"

namespace tallyscope {

// A file that is written beside its target and takes the target's place when it is whole. Functions return 0, or the
// platform's errno.
//   CTemporaryFile file;
//   if (int number = file.Open("results", "out.csv", nullptr)) ...
//   ::write(file.GetHandle(), ...);
//   int number = file.TakePlace();
// Where the file system can, it has no name until then, so that nothing remains of a process that was killed. Elsewhere
// it is called ".tallyscope-", a number made of the target's name, "-", a count, ".tmp", and is locked by the process
// that writes it: the next Open for the same target removes those that nobody holds any more. The name is short, so
// that a target's may be as long as the file system takes.
class CTemporaryFile {
 public:
  enum class Kind { kUnnamed, kNamed };  // kUnnamed is a wish

  CTemporaryFile() = default;
  CTemporaryFile(const CTemporaryFile&) = delete;
  CTemporaryFile& operator=(const CTemporaryFile&) = delete;
  ~CTemporaryFile() { Discard(); }

  // For the target `name` in `folder`, which keeps the mode, access list, owner and group of `old`, if there is an old
  // one, as far as the process may give them. Nobody is ever let in whom the old file kept out: where the group can't
  // be kept, it gets no more than all others have. A new file gets what the process's umask leaves of 0666. Once.
  int Open(const CString& folder, const CString& name, const struct stat* old, Kind kind = Kind::kUnnamed);
  int GetHandle() const { return file_; }  // for writing; stays ours; -1 before Open

  // Puts the file in the target's place at once, with the bytes that were written; the caller flushes them before.
  // After a failure the old target stands, and nothing is left of the file. Ends it in either case.
  int TakePlace();
  // Leaves nothing.
  void Discard();

  // From here on SIGINT, SIGTERM and SIGHUP remove the named ones of this process before they end it. A signal that is
  // ignored stays so. For a program's main, before it starts threads.
  static void RemoveOnSignals();

 private:
  int OpenUnnamed(mode_t mode);
  int OpenNamed(mode_t mode);
  int LikenTo(const struct stat& old) const;
  int GiveName();
  CString MakeName(int count) const;
  void RemoveStale(const CString& name, uid_t owner) const;
  void NoteName(const CString& name);
  void ForgetName();

  CString target_;     // without folder
  CString temporary_;  // likewise; empty while it has no name
  bool replaces_ = false;
  int folder_ = -1;
  int file_ = -1;
  int noted_ = -1;  // place among the names that signals remove
};

}  // namespace tallyscope
