// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

#include "platform/core/String.h"
#include "platform/core/TemporaryFile.h"

namespace tallyscope {

// A file that is written whole or not at all: what is written goes to a temporary file beside the target, which takes
// the target's place in Commit. Until then, and after any failure, an old file stands as it was.
//   CAtomicFile file("out.csv");
//   file.Write("a,b\n");
//   if (!file.Commit()) err << file.GetError() << "\n";
// Every file that the program writes goes through here. What becomes of the temporary file when the process is killed,
// and whose rights the new file has, is told in TemporaryFile.h.
// A symbolic link stays one: what it points at is replaced; one that leads nowhere, or to itself, is an error. Further
// names of an old file (hard links) keep the old content. A read-only file is refused, and so is a folder. Something
// that is no regular file, such as a pipe or /dev/null, is written straight away; opening a pipe waits for its reader.
// A program that ignores SIGXFSZ is told of a file size beyond the user's limit as of a full disk; others end there.
class CAtomicFile {
 public:
  explicit CAtomicFile(CString target);  // opens; IsGood tells whether it worked
  CAtomicFile(const CAtomicFile&) = delete;
  CAtomicFile& operator=(const CAtomicFile&) = delete;
  ~CAtomicFile() { Discard(); }  // without a Commit nothing remains

  // False once anything went wrong; further calls do nothing then. What is written is gathered in pieces of 1 MB, so a
  // full disk may show later.
  bool Write(std::string_view text);
  // Ends the writing, with the bytes on the disk. Once at most.
  [[nodiscard]] bool Commit();

  bool IsGood() const { return error_.empty(); }
  const CString& GetError() const { return error_; }   // one sentence, with the target as the caller named it
  int GetErrorNumber() const { return errorNumber_; }  // the platform's, 0 while good

 private:
  bool Open();
  bool OpenStraight();
  bool OpenBeside(const CString& place, const struct stat* old);
  int GetHandle() const { return straight_ >= 0 ? straight_ : temporary_.GetHandle(); }
  bool Flush();
  bool Fail(int number, const char* words = nullptr);
  void Discard();

  CString target_;
  CTemporaryFile temporary_;
  int straight_ = -1;  // of a target that can't be replaced
  CString buffer_;
  CString error_;
  int errorNumber_ = 0;
};

}  // namespace tallyscope
