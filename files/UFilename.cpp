// SPDX-License-Identifier: MIT
#include "files/UFilename.h"

#include <algorithm>
#include <initializer_list>

namespace tallyscope {

namespace {

constexpr std::size_t kMostOfPart = 255;

bool IsLetter(char character) {
  return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z');
}

CString Part(std::string_view text) {
  return CString(text.substr(0, kMostOfPart));
}

}  // namespace

CString WithSeparator(CString folder) {
  if (!folder.empty() && IsPathSeparator(folder.back())) return folder;
  const bool foreign = folder.find('/') == CString::npos &&
                       (folder.find('\\') != CString::npos || (folder.size() == 2 && folder[1] == ':'));
  folder += foreign ? '\\' : '/';
  return folder;
}

CUFilename::CUFilename(std::string_view path) {
  SetPath(path);
}

void CUFilename::SetPath(std::string_view path, bool isFolder) {
  const CString whole = isFolder && !path.empty() ? WithSeparator(CString(path)) : CString(path);
  std::string_view rest = whole;
  const bool hasDrive = rest.size() >= 2 && rest[1] == ':' && IsLetter(rest[0]);
  drive_ = hasDrive ? rest.substr(0, 2) : std::string_view();
  rest.remove_prefix(drive_.size());
  const auto separator = rest.find_last_of("/\\");
  folder_ = Part(separator == std::string_view::npos ? std::string_view() : rest.substr(0, separator + 1));
  if (separator != std::string_view::npos) rest.remove_prefix(separator + 1);
  const auto dot = std::min(rest.rfind('.'), rest.size());
  name_ = Part(rest.substr(0, dot));
  extension_ = Part(rest.substr(dot));
  driveAndFolder_ = drive_ + folder_;
  nameAndExtension_ = name_ + extension_;
  fullPath_ = whole;
}

void CUFilename::Serialize(CArchive& archive) {
  for (CString* part : {&drive_, &folder_, &name_, &extension_, &driveAndFolder_, &nameAndExtension_, &fullPath_}) {
    if (archive.IsStoring()) {
      archive << *part;
    } else {
      archive >> *part;
    }
  }
}

}  // namespace tallyscope
