// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "platform/core/String.h"

namespace tallyscope {

// The bytes of a file to be read from front to back. A regular file is mapped at the size it has when it is opened, so
// what is appended later is not seen. A pipe or another stream is read into memory, up to kStreamLimit.
// A file that another program shortens while it is mapped can't be read safely: the system ends the process (SIGBUS).
// Readers ask HasShrunk now and then, which turns all but the unluckiest moment into a plain refusal.
class CTextSource {
 public:
  static constexpr std::size_t kStreamLimit = std::size_t{4} << 30;

  CTextSource() = default;
  explicit CTextSource(std::string_view borrowed) : text_(borrowed) {}  // the bytes must outlive the source
  CTextSource(const CTextSource&) = delete;
  CTextSource& operator=(const CTextSource&) = delete;
  ~CTextSource();

  // False, with a sentence in `error`, for what is missing, closed to us, no file, or empty.
  bool Open(const CString& path, CString& error);

  std::string_view GetText() const { return text_; }
  bool HasShrunk() const;
  // Lets go of the memory of everything before `done`. It comes back from the file when it is read again.
  void Release(std::size_t done);

 private:
  bool Map(std::size_t size);
  bool ReadStream(const CString& path, CString& error);

  int file_ = -1;
  void* map_ = nullptr;
  std::size_t released_ = 0;
  std::string stream_;
  std::string_view text_;
};

}  // namespace tallyscope
