// SPDX-License-Identifier: MIT
#include "spatial/RegionSelector.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <utility>

#include "spatial/PairProgress.h"
#include "spatial/StationIndex.h"
#include "statistics/Stats_Data.h"
#include "statistics/Stats_RgnDataRange.h"
#include "statistics/Stats_RgnIndexList.h"

namespace tallyscope {

namespace {

using Node = PointIndex::Node;

constexpr std::size_t kSmallLeaf = 9;  // a leaf with fewer points isn't worth a test of its corners
constexpr int kBlock = 512;

// Cut towards zero, within the table. NaN counts as 0.
int ClampStation(double value, int count) {
  if (!(value > 0)) return 0;
  return value >= count - 1 ? count - 1 : static_cast<int>(value);
}

std::array<int, 3> GetDims(CStats_Rgn& region) {
  return {region.GetDim1(), region.GetDim2(), region.GetDim3()};
}

Box Unite(std::span<const Node* const> leaves) {
  Box box = leaves[0]->box;
  for (const Node* leaf : leaves) {
    for (std::size_t axis = 0; axis < 2; ++axis) {
      box.min[axis] = std::min(box.min[axis], leaf->box.min[axis]);
      box.max[axis] = std::max(box.max[axis], leaf->box.max[axis]);
    }
  }
  return box;
}

bool IsLeafInside(const Node& leaf, PolygonTest& polygon, const PolygonTest::Scope& scope) {
  if (leaf.points.size() < kSmallLeaf || polygon.HasVertexIn(leaf.box)) return false;
  const Box& box = leaf.box;
  const double x[4] = {box.min[0], box.min[0], box.max[0], box.max[0]};
  const double y[4] = {box.min[1], box.max[1], box.min[1], box.max[1]};
  PolygonTest::Place corners[4];
  polygon.Classify(scope, x, y, 4, corners);
  return std::find(corners, corners + 4, PolygonTest::kOutside) == corners + 4;
}

}  // namespace

RegionSelector::RegionSelector(CStats_Data& data, const ExtractionSettings& settings, bvector& bits,
                               std::vector<int>& changed, CProgressSink* sink, PairProgress& progress)
    : data_(data),
      settings_(settings),
      total_(data.GetSize()),
      bits_(bits),
      changed_(changed),
      sink_(sink),
      progress_(progress) {}

bool RegionSelector::Apply(CStats_Rgn& region) {
  include_ = region.include;
  switch (region.GetType()) {
    case CStats_Rgn::kRect:
      return TakeRectangle(region);
    case CStats_Rgn::kPoly:
      return TakePolygon(region);
    case CStats_Rgn::kIndexRange:
      if (total_ > 0)
        TakeRange(ClampStation(region.GetPoint(0)[0], total_), ClampStation(region.GetPoint(1)[0], total_));
      return true;
    case CStats_Rgn::kIndexList:
      for (const int station : static_cast<CStats_RgnIndexList&>(region).stations) {
        if (station >= 0 && station < total_) Take(station);
      }
      return true;
    case CStats_Rgn::kDataRange:
      return TakeValues(static_cast<CStats_RgnDataRange&>(region));
    case CStats_Rgn::kSelAll:
      TakeRange(0, total_ - 1);
      return true;
    case CStats_Rgn::kInvert:
      Invert();
      return true;
    default:
      return true;
  }
}

void RegionSelector::TakeRange(int first, int last) {
  for (int station = first; Records() && station <= last; ++station) {
    if (bits_.Get(station) != include_) changed_.push_back(station);
  }
  bits_.SetRange(first, last, include_);
}

void RegionSelector::Invert() {
  for (int station = 0; station < total_; ++station) bits_.Set(station, !bits_.Get(station));
  for (int station = 0; Records() && station < total_; ++station) changed_.push_back(station);
}

bool RegionSelector::TakeValues(CStats_RgnDataRange& region) {
  const double low = region.GetPoint(0)[0];
  const double high = region.GetPoint(1)[0];
  double values[kBlock];
  unsigned char valid[kBlock];
  for (int first = 0; first < total_; first += kBlock) {
    const int count = std::min(kBlock, total_ - first);
    data_.ReadValues(region.field, first, count, values, valid);
    for (int i = 0; i < count; ++i) {
      if (valid[i] != 0 && low <= values[i] && values[i] <= high) Take(first + i);
    }
    if (!progress_.Work(count)) return false;
  }
  return true;
}

bool RegionSelector::IsSearchBuiltFor(const std::array<int, 3>& dims, int dimCount) {
  const StationIndex index = GetStationIndex(data_);
  return index && index.points->axes == dimCount && index.fields == dims;
}

// Changes are recorded in the order of the search. Where that doesn't matter, two columns are sooner read than a
// search is built for them, and the search stays as it is.
bool RegionSelector::TakeRectangle(CStats_Rgn& region) {
  Box box;
  for (std::size_t axis = 0; axis < 3; ++axis) {
    const auto ends = std::minmax(region.GetPoint(0)[axis], region.GetPoint(1)[axis]);
    box.min[axis] = ends.first;
    box.max[axis] = ends.second;
  }
  settings_.OpenInactiveAxes(box);
  const std::array<int, 3> dims = GetDims(region);
  const int dimCount = region.GetDimCount();
  if (!HasDims(data_, dims, dimCount)) return false;
  if (!Records() && !IsSearchBuiltFor(dims, dimCount)) return ScanRectangle(dims, dimCount, box);
  const StationIndex index = PrepareStationIndex(data_, dims, dimCount, sink_);
  if (!index) return false;
  StationQuery query(*index.points);
  query.SearchBox(box);
  for (int station = 0; query.GetNext(station, 1);) Take(station);
  return progress_.Work(total_);
}

bool RegionSelector::ScanRectangle(const std::array<int, 3>& dims, int axes, const Box& box) {
  double values[3][kBlock];
  unsigned char valid[3][kBlock];
  for (int first = 0; first < total_; first += kBlock) {
    const int count = std::min(kBlock, total_ - first);
    for (std::size_t axis = 0; axis < static_cast<std::size_t>(axes); ++axis) {
      data_.ReadValues(dims[axis], first, count, values[axis], valid[axis]);
    }
    for (int i = 0; i < count; ++i) {
      bool inside = true;
      for (std::size_t axis = 0; axis < static_cast<std::size_t>(axes) && inside; ++axis) {
        const double value = values[axis][i];
        inside = valid[axis][i] != 0 && std::isfinite(value) && box.min[axis] <= value && value <= box.max[axis];
      }
      if (inside) Take(first + i);
    }
    if (!progress_.Work(count)) return false;
  }
  return true;
}

bool RegionSelector::TakePolygon(CStats_Rgn& region) {
  const StationIndex index = PrepareStationIndex(data_, GetDims(region), region.GetDimCount(), sink_);
  if (!index) return false;
  std::vector<Point3> vertices;
  vertices.reserve(static_cast<std::size_t>(region.GetPointCount()));
  for (int i = 0; i < region.GetPointCount(); ++i) vertices.push_back(region.GetPoint(i));
  if (vertices.empty()) return true;
  PolygonTest polygon(std::move(vertices));
  Box box = polygon.GetBounds();
  settings_.OpenInactiveAxes(box);
  StationQuery query(*index.points);
  query.SearchBox(box);
  return TakeLeaves(*index.points, query.GetLeaves(), polygon, polygon.GetWhole());
}

// Halves of neighbouring leaves, as long as they meet an edge.
bool RegionSelector::TakeLeaves(const PointIndex& points, std::span<const Node* const> leaves, PolygonTest& polygon,
                                const PolygonTest::Scope& outer) {
  if (leaves.empty()) return true;
  const PolygonTest::Scope scope = polygon.Narrow(outer, Unite(leaves));
  if (scope.edges == 0 && !scope.inside) return true;
  if (scope.edges == 0) {
    for (const Node* leaf : leaves) {
      for (const int station : leaf->points) Take(station);
    }
    return true;
  }
  if (leaves.size() == 1) {
    TakeLeaf(points, *leaves[0], polygon, scope);
    return progress_.Work(static_cast<std::int64_t>(leaves[0]->points.size() * (1 + scope.edges / 16)));
  }
  return TakeLeaves(points, leaves.first(leaves.size() / 2), polygon, scope) &&
         TakeLeaves(points, leaves.subspan(leaves.size() / 2), polygon, scope);
}

void RegionSelector::TakeLeaf(const PointIndex& points, const Node& leaf, PolygonTest& polygon,
                              const PolygonTest::Scope& scope) {
  const std::size_t count = leaf.points.size();
  places_.assign(count, PolygonTest::kInside);
  if (!IsLeafInside(leaf, polygon, scope)) {
    const double* x = points.GetLeafCoordinates(leaf, 0);
    polygon.Classify(scope, x, points.GetLeafCoordinates(leaf, 1), count, places_.data());
  }
  for (std::size_t p = 0; p < count; ++p) {
    if (places_[p] == PolygonTest::kOutside || (places_[p] == PolygonTest::kOnEdge && !include_)) continue;
    Take(leaf.points[p]);
  }
}

}  // namespace tallyscope
