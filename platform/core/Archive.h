// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/core/String.h"

namespace tallyscope {

// A binary stream of plain values, little-endian on every machine, that a class writes and reads through one Serialize.
//   CArchive out;                    CArchive in(out.GetBytes());
//   histogram.Serialize(out);        histogram.Serialize(in);
// A read past the end gives zeros and marks the archive failed; it never throws. A count that was read must be checked
// against GetRemaining() before room is made for it.
class CArchive {
 public:
  CArchive() = default;                                // for storing
  explicit CArchive(std::vector<std::uint8_t> bytes);  // for loading

  bool IsStoring() const { return storing_; }
  bool IsLoading() const { return !storing_; }
  bool IsFailed() const { return failed_; }  // for good
  void Fail() {                              // as a read past the end does: nothing remains
    failed_ = true;
    position_ = bytes_.size();
  }
  const std::vector<std::uint8_t>& GetBytes() const { return bytes_; }
  // For loading: bytes that are still to be read; 0 after a failure.
  std::size_t GetRemaining() const { return bytes_.size() - position_; }

  CArchive& operator<<(std::uint8_t value);
  CArchive& operator<<(std::uint16_t value);
  CArchive& operator<<(std::int32_t value);
  CArchive& operator<<(float value);
  CArchive& operator<<(double value);
  CArchive& operator>>(std::uint8_t& value);
  CArchive& operator>>(std::uint16_t& value);
  CArchive& operator>>(std::int32_t& value);
  CArchive& operator>>(float& value);
  CArchive& operator>>(double& value);
  // A text is its length and its bytes. The length takes one byte below 255; else 255 and two bytes below 65534; else
  // 255, two bytes of 65535 and four bytes. A length beyond what remains fails and gives an empty text, as does the
  // mark of wide characters (255, 65534).
  CArchive& operator<<(const CString& text);
  CArchive& operator>>(CString& text);
  void Write(const void* bytes, std::size_t count);
  void Read(void* bytes, std::size_t count);  // all of them, or zeros and failed

 private:
  bool storing_ = true;
  bool failed_ = false;
  std::size_t position_ = 0;
  std::vector<std::uint8_t> bytes_;
};

}  // namespace tallyscope
