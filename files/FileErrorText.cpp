// SPDX-License-Identifier: MIT
#include "files/FileErrorText.h"

#ifdef __linux__
#include <sys/vfs.h>
#endif

namespace tallyscope {

namespace {

constexpr const char* kUndocumented = "An undocumented file error occurred.";

// By cause. Two depend on more than the cause.
constexpr const char* kSentences[] = {  // NOLINT(bugprone-suspicious-missing-comma): long ones go on
    "Apparently there was no error!",
    "The error is not specified.",
    "The file does not exist.",
    "The file name contains invalid characters or the drive\nor one or more component directories do not exist.",
    "There are too many open files in this system.\nTry closing some programs or rebooting the system.",
    nullptr,
    "A software error occurred: invalid file handle.\nPlease report this defect to the software vendor.",
    "An attempt was made to remove the current directory.",
    "The file could not be created because the directory\nfor the file is full.  Delete some files from the\n"
    "root directory or use a sub-directory.",
    "A software error occurred: seek to bad file position.",
    nullptr,
    "SHARE.EXE is not loaded or the file is in use.\nCheck that SHARE.EXE is installed, then try\n"
    "closing other programs or rebooting the system",
    "The file (or part thereof) is in use.\nTry closing other programs or rebooting the system",
    "The file could not be written as the disk is full.\nPlease delete some files to make room on the disk.",
    "An attempt was made to access an area past the end of the file."};

const char* FirstLine(CStdioFile::OpenMode mode) {
  if (mode == CStdioFile::modeRead) return "An error occurred reading from the file \"";
  if (mode == CStdioFile::modeWrite) return "An error occurred writing to the file \"";
  return "An error occurred using the file \"";
}

bool IsRoot(const CString& path) {
  return path == "\\" || (path.size() == 3 && path[1] == ':' && path[2] == '\\');
}

const char* DeniedSentence(const CString& path, CStdioFile::OpenMode mode) {
  CFileStatus status;
  if (GetFileStatus(path, status)) {
    if ((status.attributes & CFileStatus::kDirectory) != 0) {
      return "This is a directory - you cannot use it as a file.";
    }
    if ((status.attributes & (CFileStatus::kHidden | CFileStatus::kSystem | CFileStatus::kVolume)) != 0) {
      return "The file is a special system file.";
    }
    const bool writes = mode != CStdioFile::modeRead;
    if (writes && (status.attributes & CFileStatus::kReadOnly) != 0) return "You cannot write to a read-only file.";
    return "You cannot access this file.";
  }
  if (IsRoot(path)) return "This is the root directory.\nYou cannot use it as a file.";
  if (mode == CStdioFile::modeWrite) {
    return "Check that you have permission to write\nto the directory and that the disk is\nnot write-protected or "
           "read-only media.";
  }
  return "Access denied. Check that you have permission\nto read the directory and use the file.";
}

enum class Drive { kFixed, kRemovable, kRemote };

// By the file system that holds the file, or else the current folder. Numbers as in Linux's linux/magic.h and the
// headers of the file systems themselves.
Drive DriveOf([[maybe_unused]] const CString& path) {
#ifdef __linux__
  struct statfs status {};
  const CString native = NativePath(path);
  const CString folder = native.substr(0, native.rfind('/') + 1);
  if (::statfs(folder.c_str(), &status) != 0 && ::statfs(".", &status) != 0) return Drive::kFixed;
  switch (static_cast<unsigned>(status.f_type)) {
    case 0x6969:      // NFS
    case 0x517b:      // SMB
    case 0xff534d42:  // CIFS
    case 0xfe534d42:  // SMB 2
    case 0x01021997:  // 9P
    case 0x00c36400:  // Ceph
      return Drive::kRemote;
    case 0x9660:      // ISO 9660
    case 0x15013346:  // UDF
    case 0x4d44:      // FAT, the usual one of a memory stick
    case 0x2011bab0:  // exFAT
      return Drive::kRemovable;
    default:
      break;
  }
#endif
  return Drive::kFixed;
}

const char* HardwareSentence(const CString& path) {
  switch (DriveOf(path)) {
    case Drive::kRemovable:
      return "There was a problem accessing the drive.\nPlease ensure that the medium is present.";
    case Drive::kRemote:
      return "There was a problem accessing the file.\nThere may be a problem with your network.";
    case Drive::kFixed:
      break;
  }
  return "There was a hardware error.  There may be\na problem with your computer or disk drive.";
}

}  // namespace

CString FileErrorText(const char* reason, CStdioFile::OpenMode mode, const CString& fullPath) {
  return FirstLine(mode) + fullPath + "\".\n" + reason;
}

CString FileErrorText(const CFileException& failure, CStdioFile::OpenMode mode, const CString& fullPath) {
  const char* reason = kUndocumented;
  if (failure.cause == CFileException::accessDenied) {
    reason = DeniedSentence(fullPath, mode);
  } else if (failure.cause == CFileException::hardIO) {
    reason = HardwareSentence(fullPath);
  } else if (failure.cause >= CFileException::none && failure.cause <= CFileException::endOfFile) {
    reason = kSentences[failure.cause];
  }
  return FileErrorText(reason, mode, fullPath);
}

}  // namespace tallyscope
