// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <ctime>
#include <memory>
#include <string>
#include <string_view>

#include "platform/core/String.h"

namespace tallyscope {

// The bytes of a table, seen through a window that moves over them from front to back, and again for a second pass.
//   CTextSource source;
//   if (!source.Open("meuse.csv", error)) ...
//   std::string_view text = source.Look(0, 65536);
// A regular file is read piece by piece into the window, never mapped: what another program does to it meanwhile
// changes no byte that is being looked at, and ends no process. It is meant to stay as it was when it was opened;
// whether it did is for the reader to ask, during the work and at its end. A pipe or another stream is read into memory
// when it is opened, up to kStreamLimit bytes.
class CTextSource {
 public:
  static constexpr std::size_t kStreamLimit = std::size_t{4} << 30;
  // Enough for most purposes, and short enough to stay in the processor's cache.
  static constexpr std::size_t kWindow = std::size_t{256} << 10;

  CTextSource() = default;
  explicit CTextSource(std::string_view borrowed) : text_(borrowed), size_(borrowed.size()) {}  // must outlive this
  CTextSource(const CTextSource&) = delete;
  CTextSource& operator=(const CTextSource&) = delete;
  ~CTextSource();

  // Once. False, with a sentence in `error`, for what is missing, closed to us, no file, or empty. /dev/stdin may be a
  // socket.
  bool Open(const CString& path, CString& error);

  // Bytes of the whole, as it was when it was opened.
  std::size_t GetSize() const { return size_; }

  // At least `bytes` bytes from byte `at` on; fewer only where the whole ends, or where it can't be read any further.
  // They stay until the next look. What was in the window before is not read again. Throws bad_alloc.
  std::string_view Look(std::size_t at, std::size_t bytes);

  // True while the file is what it was when it was opened, by its length and the time of its last change, as finely as
  // the system notes that, and could be read. Asks the system.
  bool IsUnchanged();
  // Why it isn't, in a sentence that calls it `file`.
  CString GetFailure(const CString& file) const;

 private:
  bool OpenFile(const CString& path);
  bool ReadStream(const CString& path, CString& error);
  void Fill(std::size_t wanted);

  int file_ = -1;  // of a regular file
  std::timespec changed_{};
  std::string stream_;
  std::string_view text_;  // the whole, where it is in memory
  std::size_t size_ = 0;

  std::unique_ptr<char[]> window_;
  std::size_t room_ = 0;   // bytes
  std::size_t start_ = 0;  // of the window in the file
  std::size_t filled_ = 0;
  bool hasChanged_ = false;
  int readError_ = 0;  // the system's
};

// What is said of a file that another program changed under the reader.
CString GetChangedSentence(const CString& file);

}  // namespace tallyscope
