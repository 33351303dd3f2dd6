// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>
#include <cstddef>

#include "spatial/LeafTests.h"
#include "spatial/Stats_PointSearch.h"
#include "spatial/Stats_Spatial.h"
#include "statistics/StationBlocks.h"
#include "statistics/Stats_Data.h"
#include "statistics/Stats_Univariate.h"

namespace tallyscope {

namespace {

using leaf_tests::FullCircleAngle;
using leaf_tests::kPi;

}  // namespace

bool CStats_Spatial::FillLagGrid(int item, CProgressSink* progress) {
  CStats_Data* data = GetItemData(item);
  CStats_Univariate made;
  const bool isMade = valueStatistics_ == nullptr;
  bool good = true;
  if (isMade) {
    made.Add(data, GetItemDim(item));
    good = made.Calculate(1, progress);
    valueStatistics_ = &made;
  }
  good = good && CalcLagGrid(data, GetItemDim(item), progress);
  if (isMade) valueStatistics_ = nullptr;
  return good;
}

bool CStats_Spatial::CalcLagGrid(CStats_Data* data, int dim, CProgressSink* progress) {
  if (valueStatistics_ == nullptr) return false;
  const bool usesSearch = (lagFlags & kUseSearch) != 0 && dimCount_ >= 2;
  CStats_PointSearch* search = data->GetPointSearch();
  StationProgress reporter(progress, std::max(1, data->GetSize()));
  if (!reporter.Start(("Computing " + data->GetValueName(dim) + " sample variogram grid...").c_str())) return false;
  if (usesSearch && (search == nullptr || !search->IsPartitioned())) return false;

  const int total = data->GetSize();
  int counts[3] = {1, 1, 1};
  for (int axis = 0; axis < 3; ++axis) {
    if ((lagFlags & kLagX << axis) != 0) counts[axis] = std::max(0, lagCount[static_cast<std::size_t>(axis)]);
  }
  const auto size = [&](int axis) { return static_cast<std::size_t>(counts[axis]); };
  grid.assign(size(2), std::vector<std::vector<LagCell>>(size(1), std::vector<LagCell>(size(0))));
  if (sampleLimit < 0) sampleLimit = total;
  const int stride = (lagFlags & kSample) != 0 && sampleLimit > 0 ? std::max(1, total / sampleLimit) : 1;

  const double mean = valueStatistics_->mean;
  const auto coordinate = [&](int axis, int station) {
    return (lagFlags & kLagX << axis) != 0 ? data->GetValue(dims_[axis], station) : 0.0;
  };
  const auto add = [&](int level, int row, int column, double a, double b) {
    if (level < 0 || level >= counts[2] || row < 0 || row >= counts[1] || column < 0 || column >= counts[0]) return;
    LagCell& cell =
        grid[static_cast<std::size_t>(level)][static_cast<std::size_t>(row)][static_cast<std::size_t>(column)];
    ++cell.count;
    cell.covariance += (a - mean) * (b - mean);
    cell.moment += (a - b) * (a - b);
  };
  const auto bin = [&](int i, int j) {
    const double a = data->GetValue(dim, i);
    const double b = data->GetValue(dim, j);
    const double dx = coordinate(0, j) - coordinate(0, i);
    const double dy = coordinate(1, j) - coordinate(1, i);
    const double dz = coordinate(2, j) - coordinate(2, i);
    if ((lagFlags & kPolar) == 0) {
      const double d[3] = {dx, dy, dz};
      int at[3] = {};
      int half[3] = {};
      for (int axis = 0; axis < 3; ++axis) {
        if ((lagFlags & kLagX << axis) == 0) continue;
        half[axis] = std::max(1, counts[axis] / 2);
        const double place = std::floor(d[axis] / (2 * lagRange[static_cast<std::size_t>(axis)] / counts[axis]));
        if (!(place >= -half[axis] && place < half[axis])) return;
        at[axis] = static_cast<int>(place);
      }
      int mirror[3];
      for (int axis = 0; axis < 3; ++axis) {
        mirror[axis] = half[axis] == 0 ? 0 : half[axis] - (at[axis] + 1);
        at[axis] += half[axis];
      }
      add(at[2], at[1], at[0], a, b);
      add(mirror[2], mirror[1], mirror[0], a, b);
      return;
    }
    const double h = std::sqrt(dx * dx + dy * dy);
    const double d = (lagFlags & kLagZ) != 0 ? std::sqrt(dz * dz + h * h) : h;
    const double quotient = d / (lagRange[0] / counts[0]);
    if (!(quotient > -1 && quotient < counts[0])) return;
    const int lag = static_cast<int>(quotient);
    const int row = std::min(counts[1] - 1, static_cast<int>(counts[1] * FullCircleAngle(dx, dy) / (2 * kPi)));
    int opposite = row + counts[1] / 2;
    if (opposite >= counts[1]) opposite -= counts[1];
    if ((lagFlags & kLagZ) == 0) {
      add(0, row, lag, a, b);
      add(0, opposite, lag, a, b);
      return;
    }
    const int half = counts[2] / 2;
    int dip = half;
    if (std::fabs(h) <= 1e-12) {
      dip = dz < 0 ? 0 : dz > 0 ? counts[2] - 1 : half;
    } else if (std::fabs(dz) > 1e-12) {
      dip = static_cast<int>(std::atan(dz / h) * half / (kPi / 2) + half);
    }
    dip = std::min(dip, counts[2] - 1);
    add(dip, row, lag, a, b);
    add(std::max(0, 2 * half - dip - 1), opposite, lag, a, b);
  };

  const auto hasValue = [&](int station) { return data->IsValueValid(dim, station); };
  if (!usesSearch) {
    for (long long i = 0; i < total; i += stride) {
      for (long long j = i + stride; j < total; j += stride) {
        if (hasValue(static_cast<int>(i)) && hasValue(static_cast<int>(j)))
          bin(static_cast<int>(i), static_cast<int>(j));
      }
      if (!reporter.Report(static_cast<int>(i))) return false;
    }
  } else {
    CPointSearch::Leaves leaves;
    search->CollectLeaves(leaves, false);
    StationProgress leafReporter(progress, std::max(1, static_cast<int>(leaves.size())));
    int step = 0;
    for (auto* leaf : leaves) {
      Box box = leaf->box;
      for (std::size_t axis = 0; axis < 3; ++axis) {
        box.min[axis] -= lagRange[axis];
        box.max[axis] += lagRange[axis];
      }
      search->SearchBox(box);
      for (std::size_t p = 0; p < leaf->points.size(); p += static_cast<std::size_t>(stride)) {
        if (!hasValue(leaf->points[p])) continue;
        std::size_t c = 0;
        for (const auto* other : search->GetLeaves()) {
          if (other == leaf) c = p + static_cast<std::size_t>(stride);
          for (; c < other->points.size(); c += static_cast<std::size_t>(stride)) {
            if (hasValue(other->points[c])) bin(leaf->points[p], other->points[c]);
          }
          c -= other->points.size();
        }
      }
      search->GetTree()->Delete(leaf);
      if (!leafReporter.Report(step++)) {
        search->SetPartitioned(false);
        return false;
      }
    }
    search->SetPartitioned(false);
  }
  for (auto& level : grid) {
    for (auto& row : level) {
      for (auto& cell : row) {
        if (cell.count == 0) continue;
        cell.covariance /= cell.count;
        cell.moment /= 2.0 * cell.count;
      }
    }
  }
  return true;
}

}  // namespace tallyscope
