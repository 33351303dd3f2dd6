// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <vector>

#include "files/UFilename.h"
#include "platform/core/File.h"

namespace tallyscope {

// Whoever can ask the user about a file that isn't where it was. The program's shows windows.
class CLostFileAsker {
 public:
  virtual ~CLostFileAsker() = default;
  // Whether the user wants to look for it.
  virtual bool Confirm(const CString& caption, const CString& question) = 0;
  // Nothing when the user cancels. `filterIndex` counts from 1, in and out; `flags` are the caller's own for the
  // prompt.
  virtual std::optional<CString> AskOpen(const CString& title, const CString& folder, unsigned flags,
                                         const CString& filter, int& filterIndex) = 0;
  virtual void ShowStatus(const CString& text) = 0;  // for the status line of the host's main window
};

// Looks for a file that has moved: at its path, by its name in the search folders, then by ever shorter ends of its
// path below these folders. What the user finds by hand adds its folder, so that its neighbours are found without
// asking.
class CUFindLostFile {
 public:
  virtual ~CUFindLostFile() = default;

  virtual void ClearFolders();
  virtual void AddFolder(const CString& folder);  // searched after those that are there
  // True if there is anything at the path; then that is what was found.
  virtual bool Exists(const CString& path);
  // Looks, then asks. Without an asker it only looks. An empty `folder` stands for the current one; `flags`, `filter`
  // and `filterIndex` are the prompt's.
  virtual bool Find(const CString& path, const CString& folder, unsigned flags, const CString& filter,
                    int& filterIndex);
  // Looks only. False leaves what was found last as it is, for GetFound, and IsFound says false.
  virtual bool Locate(const CString& path);

  void SetAsker(CLostFileAsker* asker) { asker_ = asker; }  // not owned
  bool IsFound() const { return found_; }
  const CUFilename& GetWanted() const { return wanted_; }
  const CUFilename& GetFound() const { return foundPath_; }
  const CFileStatus& GetStatus() const { return status_; }
  const std::vector<CString>& GetFolders() const { return folders_; }

 private:
  bool LocateByTail(CString tail);

  std::vector<CString> folders_;
  CUFilename wanted_;
  CUFilename foundPath_;
  bool found_ = false;
  CFileStatus status_;
  CLostFileAsker* asker_ = nullptr;
};

// The one that collects search folders across commands.
CUFindLostFile& GetFindLostFile();

}  // namespace tallyscope
