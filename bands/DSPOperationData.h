// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <memory>

#include "bands/DSPData.h"

namespace tallyscope {

// One input or output of an operation: a region of a data set. Triples are x, y, z.
class CDSPOperationData {
 public:
  CDSPOperationData() = default;
  explicit CDSPOperationData(CDSPData* whole) { SetData(whole, false), CoverAll(); }
  CDSPOperationData(const CDSPOperationData&) = delete;
  CDSPOperationData& operator=(const CDSPOperationData&) = delete;

  virtual std::unique_ptr<CDSPOperationData> Clone(bool deep) const;  // deep: with a copy of the data, owned
  virtual ~CDSPOperationData() = default;
  // Region and data of `source`. The data stays the source's; MoveOwnership passes that on.
  virtual void TakeCopy(const CDSPOperationData& source);

  void SetData(CDSPData* set, bool own);
  bool OwnsData() const { return own_ != nullptr; }
  void MoveOwnership(CDSPOperationData& from);  // if `from` owns this entry's data

  void SetRegion(std::array<int, 3> first, std::array<int, 3> last, int stride);
  void CoverAll();  // the region is the whole of the data
  int GetExtent(int axis) const;
  int GetCount(int axis) const;  // samples along an axis of the region as far as the data reaches; 0 to its size
  int GetAxes() const;           // bits 0, 1, 2: the region spans more than one sample in x, y, z

  CDSPData* data = nullptr;
  std::array<int, 3> start{0, 0, 0};   // first sample
  std::array<int, 3> end{1, 1, 1};     // last sample, part of the region
  int step = 1;                        // carried along
  std::array<int, 3> origin{0, 0, 0};  // where the region stands in the run's overall grid

 private:
  std::unique_ptr<CDSPData> own_;
};

}  // namespace tallyscope
