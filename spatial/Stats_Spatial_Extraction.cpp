// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <span>

#include "spatial/CellLimit.h"
#include "spatial/PolygonTest.h"
#include "spatial/Stats_PointSearch.h"
#include "spatial/Stats_Spatial.h"
#include "statistics/StationBlocks.h"
#include "statistics/Stats_Data.h"
#include "statistics/Stats_RgnDataRange.h"
#include "statistics/Stats_RgnIndexList.h"

namespace tallyscope {

namespace {

constexpr double kEverything = 1e20;   // an axis without a range reaches so far to both sides
constexpr std::size_t kSmallLeaf = 9;  // a leaf with fewer points isn't worth a test of its corners
constexpr int kBlock = 512;

std::size_t At(int i) {
  return static_cast<std::size_t>(i);
}

// Cut towards zero, within the table. NaN counts as 0.
int ClampStation(double value, int count) {
  if (!(value > 0)) return 0;
  return value >= count - 1 ? count - 1 : static_cast<int>(value);
}

bool HasAxis(unsigned flags, std::size_t axis) {
  return (flags & (CStats_Spatial::kExtractX << axis)) != 0;
}

void OpenInactiveAxes(Box& box, unsigned flags) {
  for (std::size_t axis = 0; axis < 3; ++axis) {
    if (HasAxis(flags, axis)) continue;
    box.min[axis] = -kEverything;
    box.max[axis] = kEverything;
  }
}

void ListSetBits(const bvector& bits, int count, std::vector<int>& list) {
  const std::vector<std::uint8_t>& bytes = bits.GetBytes();
  for (int first = 0; first < count; first += 8) {
    if (bytes[At(first / 8)] == 0) continue;
    for (int station = first; station < std::min(first + 8, count); ++station) {
      if (bits.Get(station)) list.push_back(station);
    }
  }
}

}  // namespace

bool CStats_Spatial::CalcExtraction(CStats_Data* data, int, CProgressSink* progress) {
  if ((extractFlags & (kLists | kBitmaps)) == 0) extractFlags |= kBitmaps;
  return (extractFlags & kRegularCells) != 0 ? ExtractCells(data, progress) : ExtractRegions(data, progress);
}

bool CStats_Spatial::ExtractCells(CStats_Data* data, CProgressSink* progress) {
  CStats_PointSearch* search = data->GetPointSearch();
  if (search == nullptr || !search->IsPartitioned()) return false;
  std::array<int, 3> count{};
  for (std::size_t axis = 0; axis < 3; ++axis) {
    count[axis] = HasAxis(extractFlags, axis) ? std::max(cellCount[axis], 0) : 1;
  }
  const std::size_t bitmapSize = (extractFlags & kBitmaps) != 0 ? At(data->GetSize()) / 8 + sizeof(bvector) : 0;
  if (!IsReasonableCellCount(count, sizeof(lists[0]) + bitmapSize)) return false;
  lists.clear();
  bitmaps.clear();
  const std::size_t cells = At(count[0]) * At(count[1]) * At(count[2]);
  lists.resize(cells);
  if ((extractFlags & kBitmaps) != 0) bitmaps.resize(cells, bvector(data->GetSize()));

  StationProgress reporter(progress, static_cast<int>(cells));
  if (!reporter.Start("Extraction computation")) return false;
  for (std::size_t cell = 0; cell < cells; ++cell) {
    const std::size_t place[3] = {cell % At(count[0]), cell / At(count[0]) % At(count[1]),
                                  cell / At(count[0]) / At(count[1])};
    Box box;
    for (std::size_t axis = 0; axis < 3; ++axis) {
      const double centre = origin[axis] + static_cast<double>(place[axis]) * cellStep[axis];
      box.min[axis] = centre + cellBox.min[axis];
      box.max[axis] = centre + cellBox.max[axis];
    }
    OpenInactiveAxes(box, extractFlags);
    search->SearchBox(box);
    for (int station = 0; search->GetNext(station, 1);) {
      if ((extractFlags & kLists) != 0) lists[cell].push_back(station);
      if ((extractFlags & kBitmaps) != 0) bitmaps[cell].Set(station, true);
    }
    if (!reporter.Report(static_cast<int>(cell))) return false;
  }
  return true;
}

// Evaluates regions into the bits of a selection.
class CStats_Spatial::Selector {
 public:
  Selector(CStats_Data* data, unsigned flags, bvector& bits, std::vector<int>& changed, CProgressSink* progress)
      : data_(data), flags_(flags), total_(data->GetSize()), bits_(bits), changed_(changed), progress_(progress) {}

