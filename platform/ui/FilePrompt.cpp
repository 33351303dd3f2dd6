// SPDX-License-Identifier: MIT
#include "platform/ui/FilePrompt.h"

#include <algorithm>

#include "platform/core/Messages.h"
#include "platform/ui/Modal.h"

namespace tallyscope {

namespace {

// Takes what stands before the next "|" from the front of a filter.
CString TakePart(std::string_view& filter) {
  const auto end = std::min(filter.find('|'), filter.size());
  CString part(filter.substr(0, end));
  filter.remove_prefix(std::min(end + 1, filter.size()));
  return part;
}

// The patterns come behind the description, which shouldn't name them twice.
CString WithoutPatterns(const CString& description) {
  const auto bracket = description.rfind(" (");
  const bool patterns =
      description.ends_with(')') && description.find('*', std::min(bracket, description.size())) != CString::npos;
  return patterns ? description.substr(0, bracket) : description;
}

CString WithExtension(const CString& path, const CString& extension) {
  if (extension.empty() || !CUFilename(path).GetExtension().empty()) return path;
  return path + (extension.starts_with('.') ? "" : ".") + extension;
}

bool MayReplace(const CString& path, QWidget* parent) {
  CFileStatus status;
  return !GetFileStatus(path, status) ||
         GetModal().Confirm(parent, path + " already exists.\nDo you want to replace it?");
}

}  // namespace

CString ToModalFilter(const CString& filter) {
  CString converted;
  for (std::string_view rest = filter; !rest.empty() && rest[0] != '|';) {
    const CString description = TakePart(rest);
    CString patterns = TakePart(rest);
    std::replace(patterns.begin(), patterns.end(), ';', ' ');
    if (patterns == "*.*" || patterns.empty()) patterns = "*";  // files without an ending too
    if (!converted.empty()) converted += ";;";
    converted += WithoutPatterns(description) + " (" + patterns + ")";
  }
  return converted;
}

bool PromptSave(const CString& folder, const CString& fileName, const CString& extension, const CString& title,
                const CString& filter, int& filterIndex, std::vector<CUFilename>& files, unsigned /*flags*/,
                QWidget* parent) {
  files.clear();
  const CString place = (folder.empty() ? CString() : WithSeparator(folder)) + fileName;
  for (;;) {
    const auto chosen =
        GetModal().AskSaveFile(parent, title.empty() ? "Save" : title, place, ToModalFilter(filter), &filterIndex);
    if (!chosen) {
      filterIndex = -1;
      return false;
    }
    const CString path = WithExtension(*chosen, extension);
    // The prompt has asked about the name as it was typed.
    if (path != *chosen && !MayReplace(path, parent)) continue;
    files.emplace_back(path);
    return true;
  }
}

std::optional<CString> PromptOpen(const CString& folder, const CString& title, const CString& filter, int& filterIndex,
                                  QWidget* parent) {
  return GetModal().AskOpenFile(parent, title, folder, ToModalFilter(filter), &filterIndex);
}

bool CModalLostFileAsker::Confirm(const CString& caption, const CString& question) {
  return GetModal().ConfirmTrouble(parent_, caption, question);
}

std::optional<CString> CModalLostFileAsker::AskOpen(const CString& title, const CString& folder, unsigned /*flags*/,
                                                    const CString& filter, int& filterIndex) {
  return PromptOpen(folder, title, filter, filterIndex, parent_);
}

void CModalLostFileAsker::ShowStatus(const CString& text) {
  if (mainWindow_ == nullptr) return;
  mainWindow_->SendMessage(kMessageStatusText, reinterpret_cast<std::uintptr_t>(new CString(text)));
}

}  // namespace tallyscope
