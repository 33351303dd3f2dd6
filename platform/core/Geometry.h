// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>

namespace tallyscope {

// Places and sizes in a window, in its pixels.

struct CPoint {
  int x = 0;
  int y = 0;
  bool operator==(const CPoint&) const = default;
};

struct CSize {
  int cx = 0;
  int cy = 0;
  bool operator==(const CSize&) const = default;
};

// The right and bottom edges do not belong to it.
struct CRect {
  int left = 0;
  int top = 0;
  int right = 0;
  int bottom = 0;

  int Width() const { return right - left; }
  int Height() const { return bottom - top; }
  bool IsEmpty() const { return right <= left || bottom <= top; }
  bool PtInRect(CPoint point) const { return point.x >= left && point.x < right && point.y >= top && point.y < bottom; }
  CRect Grown(int by) const { return {left - by, top - by, right + by, bottom + by}; }
  // The rectangle between two opposite corners.
  static CRect Between(CPoint a, CPoint b) {
    return {std::min(a.x, b.x), std::min(a.y, b.y), std::max(a.x, b.x), std::max(a.y, b.y)};
  }
  bool operator==(const CRect&) const = default;
};

}  // namespace tallyscope
