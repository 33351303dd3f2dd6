// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

#include "platform/core/String.h"

namespace tallyscope {

// A file that is written whole or not at all: what is written goes to a temporary file beside the target, which takes
// the target's place in Commit. Until then, and after any failure, an old file stands as it was.
//   CAtomicFile file("out.csv");
//   file.Write("a,b\n");
//   if (!file.Commit()) err << file.GetError() << "\n";
// A symbolic link stays one: what it points at is replaced. Something that is no regular file, such as a pipe or
// /dev/null, is written straight away.
class CAtomicFile {
 public:
  explicit CAtomicFile(CString target);
  CAtomicFile(const CAtomicFile&) = delete;
  CAtomicFile& operator=(const CAtomicFile&) = delete;
  ~CAtomicFile();  // without a Commit nothing remains

  // False once anything went wrong; further calls do nothing then.
  bool Write(std::string_view text);
  // Ends the writing. Once at most.
  bool Commit();

  bool IsGood() const { return error_.empty(); }
  const CString& GetError() const { return error_; }   // one sentence
  int GetErrorNumber() const { return errorNumber_; }  // the platform's, 0 while good

 private:
  bool OpenBeside(const CString& place);
  bool Flush();
  bool Fail(int number);
  void Discard();

  CString target_;     // as the caller named it
  CString place_;      // with links followed
  CString temporary_;  // empty: written straight to the target
  CString buffer_;
  CString error_;
  int errorNumber_ = 0;
  int file_ = -1;
};

}  // namespace tallyscope
