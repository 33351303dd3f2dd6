// SPDX-License-Identifier: MIT
#include "spatial/ExtractCells.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "spatial/CellLimit.h"
#include "spatial/PairProgress.h"
#include "spatial/StationQuery.h"

namespace tallyscope {

namespace {

std::array<int, 3> CountCells(const ExtractionSettings& settings) {
  std::array<int, 3> count{1, 1, 1};
  for (std::size_t axis = 0; axis < 3; ++axis) {
    if (settings.HasAxis(axis)) count[axis] = std::max(settings.cellCount[axis], 0);
  }
  return count;
}

Box GetCell(const ExtractionSettings& settings, const std::array<int, 3>& place) {
  Box box;
  for (std::size_t axis = 0; axis < 3; ++axis) {
    const double centre = settings.origin[axis] + place[axis] * settings.cellStep[axis];
    box.min[axis] = centre + settings.cellBox.min[axis];
    box.max[axis] = centre + settings.cellBox.max[axis];
  }
  settings.OpenInactiveAxes(box);
  return box;
}

}  // namespace

std::optional<Extraction> ExtractCells(const ExtractionSettings& settings, const PointIndex& points, int stations,
                                       CProgressSink* progress) {
  const std::array<int, 3> count = CountCells(settings);
  const bool hasLists = settings.Has(ExtractionSettings::kLists);
  const bool hasBitmaps = settings.Has(ExtractionSettings::kBitmaps);
  const std::size_t bitmapSize = hasBitmaps ? static_cast<std::size_t>(stations) / 8 + sizeof(bvector) : 0;
  if (!IsReasonableCellCount(count, sizeof(std::vector<int>) + bitmapSize)) return {};

  Extraction result;
  const std::int64_t cells = std::int64_t{count[0]} * count[1] * count[2];
  result.lists.resize(static_cast<std::size_t>(cells));
  if (hasBitmaps) result.bitmaps.resize(result.lists.size(), bvector(stations));
  PairProgress reporter(progress);
  if (!reporter.Start("Extraction computation")) return {};
  StationQuery query(points);
  for (std::int64_t cell = 0; cell < cells; ++cell) {
    const auto c = static_cast<std::size_t>(cell);
    const std::int64_t plane = cell / count[0];
    query.SearchBox(GetCell(settings, {static_cast<int>(cell % count[0]), static_cast<int>(plane % count[1]),
                                       static_cast<int>(plane / count[1])}));
    std::int64_t taken = 1;
    for (int station = 0; query.GetNext(station, 1); ++taken) {
      if (hasLists) result.lists[c].push_back(station);
      if (hasBitmaps) result.bitmaps[c].Set(station, true);
    }
    if (!reporter.Work(taken) || !reporter.Report(cell, cells)) return {};
  }
  return result;
}

}  // namespace tallyscope