  // False if the region's search can't be built; nothing is taken then.
  bool Apply(CStats_Rgn& region) {
    include_ = region.include;
    switch (region.GetType()) {
      case CStats_Rgn::kRect:
        return TakeRectangle(region);
      case CStats_Rgn::kPoly:
        return TakePolygon(region);
      case CStats_Rgn::kIndexRange:
        if (total_ > 0)
          TakeRange(ClampStation(region.GetPoint(0)[0], total_), ClampStation(region.GetPoint(1)[0], total_));
        break;
      case CStats_Rgn::kIndexList:
        for (const int station : static_cast<CStats_RgnIndexList&>(region).stations) {
          if (station >= 0 && station < total_) Take(station);
        }
        break;
      case CStats_Rgn::kDataRange:
        TakeValues(static_cast<CStats_RgnDataRange&>(region));
        break;
      case CStats_Rgn::kSelAll:
        TakeRange(0, total_ - 1);
        break;
      case CStats_Rgn::kInvert:
        Invert();
        break;
      default:
        break;
    }
    return true;
  }
  bool IsCancelled() const { return cancelled_; }  // in the build of a search

 private:
  bool Records() const { return (flags_ & kChanges) != 0; }

  void Take(int station) {
    if (Records() && bits_.Get(station) != include_) changed_.push_back(station);
    bits_.Set(station, include_);
  }
  void TakeRange(int first, int last) {
    for (int station = first; Records() && station <= last; ++station) {
      if (bits_.Get(station) != include_) changed_.push_back(station);
    }
    bits_.SetRange(first, last, include_);
  }
  void Invert() {
    for (int station = 0; station < total_; ++station) bits_.Set(station, !bits_.Get(station));
    for (int station = 0; Records() && station < total_; ++station) changed_.push_back(station);
  }

  void TakeValues(CStats_RgnDataRange& region) {
    const double low = region.GetPoint(0)[0];
    const double high = region.GetPoint(1)[0];
    double values[kBlock];
    unsigned char valid[kBlock];
    for (int first = 0; first < total_; first += kBlock) {
      const int count = std::min(kBlock, total_ - first);
      data_->ReadValues(region.field, first, count, values, valid);
      for (int i = 0; i < count; ++i) {
        if (valid[i] != 0 && low <= values[i] && values[i] <= high) Take(first + i);
      }
    }
  }

  CStats_PointSearch* GetSearch(CStats_Rgn& region) {
    const int dims[3] = {region.GetDim1(), region.GetDim2(), region.GetDim3()};
    CStats_PointSearch* search = PrepareSearch(data_, dims, region.GetDimCount(), progress_);
    cancelled_ = search == nullptr && HasDims(data_, dims, region.GetDimCount()) && progress_ != nullptr;
    return search;
  }
  bool IsSearchBuiltFor(CStats_Rgn& region) {
    CStats_PointSearch* search = data_->GetPointSearch();
    return search != nullptr && search->IsPartitioned() && search->GetDimensions() == region.GetDimCount() &&
           search->GetFieldX() == region.GetDim1() && search->GetFieldY() == region.GetDim2() &&
           search->GetFieldZ() == region.GetDim3();
  }

  // Changes are recorded in the order of the search. Where that doesn't matter, two columns are sooner read than a
  // search is built for them, and the search stays as it is.
  bool TakeRectangle(CStats_Rgn& region) {
    Box box;
    for (std::size_t axis = 0; axis < 3; ++axis) {
      const auto ends = std::minmax(region.GetPoint(0)[axis], region.GetPoint(1)[axis]);
      box.min[axis] = ends.first;
      box.max[axis] = ends.second;
    }
    OpenInactiveAxes(box, flags_);
    if (!Records() && !IsSearchBuiltFor(region)) return ScanRectangle(region, box);
    CStats_PointSearch* search = GetSearch(region);
    if (search == nullptr) return false;
    search->SearchBox(box);
    for (int station = 0; search->GetNext(station, 1);) Take(station);
    return true;
  }
  bool ScanRectangle(CStats_Rgn& region, const Box& box) {
    const int dims[3] = {region.GetDim1(), region.GetDim2(), region.GetDim3()};
    const int axes = region.GetDimCount();
    if (!HasDims(data_, dims, axes)) return false;
    double values[3][kBlock];
    unsigned char valid[3][kBlock];
    for (int first = 0; first < total_; first += kBlock) {
      const int count = std::min(kBlock, total_ - first);
      for (int axis = 0; axis < axes; ++axis) data_->ReadValues(dims[axis], first, count, values[axis], valid[axis]);
      for (int i = 0; i < count; ++i) {
        bool inside = true;
        for (int axis = 0; axis < axes && inside; ++axis) {
          const double value = values[axis][i];
          inside =
              valid[axis][i] != 0 && std::isfinite(value) && box.min[At(axis)] <= value && value <= box.max[At(axis)];
        }
        if (inside) Take(first + i);
      }
    }
    return true;
  }

