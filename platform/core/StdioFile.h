// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdio>
#include <memory>
#include <string_view>

#include "platform/core/AtomicFile.h"
#include "platform/core/File.h"
#include "platform/core/String.h"

namespace tallyscope {

// A file of lines. What is opened for writing alone is written whole or not at all: the target changes in CloseFile,
// and stays as it was after any failure. The end of the object closes too, unless an exception takes it away, but has
// nobody to tell of a failure.
//   CStdioFile file;
//   if (file.OpenFile(path, CStdioFile::modeWrite) && file.WriteString("! a\n") && file.CloseFile()) ...
class CStdioFile {
 public:
  enum OpenMode { modeRead, modeWrite, modeReadWrite };

  CStdioFile() = default;
  CStdioFile(const CStdioFile&) = delete;
  CStdioFile& operator=(const CStdioFile&) = delete;
  virtual ~CStdioFile();

  // Write creates the file or replaces it; read and write needs one that exists and changes it in place. A file still
  // open here is closed first.
  bool OpenFile(const CString& path, OpenMode mode);
  // Reads from memory in place of a file. The text must outlive the reading.
  bool OpenText(std::string_view text);
  bool IsOpen() const { return reader_ != nullptr || writer_ != nullptr; }
  // False when anything went wrong since OpenFile; GetFailure tells what.
  bool CloseFile();

  // The next line without its end, which is "\n" or "\r\n" (the last line may lack it), or the first `most` bytes of
  // it: the rest then comes as the next line. False at the end of the file, or when reading fails.
  bool ReadString(CString& line, std::size_t most = CString::npos);
  // False once anything went wrong.
  bool WriteString(std::string_view text);

  // The last failure since OpenFile; cause none if there was none.
  const CFileException& GetFailure() const { return failure_; }

 private:
  struct Closer {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };

  bool Fail(int number);
  bool Turn(bool writing);

  CString path_;
  std::unique_ptr<std::FILE, Closer> reader_;  // also of read and write
  std::unique_ptr<CAtomicFile> writer_;
  bool writing_ = false;  // the reader's last operation
  int exceptions_ = 0;    // in flight at OpenFile
  CFileException failure_;
};

}  // namespace tallyscope
