// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

#include "platform/core/Archive.h"
#include "platform/core/String.h"

namespace tallyscope {

// A path in its parts. "/" and "\" both separate folders. A drive is a letter and a colon, as in tables that came from
// elsewhere; a path of this system has none.
//   CUFilename file("/data/run.txt");   // folder "/data/", name "run", extension ".txt"
// A part holds 255 bytes at most (the drive 2) and is cut beyond; the full path is whole.
class CUFilename {
 public:
  CUFilename() = default;
  explicit CUFilename(std::string_view path);
  virtual ~CUFilename() = default;
  CUFilename(const CUFilename&) = default;
  CUFilename& operator=(const CUFilename&) = default;

  // A folder ends in a separator: one is added where it is missing.
  void SetPath(std::string_view path, bool isFolder = false);

  const CString& GetDrive() const { return drive_; }
  const CString& GetFolder() const { return folder_; }
  const CString& GetName() const { return name_; }
  const CString& GetExtension() const { return extension_; }  // with its dot
  const CString& GetDriveAndFolder() const { return driveAndFolder_; }
  const CString& GetNameAndExtension() const { return nameAndExtension_; }
  const CString& GetFullPath() const { return fullPath_; }

  // The seven texts in the order of the members. What is read is taken as it stands, not split anew.
  virtual void Serialize(CArchive& archive);

 private:
  CString drive_;
  CString folder_;
  CString name_;
  CString extension_;
  CString driveAndFolder_;
  CString nameAndExtension_;
  CString fullPath_;
};

inline bool IsPathSeparator(char character) {
  return character == '/' || character == '\\';
}

// Adds a separator to a folder that doesn't end in one: "\" to a path that uses it, else this system's "/".
CString WithSeparator(CString folder);

}  // namespace tallyscope
