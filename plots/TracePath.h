// SPDX-License-Identifier: MIT
#pragma once

#include <initializer_list>
#include <vector>

#include "platform/ui/DC.h"

namespace tallyscope {

// Joins pieces of a thin line that go on from each other in one colour, so that a device draws them in one go.
class TracePath {
 public:
  // What lies far outside of `frame` is cut off: no co-ordinate is too large for a device.
  TracePath(CDC& dc, const DrawRect& frame);
  TracePath(const TracePath&) = delete;
  TracePath& operator=(const TracePath&) = delete;
  ~TracePath() { Flush(); }

  void Add(COLORREF colour, std::initializer_list<DrawPoint> points);
  void Flush();

 private:
  void AddLine(DrawPoint from, DrawPoint to);

  CDC& dc_;
  DrawRect limits_;
  COLORREF colour_ = 0;
  std::vector<DrawPoint> points_;
};

}  // namespace tallyscope
