// SPDX-License-Identifier: MIT
#include "statistics/Stats_Calculator.h"

#include <cassert>
#include <cstddef>
#include <cstdint>

#include "platform/core/Archive.h"

namespace tallyscope {

namespace {

std::size_t Index(int item) {
  return static_cast<std::size_t>(item);
}

// The entry of an item that the caller knows to exist.
template <class Entry>
Entry& At(std::vector<Entry>& entries, int item) {
  assert(item >= 0 && Index(item) < entries.size());
  return entries[Index(item)];
}

}  // namespace

void CStats_Calculator::Add(CStats_Data* data, int dim) {
  flags_.resize(data_.size());  // drops flags that were loaded for an item that was never given
  data_.push_back(data);
  dims_.push_back(dim);
  flags_.push_back(0);
}

void CStats_Calculator::Remove(int item) {
  if (item < 0 || item >= GetItemCount()) return;
  data_.erase(data_.begin() + item);
  dims_.erase(dims_.begin() + item);
  flags_.erase(flags_.begin() + item);
}

void CStats_Calculator::Clear() {
  data_.clear();
  dims_.clear();
  flags_.clear();
}

bool CStats_Calculator::IsItem(int item) {
  return item >= 0 && Index(item) < data_.size() && data_[Index(item)] != nullptr;
}

CStats_Data* CStats_Calculator::GetItemData(int item) {
  return At(data_, item);
}

int CStats_Calculator::GetItemDim(int item) {
  return At(dims_, item);
}

int CStats_Calculator::GetItemCount() {
  return static_cast<int>(data_.size());
}

bool CStats_Calculator::Calculate(int flags, CProgressSink* progress) {
  bool all = true;
  for (int item = 0; item < GetItemCount(); ++item) all &= CalculateItem(item, flags, progress);
  return all;
}

bool CStats_Calculator::CalculateItem(int, int, CProgressSink*) {
  return false;
}

void CStats_Calculator::ClearFlags(int item, int mask) {
  At(flags_, item) &= ~mask;
}

void CStats_Calculator::ResetFlags(int item) {
  At(flags_, item) = 0;
}

void CStats_Calculator::SetFlags(int item, int mask) {
  At(flags_, item) |= mask;
}

int CStats_Calculator::GetFlags(int item) {
  return At(flags_, item);
}

void CStats_Calculator::Serialize(CArchive& archive) {
  std::int32_t version = 0;
  auto count = static_cast<std::int32_t>(flags_.size());
  if (archive.IsStoring()) {
    archive << version << count;
    for (const int flags : flags_) archive << static_cast<std::int32_t>(flags);
    return;
  }
  archive >> version >> count;
  const bool holds = version == 0 && count >= 0 && Index(count) <= archive.GetRemaining() / sizeof(std::int32_t);
  if (archive.IsFailed() || !holds) {
    archive.Fail();
    count = 0;
  }
  flags_.assign(Index(count), 0);
  for (int& flags : flags_) {
    std::int32_t stored = 0;
    archive >> stored;
    flags = stored;
  }
  if (flags_.size() < data_.size()) flags_.resize(data_.size());
}

}  // namespace tallyscope
