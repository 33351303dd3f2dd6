// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "platform/core/Box.h"

namespace tallyscope {

// One gesture of a selection: a rectangle, a range of rows, an inversion. A selection is a list of these, which the
// session's spatial calculator replays into a bit for each station, so that undo and redo switch gestures off and on.
class CStats_Rgn {
 public:
  // Kinds, as GetType gives them.
  enum Type : int { kRect = 1, kPoly, kIndexRange, kIndexList, kDataRange, kSelAll, kInvert };

  virtual ~CStats_Rgn() = default;

  bool include = true;  // what the bits of the region's stations are set to: true adds to the selection, false removes

  virtual int GetType() = 0;
  virtual bool IsActive() { return active_; }
  virtual void SetActive(bool active) { active_ = active; }  // false while undone
  // Points in the units of the region's columns, of which kinds without points have none.
  virtual int GetPointCount() { return 0; }
  virtual const Point3& GetPoint(int index);  // REQUIRES: an index in range, except of a box, whose others are its last
  // The columns, by dim, in which the points are given, and how many of them count.
  virtual void SetDims(int dim1, int dim2, int dim3, int count);
  virtual void ResetDims() { SetDims(-1, -2, -3, 2); }  // the axes X and Y
  virtual int GetDim1() { return dims_[0]; }
  virtual int GetDim2() { return dims_[1]; }
  virtual int GetDim3() { return dims_[2]; }
  virtual int GetDimCount() { return dimCount_; }

  virtual std::unique_ptr<CStats_Rgn> Clone() const = 0;  // with its flags and dims

 protected:
  CStats_Rgn() = default;
  CStats_Rgn(const CStats_Rgn&) = default;
  CStats_Rgn& operator=(const CStats_Rgn&) = default;

 private:
  bool active_ = true;
  int dimCount_ = 2;
  int dims_[3] = {-1, -2, -3};
};

// A region whose points are the two corners of a box.
class CStats_BoxRgn : public CStats_Rgn {
 public:
  Box box;

  int GetPointCount() override { return 2; }
  const Point3& GetPoint(int index) override { return index == 0 ? box.min : box.max; }
};

}  // namespace tallyscope
