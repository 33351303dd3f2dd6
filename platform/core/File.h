// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <ctime>

#include "platform/core/String.h"

namespace tallyscope {

// Why an operation on a file failed: a plain value, never thrown. The causes are the numbers that the users' sentences
// go by (files/FileErrorText.h); several errors of the platform share one.
struct CFileException {
  enum Cause : int {
    none = 0,
    genericException = 1,
    fileNotFound = 2,
    badPath = 3,
    tooManyOpenFiles = 4,
    accessDenied = 5,
    invalidFile = 6,
    removeCurrentDir = 7,
    directoryFull = 8,
    badSeek = 9,
    hardIO = 10,
    sharingViolation = 11,
    lockViolation = 12,
    diskFull = 13,
    endOfFile = 14
  };

  int cause = none;
  int number = 0;  // the platform's errno
  CString path;

  // The cause of an errno, none for 0. A missing file whose folder is missing too has a bad path, which is looked up
  // when this is called; a file beyond the user's limit of sizes counts as a full disk.
  static CFileException FromErrno(int number, const CString& path);
};

// What the file system knows of a file.
struct CFileStatus {
  enum Attribute : unsigned { kReadOnly = 0x01, kHidden = 0x02, kSystem = 0x04, kVolume = 0x08, kDirectory = 0x10 };

  std::time_t changed = 0;   // of its attributes; all three in seconds since 1970
  std::time_t modified = 0;  // of its content
  std::time_t accessed = 0;
  std::int64_t size = 0;  // bytes
  unsigned attributes = 0;
  CString fullName;  // as it was asked for
};

// The path by which this system finds a file: where no file has the name as it stands, "\" counts as "/".
CString NativePath(const CString& path);

// False, and `status` as it was, when there is no such file or it can't be asked. A link is followed. A device, a pipe
// or a socket counts as a system file; a file that nobody may write as read-only.
bool GetFileStatus(const CString& path, CFileStatus& status);

}  // namespace tallyscope
