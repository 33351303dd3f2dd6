// SPDX-License-Identifier: MIT
#include "statistics/bvector.h"

#include <algorithm>
#include <cstring>

#include "platform/core/Archive.h"

namespace tallyscope {

void bvector::Resize(int size) {
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
  while (first <= last && first % 8 != 0) Set(first++, value);
  if (first > last) return;
  const int bytes = (last - first + 1) / 8;
  std::memset(bytes_.data() + first / 8, value ? 0xff : 0, static_cast<std::size_t>(bytes));
  for (first += bytes * 8; first <= last; ++first) Set(first, value);
}

void bvector::Serialize(CArchive& archive) {
  if (archive.IsStoring()) {
    archive << size_ << static_cast<std::int32_t>(bytes_.size());
    archive.Write(bytes_.data(), bytes_.size());
    return;
  }
  Clear();
  std::int32_t size = 0;
  std::int32_t count = 0;
  archive >> size >> count;
  const bool fits = count >= 0 && static_cast<std::size_t>(count) <= archive.GetRemaining() && size >= 0 &&
                    size <= static_cast<std::int64_t>(count) * 8;
  if (archive.IsFailed() || !fits) {
    archive.Fail();
    return;
  }
  bytes_.resize(static_cast<std::size_t>(count));
  archive.Read(bytes_.data(), bytes_.size());
  size_ = size;
}

}  // namespace tallyscope
