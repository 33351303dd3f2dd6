// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string_view>

#include "files/UFilename.h"
#include "files/UTokeniser.h"
#include "platform/core/StdioFile.h"

namespace tallyscope {

// A text file that is read line by line into tokens, or written whole or not at all, and that tells what went wrong in
// full sentences.
//   CUTextFile file;
//   if (!file.Open(path, 1, 0, 0)) return Tell(file.GetErrorText());
//   while (file.ReadLine()) { ... file.IsToken(0, "Nest") ... file.GetToken(1) ... }
class CUTextFile : public CStdioFile {
 public:
  static constexpr std::size_t kMostOfLine = 1 << 20;

  // Reads with (path, 1, 0, 0) or without a flag, creates or replaces with (path, 0, 1, 0), changes in place with both.
  // `binary` has no effect on this system. A file still open here is closed first.
  bool Open(const CString& path, int read, int write, int binary);
  // Ends the writing, which is when the file takes its name; so does the end of the object, but it can't tell a
  // failure. False when anything went wrong since Open.
  bool Close();
  bool WriteString(std::string_view text);  // false once anything went wrong

  // Reads the lines of a text in memory, which must outlive the reading.
  bool OpenText(std::string_view text);

  // The next line's tokens take the place of the last one's. False at the end of the file, and once anything went
  // wrong; a line of more than kMostOfLine bytes does, so that reading takes little memory whatever the file holds.
  bool ReadLine();
  int GetTokenCount() const { return static_cast<int>(GetTokens().size()); }
  int GetTokenType(int i) const;  // of CUTokeniser; 0 when out of range
  CString GetToken(int i) const;  // empty when out of range
  // Whether token i is a word or quoted text that equals `text`, regardless of ASCII case; an empty text matches any.
  bool IsToken(int i, std::string_view text) const;
  // The same for a word that isn't empty.
  bool IsWord(int i, std::string_view text) const;

  const CUFilename& GetFileName() const { return fileName_; }
  const CFileStatus& GetStatus() const { return status_; }
  // What went wrong last, ready to be shown: which file, and why. Empty after success.
  const CString& GetErrorText() const { return errorText_; }
  bool IsFailed() const { return failed_; }
  CUTokeniser& GetTokeniser() { return tokeniser_; }

 private:
  const std::vector<CUTokeniser::Token>& GetTokens() const { return tokeniser_.GetTokens(); }
  bool Finish(bool good);

  CUFilename fileName_;
  CFileStatus status_;
  CString errorText_;
  bool failed_ = false;
  bool tooLong_ = false;  // a line was
  OpenMode mode_ = modeRead;
  CUTokeniser tokeniser_;
};

}  // namespace tallyscope
