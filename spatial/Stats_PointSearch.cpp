// SPDX-License-Identifier: MIT
#include "spatial/Stats_PointSearch.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <numeric>

#include "spatial/CoordinateRange.h"
#include "spatial/LeafTests.h"
#include "statistics/Stats_Data.h"
#include "statistics/Stats_Univariate.h"

namespace tallyscope {

namespace {

using leaf_tests::Columns;
using leaf_tests::kPi;
using leaf_tests::Rectangle;
using leaf_tests::Sector;

constexpr int kLeafCapacity = 64;
constexpr double kMargin = 1000.0;

// Bounds in x and y a little wider than the rounding of their corners.
Box Widen(Box box) {
  for (std::size_t axis = 0; axis < 2; ++axis) {
    const double hair =
        4 * std::numeric_limits<double>::epsilon() * (std::fabs(box.min[axis]) + std::fabs(box.max[axis]));
    box.min[axis] -= hair;
    box.max[axis] += hair;
  }
  return box;
}

template <class Value>
void Prefetch(const Value* values, std::size_t count) {
  constexpr std::size_t kLine = 64 / sizeof(Value);
  constexpr std::size_t kMost = 128;  // a longer run is a stream, which the processor sees by itself
  for (std::size_t i = 0; i < std::min(count, kMost); i += kLine) __builtin_prefetch(values + i);
}

// Writes the positions that pass, of `count`; returns how many.
template <class Test>
int ListHits(int count, int* hits, const Test& test) {
  int found = 0;
  for (int p = 0; p < count; ++p) {
    hits[found] = p;
    found += static_cast<int>(test(p));
  }
  return found;
}

}  // namespace

CStats_PointSearch::CStats_PointSearch(CStats_Data* data) : data_(data) {
  CStats_PointSearch::SetDefaultFields();
}

// The table as points.

void CStats_PointSearch::SetPartitioned(bool partitioned) {
  CPointSearch::SetPartitioned(partitioned);
  leaves_.clear();
  queryActive_ = false;
  leafCursor_ = pointCursor_ = -1;
  CloseLeaf();
}

bool CStats_PointSearch::IsPointValid(int index) {
  return std::all_of(fields_, fields_ + dimensions_, [&](int field) {
    return data_->IsValueValid(field, index) && std::isfinite(data_->GetValue(field, index));
  });
}

int CStats_PointSearch::GetPointCount() {
  return data_ != nullptr ? data_->GetSize() : 0;
}

double CStats_PointSearch::GetX(int index) {
  return data_->GetValue(fields_[0], index);
}

double CStats_PointSearch::GetY(int index) {
  return data_->GetValue(fields_[1], index);
}

double CStats_PointSearch::GetZ(int index) {
  return data_->GetValue(fields_[2], index);
}

void CStats_PointSearch::ReadPoints(int first, int count, double* const* coordinates, unsigned char* valid) {
  std::vector<unsigned char> also(static_cast<std::size_t>(count));
  std::fill(valid, valid + count, static_cast<unsigned char>(1));
  for (int axis = 0; axis < dimensions_; ++axis) {
    const double* values = coordinates[axis];
    data_->ReadValues(fields_[axis], first, count, coordinates[axis], also.data());
    for (int i = 0; i < count; ++i) {
      if (also[static_cast<std::size_t>(i)] == 0 || !std::isfinite(values[i])) valid[i] = 0;
    }
  }
}

void CStats_PointSearch::ReadPointsAt(const int* indices, int count, double* const* coordinates) {
  for (int axis = 0; axis < dimensions_; ++axis) {
    data_->ReadRawValuesAt(fields_[axis], indices, count, coordinates[axis]);
  }
}

void CStats_PointSearch::SetFields(int fieldX, int fieldY, int fieldZ, int dimensions) {
  const int fields[3] = {fieldX, fieldY, fieldZ};
  dimensions = std::clamp(dimensions, 1, 3);
  if (dimensions == dimensions_ && std::equal(fields, fields + 3, fields_)) return;
  dimensions_ = dimensions;
  std::copy(fields, fields + 3, fields_);
  SetPartitioned(false);
}

void CStats_PointSearch::SetDefaultFields() {
  SetFields(-1, -2, -3, data_ != nullptr ? data_->GetSpatialSize() : 2);
}

// The build.

bool CStats_PointSearch::Prepare(CProgressSink* progress) {
  if (data_ == nullptr) return false;
  if (IsPartitioned() || dimensions_ < 2) return true;
  Box box;
  for (int axis = 0; axis < dimensions_; ++axis) {
    if (!FindBounds(axis, box, progress)) return false;
  }
  Reset();
  Initialise(box, kLeafCapacity);
  Partition();
  return IsPartitioned();
}

// Sets the faces of an axis: the column's range and a thousandth of it on each side.
bool CStats_PointSearch::FindBounds(int axis, Box& box, CProgressSink* progress) {
  constexpr double kFar = std::numeric_limits<double>::infinity();
  CStats_Univariate figures;
  figures.Add(data_, fields_[axis]);
  if (!figures.Calculate(1, progress)) return false;
  const CoordinateRange found = FindCoordinateRange(*data_, fields_[axis], figures);
  const double range = found.high - found.low;
  // A constant co-ordinate gets a margin too, so that the box has an extent and is cut.
  const double margin = (range != 0 ? range : std::max(1.0, std::fabs(found.low))) / kMargin;
  // No station lies on a face, even where the margin is lost in the rounding: a high face isn't part of its box.
  box.min[static_cast<std::size_t>(axis)] = std::min(found.low - margin, std::nextafter(found.low, -kFar));
  box.max[static_cast<std::size_t>(axis)] = std::max(found.high + margin, std::nextafter(found.high, kFar));
  return true;
}

// Queries.

void CStats_PointSearch::Start(QueryType type) {
  leaves_.clear();
  queryType_ = type;
  queryActive_ = true;
  leafCursor_ = pointCursor_ = -1;
  CloseLeaf();
}

void CStats_PointSearch::SearchAll() {
  Start(kAll);
  CollectLeaves(leaves_, false);
}

void CStats_PointSearch::SearchBox(const Box& box) {
  Start(kBox);
  box_ = box;
  CollectLeavesInBox(leaves_, box, false);
  PrefetchLeaf(0);
}

void CStats_PointSearch::SearchRotatedRectangle(const Point3& origin, const Point3& size, double angleDegrees) {
  Start(kRotatedRectangle);
  const double angle = angleDegrees * kPi / 180;
  point_ = origin;
  vector_ = size;
  angleA_ = std::cos(angle);
  angleB_ = std::sin(angle);
  const double w = size[0];
  const double h = size[1];
  const Point3 corners[4] = {{0, 0, 0},
                             {-angleB_ * h, angleA_ * h, 0},
                             {w * angleA_ - h * angleB_, w * angleB_ + h * angleA_, 0},
                             {w * angleA_, w * angleB_, 0}};
  box_ = Box();
  box_.min = {1e10, 1e10, origin[2]};
  box_.max = {-1e10, -1e10, origin[2] + size[2]};
  for (const Point3& corner : corners) {
    for (std::size_t axis = 0; axis < 2; ++axis) {
      box_.min[axis] = std::min(box_.min[axis], origin[axis] + corner[axis]);
      box_.max[axis] = std::max(box_.max[axis], origin[axis] + corner[axis]);
    }
  }
  CollectLeavesInBox(leaves_, Widen(box_), false);
}

void CStats_PointSearch::SearchBetweenBoxes(const Box& outer, const Box& inner) {
  Start(kBetweenBoxes);
  box_ = outer;
  innerBox_ = inner;
  CollectLeavesBetweenBoxes(leaves_, outer, inner, false);
}

void CStats_PointSearch::SearchSphere(const Point3& centre, double radius) {
  Start(kSphere);
  point_ = centre;
  radius_ = radius;
  CollectLeavesInSphere(leaves_, centre, radius, false);
}

void CStats_PointSearch::SearchSector(const Point3& centre, double outerRadius, double innerRadius, double startAngle,
                                      double endAngle) {
  Start(kSector);
  point_ = centre;
  radius_ = outerRadius;
  innerRadius_ = innerRadius;
  angleA_ = startAngle;
  angleB_ = endAngle;
  // Outside the plane the angles don't count, so the whole ring is collected.
  if (dimensions_ != 2) startAngle = 0;
  if (dimensions_ != 2) endAngle = 2 * kPi;
  CollectLeavesInSector(leaves_, centre, outerRadius, innerRadius, startAngle, endAngle, false);
}

void CStats_PointSearch::SearchRay(const Point3& origin, const Point3& direction) {
  Start(kRay);
  point_ = origin;
  vector_ = direction;
  CollectLeavesOnRay(leaves_, origin, direction, false);
}

void CStats_PointSearch::SearchRays(const std::vector<Point3>& origins, const std::vector<Point3>& directions) {
  Start(kRays);
  if (!origins.empty()) point_ = origins.front();
  if (!directions.empty()) vector_ = directions.front();
  CollectLeavesOnRays(leaves_, origins, directions, false);
}

// The cursor. The points of a leaf are tested all at once when the walk enters it, without a branch per point.

void CStats_PointSearch::CloseLeaf() {
  openLeaf_ = -1;
  hitCount_ = hitCursor_ = 0;
}

bool CStats_PointSearch::GetNext(int& index, int step) {
  if (hitCursor_ < hitCount_ && step <= 1) {
    const int position = hits_[static_cast<std::size_t>(hitCursor_++)];
    pointCursor_ = position + 1;
    index = openPoints_[position];
    return true;
  }
  index = -1;
  const std::int64_t stride = std::max(1, step);
  std::int64_t position = leafCursor_ < 0 ? 0 : std::max(pointCursor_, 0);
  for (int leaf = std::max(leafCursor_, 0); queryActive_ && leaf < GetLeafCount(); ++leaf) {
    if (leaf != openLeaf_) OpenLeaf(leaf);
    for (; hitCursor_ < hitCount_; ++hitCursor_) {
      const int hit = hits_[static_cast<std::size_t>(hitCursor_)];
      if (stride > 1 && (hit < position || (hit - position) % stride != 0)) continue;
      ++hitCursor_;
      leafCursor_ = leaf;
      pointCursor_ = hit + 1;
      index = openPoints_[hit];
      return true;
    }
    const auto size = static_cast<std::int64_t>(leaves_[static_cast<std::size_t>(leaf)]->points.size());
    if (stride == 1) position = std::max(position, size);
    if (position < size) position += (size - position + stride - 1) / stride * stride;
    position -= size;
  }
  leafCursor_ = pointCursor_ = -1;
  CloseLeaf();
  return false;
}

// The leaves of a query lie apart in memory: the next one is on its way while this one is tested.
void CStats_PointSearch::PrefetchLeaf(int leaf) const {
  if (leaf >= static_cast<int>(leaves_.size())) return;
  const Node& node = *leaves_[static_cast<std::size_t>(leaf)];
  for (int axis = 0; axis < dimensions_; ++axis) Prefetch(GetLeafCoordinates(node, axis), node.points.size());
  Prefetch(node.points.data(), node.points.size());
}

void CStats_PointSearch::OpenLeaf(int leaf) {
  const Node& node = *leaves_[static_cast<std::size_t>(leaf)];
  PrefetchLeaf(leaf + 1);
  openLeaf_ = leaf;
  openPoints_ = node.points.data();
  hitCursor_ = 0;
  hits_.resize(std::max(hits_.size(), node.points.size()));
  switch (dimensions_) {
    case 1:
      return FindHits<1>(node);
    case 2:
      return FindHits<2>(node);
    default:
      return FindHits<3>(node);
  }
}

template <int kAxes>
void CStats_PointSearch::FindHits(const Node& leaf) {
  const Columns<kAxes> columns(*this, leaf);
  const int count = static_cast<int>(leaf.points.size());
  const auto list = [&](const auto& test) { hitCount_ = ListHits(count, hits_.data(), test); };
  switch (queryType_) {
    case kBox:
      hitCount_ = columns.ListInBox(count, hits_.data(), box_);
      break;
    case kBetweenBoxes:
      return list([&](int p) { return columns.IsInBox(p, box_) && !columns.IsWithinBox(p, innerBox_); });
    case kSphere:
      return list([&, limit = radius_ * radius_](int p) { return columns.SquaredDistance(p, point_) <= limit; });
    case kSector:
      return list([&, sector = Sector{point_, radius_, innerRadius_, angleA_, angleB_}](int p) {
        return sector.Holds(columns, p);
      });
    case kRotatedRectangle:
      return list([&, rectangle = Rectangle{point_, vector_, box_, angleA_, angleB_}](int p) {
        return rectangle.Holds(columns, p);
      });
    default:
      std::iota(hits_.begin(), hits_.begin() + count, 0);
      hitCount_ = count;
  }
}

}  // namespace tallyscope
