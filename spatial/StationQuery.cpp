// SPDX-License-Identifier: MIT
#include "spatial/StationQuery.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <numeric>

#include "spatial/LeafSearch.h"
#include "spatial/LeafTests.h"

namespace tallyscope {

namespace {

using leaf_tests::Columns;
using leaf_tests::kPi;
using leaf_tests::Rectangle;
using leaf_tests::Sector;

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

// Ends the query before and returns the node to start from.
const StationQuery::Node* StationQuery::Start(Shape shape) {
  leaves_.clear();
  shape_ = shape;
  leafCursor_ = pointCursor_ = -1;
  CloseLeaf();
  return index_ != nullptr ? index_->GetRoot() : nullptr;
}

void StationQuery::SearchAll() {
  leaf_search::Collect(leaves_, Start(Shape::kAll), false, [](const Box&) { return true; });
}

void StationQuery::SearchBox(const Box& box) {
  const Node* root = Start(Shape::kBox);
  box_ = box;
  if (root != nullptr) leaf_search::CollectInBox(leaves_, root, index_->axes, box, false);
  PrefetchLeaf(0);
}

void StationQuery::SearchRotatedRectangle(const Point3& origin, const Point3& size, double angleDegrees) {
  const Node* root = Start(Shape::kRotatedRectangle);
  const double angle = angleDegrees * kPi / 180;
  point_ = origin;
  size_ = size;
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
  if (root != nullptr) leaf_search::CollectInBox(leaves_, root, index_->axes, Widen(box_), false);
}

void StationQuery::SearchBetweenBoxes(const Box& outer, const Box& inner) {
  const Node* root = Start(Shape::kBetweenBoxes);
  box_ = outer;
  innerBox_ = inner;
  if (root != nullptr) leaf_search::CollectBetweenBoxes(leaves_, root, index_->axes, outer, inner, false);
}

void StationQuery::SearchSphere(const Point3& centre, double radius) {
  const Node* root = Start(Shape::kSphere);
  point_ = centre;
  radius_ = radius;
  if (root != nullptr) leaf_search::CollectInSphere(leaves_, root, index_->axes, centre, radius, false);
}

void StationQuery::SearchSector(const Point3& centre, double outerRadius, double innerRadius, double startAngle,
                                double endAngle) {
  const Node* root = Start(Shape::kSector);
  point_ = centre;
  radius_ = outerRadius;
  innerRadius_ = innerRadius;
  angleA_ = startAngle;
  angleB_ = endAngle;
  if (root == nullptr) return;
  // Outside the plane the angles don't count, so the whole ring is collected.
  const bool isFlat = index_->axes == 2;
  const Box box =
      leaf_search::BoundSector(centre, outerRadius, innerRadius, isFlat ? startAngle : 0, isFlat ? endAngle : 2 * kPi);
  leaf_search::CollectInBox(leaves_, root, index_->axes, box, false);
}

void StationQuery::SearchRay(const Point3& origin, const Point3& direction) {
  SearchRays({origin}, {direction});
}

void StationQuery::SearchRays(const std::vector<Point3>& origins, const std::vector<Point3>& directions) {
  const Node* root = Start(Shape::kAll);
  if (root != nullptr) leaf_search::CollectOnRays(leaves_, root, index_->axes, origins, directions, false);
}

// The cursor. The points of a leaf are tested all at once when the walk enters it, without a branch per point.

void StationQuery::CloseLeaf() {
  openLeaf_ = -1;
  hitCount_ = hitCursor_ = 0;
}

bool StationQuery::FindNext(int& index, int step) {
  index = -1;
  const std::int64_t stride = std::max(1, step);
  std::int64_t position = leafCursor_ < 0 ? 0 : std::max(pointCursor_, 0);
  for (int leaf = std::max(leafCursor_, 0); leaf < static_cast<int>(leaves_.size()); ++leaf) {
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
void StationQuery::PrefetchLeaf(std::size_t leaf) const {
  if (leaf >= leaves_.size()) return;
  const Node& node = *leaves_[leaf];
  for (int axis = 0; axis < index_->axes; ++axis) {
    Prefetch(index_->GetLeafCoordinates(node, axis), node.points.size());
  }
  Prefetch(node.points.data(), node.points.size());
}

void StationQuery::OpenLeaf(int leaf) {
  const Node& node = *leaves_[static_cast<std::size_t>(leaf)];
  PrefetchLeaf(static_cast<std::size_t>(leaf) + 1);
  openLeaf_ = leaf;
  openPoints_ = node.points.data();
  hitCursor_ = 0;
  hits_.resize(std::max(hits_.size(), node.points.size()));
  switch (index_->axes) {
    case 1:
      return FindHits<1>(node);
    case 2:
      return FindHits<2>(node);
    default:
      return FindHits<3>(node);
  }
}

template <int kAxes>
void StationQuery::FindHits(const Node& leaf) {
  const Columns<kAxes> columns(*index_, leaf);
  const int count = static_cast<int>(leaf.points.size());
  const auto list = [&](const auto& test) { hitCount_ = ListHits(count, hits_.data(), test); };
  switch (shape_) {
    case Shape::kBox:
      hitCount_ = columns.ListInBox(count, hits_.data(), box_);
      break;
    case Shape::kBetweenBoxes:
      return list([&](int p) { return columns.IsInBox(p, box_) && !columns.IsWithinBox(p, innerBox_); });
    case Shape::kSphere:
      return list([&, limit = radius_ * radius_](int p) { return columns.SquaredDistance(p, point_) <= limit; });
    case Shape::kSector:
      return list([&, sector = Sector{point_, radius_, innerRadius_, angleA_, angleB_}](int p) {
        return sector.Holds(columns, p);
      });
    case Shape::kRotatedRectangle:
      return list([&, rectangle = Rectangle{point_, size_, box_, angleA_, angleB_}](int p) {
        return rectangle.Holds(columns, p);
      });
    default:
      std::iota(hits_.begin(), hits_.begin() + count, 0);
      hitCount_ = count;
  }
}

}  // namespace tallyscope
