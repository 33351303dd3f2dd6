// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <vector>

namespace tallyscope {

class CArchive;

// One bit per station or sample. Bit i is bit i mod 8, least significant first, of byte i / 8. Indices are not checked:
// they lie from 0 to below the size. Threads may read, and set bits of different bytes.
class bvector {
 public:
  bvector() = default;
  explicit bvector(int size) { Resize(size); }
  bvector(int size, bool value) { Resize(size, value); }
  bvector(const bvector&) = default;
  bvector& operator=(const bvector&) = default;
  bvector(bvector&&) = default;
  bvector& operator=(bvector&&) = default;
  virtual ~bvector() = default;

  // Growing makes room for size / 8 + 1 bytes, new ones 0. Shrinking keeps the bytes, and so the bits behind the end.
  void Resize(int size);
  void Resize(int size, bool value);  // when it grows, the new bits are `value`
  void Clear();                       // size 0, storage released

  int GetSize() const { return size_; }
  int Count() const;  // of the set bits below the size
  const std::vector<std::uint8_t>& GetBytes() const { return bytes_; }
  std::uint8_t* GetData() { return bytes_.data(); }  // of GetBytes(), for those who write many bits at once

  bool Get(int i) const { return (bytes_[static_cast<std::size_t>(i) / 8] >> (i % 8) & 1) != 0; }
  bool operator[](int i) const { return Get(i); }
  void Set(int i, bool value) {
    const auto bit = static_cast<std::uint8_t>(1u << (i % 8));
    auto& byte = bytes_[static_cast<std::size_t>(i) / 8];
    byte = static_cast<std::uint8_t>(value ? byte | bit : byte & ~bit);
  }
  void SetRange(int first, int last, bool value);  // both ends included; nothing when first > last

  // Size and number of bytes as 32-bit integers, then the bytes. A count that the archive can't hold leaves an empty
  // vector and a failed archive.
  virtual void Serialize(CArchive& archive);

 private:
  int size_ = 0;
  std::vector<std::uint8_t> bytes_;
};

}  // namespace tallyscope
