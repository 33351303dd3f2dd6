// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

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
  bool IsFailed() const { return failed_; }
  void Fail() { failed_ = true; }
  const std::vector<std::uint8_t>& GetBytes() const { return bytes_; }
  std::size_t GetRemaining() const { return bytes_.size() - position_; }

  CArchive& operator<<(std::int32_t value);
  CArchive& operator<<(double value);
  CArchive& operator>>(std::int32_t& value);
  CArchive& operator>>(double& value);
  void Write(const void* bytes, std::size_t count);
  void Read(void* bytes, std::size_t count);  // all of them, or zeros and failed

 private:
  bool storing_ = true;
  bool failed_ = false;
  std::size_t position_ = 0;
  std::vector<std::uint8_t> bytes_;
};

}  // namespace tallyscope
