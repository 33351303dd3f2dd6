// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <vector>

#include "platform/core/Box.h"
#include "statistics/bvector.h"

namespace tallyscope {

// What an extraction is to deliver, and of regular cells where they lie.
struct ExtractionSettings {
  enum ExtractFlag : unsigned {
    kRegularCells = 0x01,  // clear: the regions
    kLists = 0x02,
    kBitmaps = 0x04,      // set if neither is
    kIncremental = 0x08,  // the last active region alone, on top of the bits as they stand
    kExtractX = 0x10,     // axes with a range; the others take everything
    kExtractY = 0x20,
    kExtractZ = 0x40,
    kChanges = 0x100  // record stations whose bit changes
  };

  unsigned flags = kLists;
  Box cellBox;                     // a cell about its centre
  Point3 origin{};                 // centre of cell (0, 0, 0)
  std::array<int, 3> cellCount{};  // along the axes with a range; the others have one
  Point3 cellStep{};               // between centres

  bool Has(ExtractFlag flag) const { return (flags & flag) != 0; }
  bool HasAxis(std::size_t axis) const { return (flags & (kExtractX << axis)) != 0; }
  void OpenInactiveAxes(Box& box) const;  // which then take everything within 1e20
};

// What was extracted. Regions give one list, one list of changes and one bitmap; cells a list each and, if wanted, a
// bitmap.
struct Extraction {
  std::vector<std::vector<int>> lists;
  std::vector<std::vector<int>> changed;
  std::vector<bvector> bitmaps;
};

inline void ExtractionSettings::OpenInactiveAxes(Box& box) const {
  constexpr double kEverything = 1e20;
  for (std::size_t axis = 0; axis < 3; ++axis) {
    if (HasAxis(axis)) continue;
    box.min[axis] = -kEverything;
    box.max[axis] = kEverything;
  }
}

}  // namespace tallyscope
