// SPDX-License-Identifier: MIT
#include "files/UFindLostFile.h"

#include <algorithm>

#include "files/FolderMemory.h"

namespace tallyscope {

namespace {

// With its separator.
CString FolderOf(const CString& path) {
  return path.substr(0, path.find_last_of("/\\") + 1);
}

void RemoveEach(CString& text, const CString& part) {
  for (auto at = text.find(part); at != CString::npos; at = text.find(part, at)) text.erase(at, part.size());
}

}  // namespace

void CUFindLostFile::ClearFolders() {
  folders_.clear();
}

void CUFindLostFile::AddFolder(const CString& folder) {
  folders_.push_back(WithSeparator(folder));
}

bool CUFindLostFile::Exists(const CString& path) {
  found_ = GetFileStatus(path, status_);
  if (found_) foundPath_.SetPath(path);
  return found_;
}

bool CUFindLostFile::Locate(const CString& path) {
  wanted_.SetPath(path);
  if (Exists(path)) return true;
  if (wanted_.GetNameAndExtension().empty()) return false;  // a folder is no file
  for (const CString& folder : folders_) {
    if (Exists(folder + wanted_.GetNameAndExtension())) return true;
  }
  // A separator in front would be taken for a folder of its own.
  return LocateByTail(path.substr(std::min(path.find_first_not_of("/\\"), path.size())));
}

// "\data\2020\run.txt" is tried as "data\2020\run.txt", "2020\run.txt" and "run.txt" below each folder.
bool CUFindLostFile::LocateByTail(CString tail) {
  const CString& name = wanted_.GetNameAndExtension();
  while (tail != name) {
    const auto separator = tail.find_first_of("/\\");
    if (separator == CString::npos) {
      tail = name;
    } else {
      RemoveEach(tail, tail.substr(0, separator + 1));
    }
    for (const CString& folder : folders_) {
      if (Exists(folder + tail)) return true;
    }
  }
  return false;
}

bool CUFindLostFile::Find(const CString& path, const CString& folder, unsigned flags, const CString& filter,
                          int& filterIndex) {
  if (Locate(path)) return true;
  if (asker_ == nullptr) return false;
  if (!asker_->Confirm("Error locating file", "Warning :: The following file was not located:\n" + path +
                                                  "\n\nDo you want to browse for this file?")) {
    return false;
  }
  asker_->ShowStatus("Replacing " + path);
  const auto chosen = asker_->AskOpen("Select a replacement for " + wanted_.GetFullPath(),
                                      folder.empty() ? GetCurrentFolder() : folder, flags, filter, filterIndex);
  const bool located = chosen && Locate(*chosen);
  if (located) {
    const CString home = FolderOf(foundPath_.GetFullPath());
    if (std::find(folders_.begin(), folders_.end(), home) == folders_.end()) AddFolder(home);
  }
  asker_->ShowStatus("For Help, press F1");
  return located;
}

CUFindLostFile& GetFindLostFile() {
  static CUFindLostFile instance;
  return instance;
}

}  // namespace tallyscope
