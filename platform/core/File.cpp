// SPDX-License-Identifier: MIT
#include "platform/core/File.h"

#include <algorithm>
#include <cerrno>

#include <sys/stat.h>

namespace tallyscope {

namespace {

bool HasFolder(const CString& path) {
  const auto slash = path.rfind('/');
  if (slash == CString::npos || slash == 0) return true;
  struct stat status {};
  return ::stat(path.substr(0, slash).c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

CFileException::Cause CauseOf(int number, const CString& path) {
  switch (number) {
    case 0:
      return CFileException::none;
    case ENOENT:
      return HasFolder(NativePath(path)) ? CFileException::fileNotFound : CFileException::badPath;
    case ENOTDIR:
    case ENAMETOOLONG:
    case EINVAL:
    case EILSEQ:
    case ELOOP:
      return CFileException::badPath;
    case EMFILE:
    case ENFILE:
      return CFileException::tooManyOpenFiles;
    case EACCES:
    case EPERM:
    case EISDIR:
    case EROFS:
      return CFileException::accessDenied;
    case EBADF:
      return CFileException::invalidFile;
    case ESPIPE:
      return CFileException::badSeek;
    case EIO:
    case ENXIO:
    case ENODEV:
    case ESTALE:  // a server has forgotten the file
    case ETIMEDOUT:
      return CFileException::hardIO;
    case EBUSY:
    case ETXTBSY:
      return CFileException::sharingViolation;
    case EAGAIN:
    case EDEADLK:
      return CFileException::lockViolation;
    case ENOSPC:
    case EDQUOT:
    case EFBIG:  // beyond the user's limit of a file's size
      return CFileException::diskFull;
    default:
      return CFileException::genericException;
  }
}

unsigned AttributesOf(const struct stat& status) {
  if (S_ISDIR(status.st_mode)) return CFileStatus::kDirectory;
  if (!S_ISREG(status.st_mode)) return CFileStatus::kSystem;
  return (status.st_mode & 0222) == 0 ? unsigned{CFileStatus::kReadOnly} : 0u;
}

}  // namespace

CFileException CFileException::FromErrno(int number, const CString& path) {
  return {CauseOf(number, path), number, path};
}

CString NativePath(const CString& path) {
  struct stat status {};
  if (path.find('\\') == CString::npos || ::stat(path.c_str(), &status) == 0) return path;
  CString native = path;
  std::replace(native.begin(), native.end(), '\\', '/');
  return native;
}

bool GetFileStatus(const CString& path, CFileStatus& status) {
  struct stat found {};
  if (::stat(NativePath(path).c_str(), &found) != 0) return false;
  status = {found.st_ctime, found.st_mtime, found.st_atime, found.st_size, AttributesOf(found), path};
  return true;
}

}  // namespace tallyscope