  bool TakePolygon(CStats_Rgn& region) {
    CStats_PointSearch* search = GetSearch(region);
    if (search == nullptr) return false;
    std::vector<Point3> vertices;
    vertices.reserve(At(region.GetPointCount()));
    for (int i = 0; i < region.GetPointCount(); ++i) vertices.push_back(region.GetPoint(i));
    if (vertices.empty()) return true;
    PolygonTest polygon(std::move(vertices));
    Box box = polygon.GetBounds();
    OpenInactiveAxes(box, flags_);
    search->SearchBox(box);
    TakeLeaves(*search, search->GetLeaves(), polygon, polygon.GetWhole());
    return true;
  }

  // Halves of neighbouring leaves, as long as they meet an edge.
  void TakeLeaves(const CStats_PointSearch& search, std::span<CPointSearch::Node* const> leaves, PolygonTest& polygon,
                  const PolygonTest::Scope& outer) {
    if (leaves.empty()) return;
    const PolygonTest::Scope scope = polygon.Narrow(outer, Unite(leaves));
    if (scope.edges == 0 && !scope.inside) return;
    if (scope.edges == 0) {
      for (const auto* leaf : leaves) {
        for (const int station : leaf->points) Take(station);
      }
    } else if (leaves.size() == 1) {
      TakeLeaf(search, *leaves[0], polygon, scope);
    } else {
      TakeLeaves(search, leaves.first(leaves.size() / 2), polygon, scope);
      TakeLeaves(search, leaves.subspan(leaves.size() / 2), polygon, scope);
    }
  }
  static Box Unite(std::span<CPointSearch::Node* const> leaves) {
    Box box = leaves[0]->box;
    for (const auto* leaf : leaves) {
      for (std::size_t axis = 0; axis < 2; ++axis) {
        box.min[axis] = std::min(box.min[axis], leaf->box.min[axis]);
        box.max[axis] = std::max(box.max[axis], leaf->box.max[axis]);
      }
    }
    return box;
  }

  void TakeLeaf(const CStats_PointSearch& search, const CPointSearch::Node& leaf, PolygonTest& polygon,
                const PolygonTest::Scope& scope) {
    const std::size_t count = leaf.points.size();
    places_.assign(count, PolygonTest::kInside);
    if (!IsLeafInside(leaf, polygon, scope)) {
      const double* x = search.GetLeafCoordinates(leaf, 0);
      polygon.Classify(scope, x, search.GetLeafCoordinates(leaf, 1), count, places_.data());
    }
    for (std::size_t p = 0; p < count; ++p) {
      if (places_[p] == PolygonTest::kOutside || (places_[p] == PolygonTest::kOnEdge && !include_)) continue;
      Take(leaf.points[p]);
    }
  }
  static bool IsLeafInside(const CPointSearch::Node& leaf, PolygonTest& polygon, const PolygonTest::Scope& scope) {
    if (leaf.points.size() < kSmallLeaf || polygon.HasVertexIn(leaf.box)) return false;
    const Box& box = leaf.box;
    const double x[4] = {box.min[0], box.min[0], box.max[0], box.max[0]};
    const double y[4] = {box.min[1], box.max[1], box.min[1], box.max[1]};
    PolygonTest::Place corners[4];
    polygon.Classify(scope, x, y, 4, corners);
    return std::find(corners, corners + 4, PolygonTest::kOutside) == corners + 4;
  }

  CStats_Data* data_;
  unsigned flags_;
  int total_;
  bvector& bits_;
  std::vector<int>& changed_;
  CProgressSink* progress_;
  bool include_ = true;
  bool cancelled_ = false;
  std::vector<PolygonTest::Place> places_;  // of the leaf at hand
};

bool CStats_Spatial::ExtractRegions(CStats_Data* data, CProgressSink* progress) {
  const bool incremental = (extractFlags & kIncremental) != 0;
  const int total = data->GetSize();
  lists.assign(1, {});
  changed.assign(1, {});
  bitmaps.resize(1);
  if (!incremental) bitmaps[0].Clear();
  bitmaps[0].Resize(std::max(total, bitmaps[0].GetSize()), false);

  StationProgress reporter(progress, regions.GetCount());
  if (!reporter.Start("Extraction computation")) return false;
  CStats_Rgn* last = regions.GetLastActive();
  Selector selector(data, extractFlags, bitmaps[0], changed[0], progress);
  bool good = true;
  for (int i = 0; i < regions.GetCount(); ++i) {
    CStats_Rgn& region = regions.Get(i);
    if (!region.IsActive() || (incremental && &region != last)) continue;
    good = selector.Apply(region) && good;
    if (selector.IsCancelled() || !reporter.Report(i)) return false;
  }
  if ((extractFlags & kLists) != 0) ListSetBits(bitmaps[0], total, lists[0]);
  return good;
}

}  // namespace tallyscope
