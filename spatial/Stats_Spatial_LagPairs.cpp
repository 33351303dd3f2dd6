// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>
#include <cstddef>

#include "spatial/CellLimit.h"
#include "spatial/Stats_PointSearch.h"
#include "spatial/Stats_Spatial.h"
#include "statistics/StationBlocks.h"
#include "statistics/Stats_Data.h"

namespace tallyscope {

namespace {

constexpr double kTwoPi = 2 * 3.14159265358979323846;
constexpr double kEverything = 1e20;
constexpr double kFarthestStart = -1e6;  // radians; a ring sector that starts further back is empty

}  // namespace

// Collects the pairs of one cell at a time.
class CStats_Spatial::PairCollector {
 public:
  using Cell = std::array<int, 3>;

  PairCollector(CStats_Spatial& spatial, CStats_Data* data, int dim, CStats_PointSearch& search)
      : spatial_(spatial), data_(data), dim_(dim), search_(search) {}

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
  bool IsQualified(int station) const { return search_.IsPointValid(station) && HasValue(station); }
  bool IsFull() const { return Has(kSampleLeaves) && total_ > 0 && total_ >= spatial_.totalPairs; }

  // Appends the pairs of a first station; with sampling up to the limits.
  void Collect(int station, const Cell& cell, const Cell& count, std::size_t index) {
    if (!IsQualified(station) || !Search(station, cell, count)) return;
    std::vector<int>& firsts = spatial_.lists[2 * index];
    std::vector<int>& seconds = spatial_.lists[2 * index + 1];
    int kept = 0;
    for (int partner = 0; search_.GetNext(partner, 1);) {
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
  bool HasValue(int station) const { return !Has(kPairValues) || data_->IsValueValid(dim_, station); }

  bool Search(int station, const Cell& cell, const Cell& count) {
    const Point3 place{search_.GetX(station), search_.GetDimensions() > 1 ? search_.GetY(station) : 0,
                       search_.GetDimensions() > 2 ? search_.GetZ(station) : 0};
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
    search_.SearchBox(box);
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
    search_.SearchSector(place, outer, inner, start, end);
    return true;
  }

  CStats_Spatial& spatial_;
  CStats_Data* data_;
  int dim_;
  CStats_PointSearch& search_;
  long long total_ = 0;
};

bool CStats_Spatial::CalcLagPairs(CStats_Data* data, int dim, CProgressSink* progress) {
  CStats_PointSearch* search = data->GetPointSearch();
  if (search == nullptr || !search->IsPartitioned()) return false;
  PairCollector collector(*this, data, dim, *search);
  const PairCollector::Cell count = collector.GetCellCount();
  if (!IsReasonableCellCount(count, 2 * sizeof(lists[0]))) return false;
  const std::size_t cells =
      static_cast<std::size_t>(count[0]) * static_cast<std::size_t>(count[1]) * static_cast<std::size_t>(count[2]);
  lists.assign(2 * cells, {});
  const std::vector<int> stations = ListFirstStations(data, *search);

  const std::size_t steps = cells * stations.size();
  StationProgress reporter(progress, 100);
  if (!reporter.Start("Lag pair extraction computation")) return false;
  for (std::size_t step = 0; step < steps && !collector.IsFull(); ++step) {
    const std::size_t cell = step / stations.size();
    const std::size_t x = cell % static_cast<std::size_t>(count[0]);
    const std::size_t y = cell / static_cast<std::size_t>(count[0]) % static_cast<std::size_t>(count[1]);
    const std::size_t z = cell / static_cast<std::size_t>(count[0]) / static_cast<std::size_t>(count[1]);
    collector.Collect(stations[step % stations.size()], {static_cast<int>(x), static_cast<int>(y), static_cast<int>(z)},
                      count, cell);
    if (!reporter.Report(static_cast<int>(static_cast<double>(step) * 100 / static_cast<double>(steps)))) return false;
  }
  return true;
}

// All stations in their order, or the first few of each leaf.
std::vector<int> CStats_Spatial::ListFirstStations(CStats_Data* data, CStats_PointSearch& search) {
  std::vector<int> stations;
  if ((pairFlags & kSampleLeaves) == 0) {
    stations.resize(static_cast<std::size_t>(data->GetSize()));
    for (std::size_t i = 0; i < stations.size(); ++i) stations[i] = static_cast<int>(i);
    return stations;
  }
  const int limit = stationLimit < 0 ? data->GetSize() : stationLimit;
  search.SearchAll();
  const auto leaves = static_cast<std::size_t>(search.GetLeafCount());
  if (leaves == 0) return stations;
  const std::size_t quota = (static_cast<std::size_t>(limit) + leaves - 1) / leaves;
  for (const auto* leaf : search.GetLeaves()) {
    const auto taken = static_cast<std::ptrdiff_t>(std::min(quota, leaf->points.size()));
    stations.insert(stations.end(), leaf->points.begin(), leaf->points.begin() + taken);
  }
  return stations;
}

}  // namespace tallyscope
