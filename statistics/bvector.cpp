// SPDX-License-Identifier: MIT
#include "statistics/bvector.h"

#include <algorithm>
#include <bit>

#include "platform/core/Archive.h"

namespace tallyscope {

void bvector::Resize(int size) {
  size = std::max(size, 0);
  if (size > size_) bytes_.resize(static_cast<std::size_t>(size) / 8 + 1);
  size_ = size;
}

void bvector::Resize(int size, bool value) {
  const int before = size_;
  Resize(size);
  SetRange(before, size - 1, value);
}

void bvector::Clear() {
  size_ = 0;
  std::vector<std::uint8_t>().swap(bytes_);
}

void bvector::SetRange(int first, int last, bool value) {
  if (first > last) return;
  // Single bits up to a whole byte, whole bytes, single bits again.
  const int firstWhole = first / 8 + (first % 8 == 0 ? 0 : 1);
  const int endWhole = last / 8 + (last % 8 == 7 ? 1 : 0);
  if (firstWhole >= endWhole) {
    for (int i = first; i <= last; ++i) Set(i, value);
    return;
  }
  for (int i = first; i < 8 * firstWhole; ++i) Set(i, value);
  std::fill(bytes_.begin() + firstWhole, bytes_.begin() + endWhole, static_cast<std::uint8_t>(value ? 0xff : 0));
  for (int i = last - last % 8; last % 8 != 7 && i <= last; ++i) Set(i, value);
}

int bvector::Count() const {
  int count = 0;
  for (int byte = 0; byte < size_ / 8; ++byte) count += std::popcount(bytes_[static_cast<std::size_t>(byte)]);
  for (int bit = size_ / 8 * 8; bit < size_; ++bit) count += Get(bit) ? 1 : 0;
  return count;
}

void bvector::Serialize(CArchive& archive) {
  auto count = static_cast<std::int32_t>(bytes_.size());
  std::int32_t size = size_;
  if (archive.IsStoring()) {
    archive << size << count;
    archive.Write(bytes_.data(), bytes_.size());
    return;
  }
  archive >> size >> count;
  const auto byteCount = static_cast<std::size_t>(std::max(count, 0));
  const bool holds = size >= 0 && count >= 0 && static_cast<std::size_t>(size) <= 8 * byteCount;
  if (archive.IsFailed() || !holds || byteCount > archive.GetRemaining()) {
    archive.Fail();
    Clear();
    return;
  }
  size_ = size;
  bytes_.resize(byteCount);
  archive.Read(bytes_.data(), byteCount);
}

}  // namespace tallyscope
