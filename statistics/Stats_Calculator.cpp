// SPDX-License-Identifier: MIT
#include "statistics/Stats_Calculator.h"

#include "platform/core/Archive.h"

namespace tallyscope {

namespace {

std::size_t At(int item) { return static_cast<std::size_t>(item); }

}  // namespace

void CStats_Calculator::Add(CStats_Data* data, int dim) {
  data_.push_back(data);
  dims_.push_back(dim);
  flags_.push_back(0);
}

void CStats_Calculator::Remove(int item) {
  data_.erase(data_.begin() + item);
  dims_.erase(dims_.begin() + item);
  flags_.erase(flags_.begin() + item);
}

void CStats_Calculator::Clear() {
  data_.clear();
  dims_.clear();
  flags_.clear();
}

bool CStats_Calculator::IsItem(int item) { return item >= 0 && item < GetItemCount() && data_[At(item)] != nullptr; }

CStats_Data* CStats_Calculator::GetItemData(int item) { return data_[At(item)]; }

void CStats_Calculator::SetItemData(int item, CStats_Data* data) { data_[At(item)] = data; }

int CStats_Calculator::GetItemDim(int item) { return dims_[At(item)]; }

int CStats_Calculator::GetItemCount() { return static_cast<int>(data_.size()); }

bool CStats_Calculator::Calculate(int flags, CProgressSink* progress) {
  bool all = true;
  for (int item = 0; item < GetItemCount(); ++item) all = CalculateItem(item, flags, progress) && all;
  return all;
}

bool CStats_Calculator::CalculateItem(int, int, CProgressSink*) { return false; }

void CStats_Calculator::ClearFlags(int item, int mask) { flags_[At(item)] &= ~mask; }

void CStats_Calculator::ResetFlags(int item) { flags_[At(item)] = 0; }

void CStats_Calculator::SetFlags(int item, int mask) { flags_[At(item)] |= mask; }

int CStats_Calculator::GetFlags(int item) { return flags_[At(item)]; }

void CStats_Calculator::Serialize(CArchive& archive) {
  std::int32_t version = 0;
  auto count = static_cast<std::int32_t>(flags_.size());
  if (archive.IsStoring()) {
    archive << version << count;
    for (const int flags : flags_) archive << flags;
    return;
  }
  archive >> version >> count;
  if (count < 0 || static_cast<std::size_t>(count) > archive.GetRemaining() / sizeof(std::int32_t)) archive.Fail();
  if (archive.IsFailed()) return;
  // The items themselves are not stored: those that are missing come without data set.
  flags_.resize(At(count));
  data_.resize(At(count));
  dims_.resize(At(count));
  for (int& flags : flags_) archive >> flags;
}

}  // namespace tallyscope
