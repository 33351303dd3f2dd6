// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "spatial/LagSettings.h"

namespace tallyscope {

// The pairs of stations whose separation falls into one cell of a lag grid. Each pair enters two cells, one for each
// sense of its direction. Zeros without a pair.
struct LagCell {
  int count = 0;           // saturates
  double covariance = 0;   // mean of (a - mean)(b - mean), with the mean of the whole field
  double moment = 0;       // moment of inertia, or semivariance: half the mean of (a - b)^2
  std::int64_t pairs = 0;  // the count in full
};

// What an int holds of a number of pairs.
int Saturate(std::int64_t pairs);

// A lag grid as it was computed, with the settings that it was computed by. A value that never changes, and a copy
// costs nothing: copies share the cells. Indexed [level][row][column]: of a polar grid the dip, azimuth and lag, of a
// Cartesian one z, y and x; an inactive axis has one entry.
class LagGrid {
 public:
  using Row = std::vector<LagCell>;
  using Level = std::vector<Row>;
  using Cells = std::vector<Level>;

  LagGrid();  // never computed: no cells
  LagGrid(const LagSettings& settings, Cells cells);
  LagGrid(const LagGrid&) = default;  // in place of a move too, which would leave nothing behind
  LagGrid& operator=(const LagGrid&) = default;
  ~LagGrid() = default;

  const LagSettings& GetSettings() const { return content_->settings; }
  const Cells& GetCells() const { return content_->cells; }

  bool empty() const { return GetCells().empty(); }
  std::size_t size() const { return GetCells().size(); }
  const Level& operator[](std::size_t level) const { return GetCells()[level]; }
  Cells::const_iterator begin() const { return GetCells().begin(); }
  Cells::const_iterator end() const { return GetCells().end(); }

  std::size_t GetRowCount() const { return empty() ? 0 : GetCells()[0].size(); }  // of a level
  std::size_t GetColumnCount() const { return GetRowCount() == 0 ? 0 : GetCells()[0][0].size(); }
  bool IsPolar() const { return !empty() && GetSettings().IsPolar(); }

 private:
  struct Content {
    LagSettings settings;
    Cells cells;
  };
  std::shared_ptr<const Content> content_;
};

}  // namespace tallyscope
