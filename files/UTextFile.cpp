// SPDX-License-Identifier: MIT
#include "files/UTextFile.h"

#include <filesystem>
#include <system_error>

#include "files/FileErrorText.h"
#include "platform/core/TextCase.h"

namespace tallyscope {

namespace {

// A path that starts at this system's root, a drive or a network share keeps its form; any other starts at the
// current folder.
CUFilename Anchored(const CString& path) {
  CUFilename name(path);
  if (!name.GetDrive().empty() || path.starts_with('/') || path.starts_with("\\\\")) return name;
  std::error_code error;
  const CString folder = std::filesystem::current_path(error).string();
  return error ? name : CUFilename(WithSeparator(folder) + path);
}

}  // namespace

bool CUTextFile::Open(const CString& path, int read, int write, int /*binary*/) {
  fileName_ = Anchored(path);
  mode_ = write == 0 ? modeRead : read != 0 ? modeReadWrite : modeWrite;
  status_ = {};
  tooLong_ = false;
  const bool good = OpenFile(fileName_.GetFullPath(), mode_);
  if (good) GetFileStatus(fileName_.GetFullPath(), status_);
  return Finish(good);
}

bool CUTextFile::OpenText(std::string_view text) {
  fileName_ = {};
  mode_ = modeRead;
  status_ = {};
  tooLong_ = false;
  return Finish(CStdioFile::OpenText(text));
}

bool CUTextFile::Finish(bool good) {
  failed_ = tooLong_ || !good;
  const CString& path = fileName_.GetFullPath();
  errorText_.clear();
  if (tooLong_) {
    errorText_ = FileErrorText("A line of it is longer than 1 MB.", mode_, path);
  } else if (!good) {
    errorText_ = FileErrorText(GetFailure(), mode_, path);
  }
  return !failed_;
}

bool CUTextFile::Close() {
  return Finish(CloseFile());
}

bool CUTextFile::WriteString(std::string_view text) {
  return Finish(CStdioFile::WriteString(text));
}

bool CUTextFile::ReadLine() {
  CString line;
  const bool found = !tooLong_ && ReadString(line, kMostOfLine + 1);
  tooLong_ = tooLong_ || line.size() > kMostOfLine;
  if (!found || tooLong_) {
    line.clear();
    if (tooLong_ || GetFailure().cause != CFileException::none) Finish(false);
  }
  tokeniser_.SetLine(std::move(line));
  return found && !tooLong_;
}

int CUTextFile::GetTokenType(int i) const {
  return i >= 0 && i < GetTokenCount() ? GetTokens()[static_cast<std::size_t>(i)].type : CUTokeniser::kNone;
}

CString CUTextFile::GetToken(int i) const {
  return GetTokenType(i) == CUTokeniser::kNone ? CString() : GetTokens()[static_cast<std::size_t>(i)].text;
}

bool CUTextFile::IsToken(int i, std::string_view text) const {
  const int type = GetTokenType(i);
  if (type != CUTokeniser::kWord && type != CUTokeniser::kQuoted) return false;
  return text.empty() || CompareNoCase(GetToken(i), text) == 0;
}

bool CUTextFile::IsWord(int i, std::string_view text) const {
  return GetTokenType(i) == CUTokeniser::kWord && !GetToken(i).empty() && IsToken(i, text);
}

}  // namespace tallyscope
