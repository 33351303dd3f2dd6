// SPDX-License-Identifier: MIT
#pragma once

#include <cstdio>
#include <memory>
#include <string_view>

#include "platform/core/AtomicFile.h"
#include "platform/core/File.h"
#include "platform/core/String.h"

namespace tallyscope {

// A file of lines. What is opened for writing alone is written whole or not at all: the target changes in Close, and
// stays as it was after any failure, or when the object goes without a Close.
//   CStdioFile file;
//   if (file.Open(path, CStdioFile::modeWrite) && file.WriteString("! a\n") && file.Close()) ...
class CStdioFile {
 public:
  enum OpenMode { modeRead, modeWrite, modeReadWrite };

  CStdioFile() = default;
  CStdioFile(const CStdioFile&) = delete;
  CStdioFile& operator=(const CStdioFile&) = delete;
  virtual ~CStdioFile() = default;

  // Write creates the file or replaces it; read and write needs one that exists and changes it in place.
  bool OpenFile(const CString& path, OpenMode mode);
  bool IsOpen() const { return reader_ != nullptr || writer_ != nullptr; }
  // False when what was written could not be kept; GetFailure tells why.
  bool CloseFile();

  // The next line without its end, which is "\n" or "\r\n" (the last line may lack it). False at the end of the file,
  // or when reading fails.
  bool ReadString(CString& line);
  // False once anything went wrong.
  bool WriteString(std::string_view text);

  // The last failure; cause none after success.
  const CFileException& GetFailure() const { return failure_; }

 private:
  struct Closer {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };

  bool Fail(int number);

  CString path_;
  std::unique_ptr<std::FILE, Closer> reader_;  // also of read and write
  std::unique_ptr<CAtomicFile> writer_;
  CFileException failure_;
};

}  // namespace tallyscope
