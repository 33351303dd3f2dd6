// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <numbers>
#include <numeric>
#include <utility>

#include "spatial/CellLimit.h"
#include "spatial/PairProgress.h"
#include "spatial/StationIndex.h"
#include "spatial/StationQuery.h"
#include "spatial/Stats_Spatial.h"
#include "statistics/Stats_Data.h"

namespace tallyscope {

namespace {

constexpr double kTwoPi = 2 * std::numbers::pi;
constexpr double kEverything = 1e20;
constexpr double kFarthestStart = -1e6;  // radians; a ring sector that starts further back is empty

}  // namespace

// Collects the pairs of one cell at a time.
class CStats_Spatial::PairCollector {
 public:
  using Cell = std::array<int, 3>;

  PairCollector(const CStats_Spatial& spatial, CStats_Data& data, int dim, const StationIndex& index)
      : spatial_(spatial), data_(data), dim_(dim), index_(index), query_(*index.points) {}

  // How many cells there are along each axis.
  Cell GetCellCount() const {
    Cell count{1, 1, 1};
    if (!Has(kPairCells)) return count;
    for (std::size_t axis = 0; axis < 3; ++axis) {
      if (Has(kRing)) count[axis] = std::max(spatial_.pairCount[axis], 1);
      if (!Has(kRing) && Has(kPairX << axis)) count[axis] = std::max(spatial_.pairCount[axis], 0);
    }
    return count;
  }
  bool IsFull() const { return Has(kSampleLeaves) && total_ > 0 && total_ >= spatial_.totalPairs; }

  // Appends the pairs of a first station; with sampling up to the limits.
  void Collect(int station, const Cell& cell, const Cell& count, std::vector<int>& firsts, std::vector<int>& seconds) {
    Point3 place{};
    if (!HasPlace(station, place) || !HasValue(station) || !Search(place, cell, count)) return;
    int kept = 0;
    for (int partner = 0; query_.GetNext(partner, 1);) {
      if (!HasValue(partner)) continue;
      firsts.push_back(station);
      seconds.push_back(partner);
      ++total_;
      ++kept;
      if (Has(kSampleLeaves) && (kept >= spatial_.pairsPerStation || IsFull())) return;
    }
  }

 private:
  bool Has(unsigned flag) const { return (spatial_.pairFlags & flag) != 0; }
  bool HasValue(int station) const { return !Has(kPairValues) || data_.IsValueValid(dim_, station); }
  bool HasPlace(int station, Point3& place) const {
    for (std::size_t axis = 0; axis < static_cast<std::size_t>(index_.points->axes); ++axis) {
      const int field = index_.fields[axis];
      if (!data_.GetValue(field, station, place[axis]) || !std::isfinite(place[axis])) return false;
    }
    return true;
  }

  bool Search(const Point3& place, const Cell& cell, const Cell& count) {
    if (Has(kRing)) return SearchRing(place, cell, count);
    SearchWindow(place, cell, count);
    return true;
  }

  // Cells lie centred on the station: an even number of them has none in the middle.
  void SearchWindow(const Point3& place, const Cell& cell, const Cell& count) {
    Box box;
    for (std::size_t axis = 0; axis < 3; ++axis) {
      const double steps = Has(kPairCells) ? cell[axis] - (count[axis] - 1) / 2.0 : 1.0;
      const double offset = spatial_.pairOffset[axis] * steps;
      const bool active = Has(kPairX << axis);
      box.min[axis] = active ? place[axis] + spatial_.pairBox.min[axis] + offset : -kEverything;
      box.max[axis] = active ? place[axis] + spatial_.pairBox.max[axis] + offset : kEverything;
    }
    query_.SearchBox(box);
  }

  bool SearchRing(const Point3& place, const Cell& cell, const Cell& count) {
    double distance = spatial_.range;
    double angle = spatial_.azimuth;
    if (Has(kPairCells)) {
      distance = cell[0] * spatial_.range;
      angle += cell[1] * kTwoPi / count[1];
    }
    const double inner = distance - spatial_.width / 2;
    const double outer = distance + spatial_.width / 2;
    double start = angle - spatial_.azimuthTolerance;
    double end = angle + spatial_.azimuthTolerance;
    if (spatial_.limitWidth && spatial_.maxWidth < (end - start) * outer) {
      const double half = spatial_.maxWidth / outer * 0.5;
      start = angle - half;
      end = angle + half;
    }
    if (!(start > kFarthestStart)) return false;
    while (start < 0) {
      start += kTwoPi;
      end += kTwoPi;
    }
    query_.SearchSector(place, outer, inner, start, end);
    return true;
  }

  const CStats_Spatial& spatial_;
  CStats_Data& data_;
  int dim_;
  const StationIndex& index_;
  StationQuery query_;
  long long total_ = 0;
};

bool CStats_Spatial::CalcLagPairs(CStats_Data* data, int dim, CProgressSink* progress) {
  const StationIndex index = GetStationIndex(*data);
  if (!index) return false;
  PairCollector collector(*this, *data, dim, index);
  const PairCollector::Cell count = collector.GetCellCount();
  if (!IsReasonableCellCount(count, 2 * sizeof(lists[0]))) return false;
  const std::int64_t cells = std::int64_t{count[0]} * count[1] * count[2];
  std::vector<std::vector<int>> found(2 * static_cast<std::size_t>(cells));
  const std::vector<int> stations = ListFirstStations(*data, index);

  PairProgress reporter(progress);
  if (!reporter.Start("Lag pair extraction computation")) return false;
  const auto stationCount = static_cast<std::int64_t>(stations.size());
  const std::int64_t steps = cells * stationCount;
  for (std::int64_t step = 0; step < steps && !collector.IsFull(); ++step) {
    const std::int64_t cell = step / stationCount;
    const std::int64_t plane = cell / count[0];
    const auto first = 2 * static_cast<std::size_t>(cell);
    const std::size_t before = found[first].size();
    collector.Collect(
        stations[static_cast<std::size_t>(step % stationCount)],
        {static_cast<int>(cell % count[0]), static_cast<int>(plane % count[1]), static_cast<int>(plane / count[1])},
        count, found[first], found[first + 1]);
    if (!reporter.Work(100 + static_cast<std::int64_t>(found[first].size() - before))) return false;
    if (!reporter.Report(step, steps)) return false;
  }
  lists = std::move(found);
  return true;
}

// All stations in their order, or the first few of each leaf.
std::vector<int> CStats_Spatial::ListFirstStations(CStats_Data& data, const StationIndex& index) const {
  std::vector<int> stations;
  if ((pairFlags & kSampleLeaves) == 0) {
    stations.resize(static_cast<std::size_t>(data.GetSize()));
    std::iota(stations.begin(), stations.end(), 0);
    return stations;
  }
  const int limit = stationLimit < 0 ? data.GetSize() : stationLimit;
  StationQuery query(*index.points);
  query.SearchAll();
  const std::size_t leaves = query.GetLeaves().size();
  if (leaves == 0) return stations;
  const std::size_t quota = (static_cast<std::size_t>(limit) + leaves - 1) / leaves;
  for (const auto* leaf : query.GetLeaves()) {
    const auto taken = static_cast<std::ptrdiff_t>(std::min(quota, leaf->points.size()));
    stations.insert(stations.end(), leaf->points.begin(), leaf->points.begin() + taken);
  }
  return stations;
}

}  // namespace tallyscope
