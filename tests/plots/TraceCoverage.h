// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cmath>
#include <map>
#include <utility>

#include "tests/support/RecorderDC.h"

namespace tallyscope {

// The lowest and highest row that was drawn in each column of pixels of a frame.
class TraceCoverage {
 public:
  explicit TraceCoverage(const DrawRect& frame) : frame_(frame) {}

  // Of lines between whole pixels, walked column by column as a thin line without smoothing goes.
  void AddLine(const RecorderDC::Line& line) {
    for (std::size_t i = 1; i < line.points.size(); ++i) {
      DrawPoint a = line.points[i - 1];
      DrawPoint b = line.points[i];
      if (b.x < a.x) std::swap(a, b);
      if (a.x == b.x) {
        Add(a.x, std::min(a.y, b.y), std::max(a.y, b.y));
        continue;
      }
      for (double x = a.x; x <= b.x; ++x) {
        const auto at = [&](double place) {
          return a.y + (b.y - a.y) / (b.x - a.x) * (std::clamp(place, a.x, b.x) - a.x);
        };
        Add(x, std::min(at(x - 0.5), at(x + 0.5)), std::max(at(x - 0.5), at(x + 0.5)));
      }
    }
  }
  void AddFill(const RecorderDC::Fill& fill) { Add(fill.rect.left, fill.rect.top, fill.rect.bottom - 1); }

  const std::map<double, std::pair<double, double>>& GetColumns() const { return columns_; }

 private:
  void Add(double column, double top, double bottom) {
    if (column < frame_.left || column >= frame_.right || bottom < frame_.top || top > frame_.bottom) return;
    top = std::round(std::max(top, frame_.top));
    bottom = std::round(std::min(bottom, frame_.bottom));
    auto& range = columns_.try_emplace(column, top, bottom).first->second;
    range = {std::min(range.first, top), std::max(range.second, bottom)};
  }

  DrawRect frame_;
  std::map<double, std::pair<double, double>> columns_;
};

}  // namespace tallyscope
