// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <utility>
#include <vector>

#include "statistics/Stats_Rgn.h"

namespace tallyscope {

// The gestures of a selection in their order, owned. Gestures that have been undone stay, inactive, at the end of the
// list until a new one drops them. A copy has regions of its own.
class CStats_RgnList {
 public:
  CStats_RgnList() = default;
  CStats_RgnList(const CStats_RgnList& other) { *this = other; }
  CStats_RgnList& operator=(const CStats_RgnList& other);
  CStats_RgnList(CStats_RgnList&&) = default;
  CStats_RgnList& operator=(CStats_RgnList&&) = default;
  ~CStats_RgnList() = default;

  bool IsEmpty() const { return regions_.empty(); }
  int GetCount() const { return static_cast<int>(regions_.size()); }
  CStats_Rgn& Get(int index) const { return *regions_[static_cast<std::size_t>(index)]; }
  void Append(std::unique_ptr<CStats_Rgn> region) { regions_.push_back(std::move(region)); }
  std::unique_ptr<CStats_Rgn> RemoveLast() {  // of a list that isn't empty
    auto region = std::move(regions_.back());
    regions_.pop_back();
    return region;
  }
  void Clear() { regions_.clear(); }

  void DropUndone();               // from the end, as long as the last one is inactive
  CStats_Rgn* GetLastActive();     // null if there is none
  CStats_Rgn* GetFirstInactive();  // null if there is none
  void DeactivateAll();

 private:
  std::vector<std::unique_ptr<CStats_Rgn>> regions_;
};

}  // namespace tallyscope
