// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <numbers>
#include <span>
#include <type_traits>
#include <utility>
#include <vector>

#include "platform/core/Box.h"

// How the leaves of a tree that may hold what is looked for are found. `axes` are the leading ones that count, 1 to 3.
namespace tallyscope::leaf_search {

inline constexpr double kHalfPi = std::numbers::pi / 2;
inline constexpr double kFarthestHit = 1e10;  // ray parameter

// Appends the leaves of the subtree; `keep` says whether a node may hold what is looked for.
template <class Node, class Keep>
void Collect(std::vector<Node*>& out, Node* node, bool includeEmpty, const Keep& keep) {
  if (node == nullptr || !keep(node->box)) return;
  if (node->IsLeaf()) {
    if (includeEmpty || !node->points.empty()) out.push_back(node);
    return;
  }
  Collect<Node>(out, node->left, includeEmpty, keep);
  Collect<Node>(out, node->right, includeEmpty, keep);
}

// Without a branch per face.
template <int kAxes>
bool Meets(const Box& cell, const Box& box) {
  int misses = 0;
  for (std::size_t axis = 0; axis < kAxes; ++axis) {
    misses |=
        static_cast<int>(!(box.min[axis] < cell.max[axis])) | static_cast<int>(!(cell.min[axis] <= box.max[axis]));
  }
  return misses == 0;
}

// Calls `action` with the number of axes as a constant.
template <class Action>
void WithAxes(int axes, const Action& action) {
  switch (axes) {
    case 1:
      return action(std::integral_constant<int, 1>());
    case 2:
      return action(std::integral_constant<int, 2>());
    default:
      return action(std::integral_constant<int, 3>());
  }
}

template <int kAxes>
bool SticksOut(const Box& cell, const Box& inner) {
  for (std::size_t axis = 0; axis < kAxes; ++axis) {
    if (cell.min[axis] < inner.min[axis] || inner.max[axis] <= cell.max[axis]) return true;
  }
  return false;
}

template <int kAxes>
bool IsNear(const Box& cell, const Point3& centre, double radius) {
  for (std::size_t axis = 0; axis < kAxes; ++axis) {
    if (cell.max[axis] <= centre[axis] - radius || centre[axis] + radius < cell.min[axis]) return false;
  }
  return true;
}

template <int kAxes>
double SquaredDistance(const Box& cell, const Point3& point) {
  double sum = 0;
  for (std::size_t axis = 0; axis < kAxes; ++axis) {
    const double value = point[axis];
    if (value >= cell.min[axis] && value <= cell.max[axis]) continue;
    const double gap = std::min(std::fabs(value - cell.min[axis]), std::fabs(value - cell.max[axis]));
    sum += gap * gap;
  }
  return sum;
}

// A ray against a box by slabs: Williams, Barrus, Morley and Shirley, "An efficient and robust ray-box intersection
// algorithm" (2005). Inverse components keep the sign of a zero, so a ray along a face takes the right side.
class Ray {
 public:
  Ray(const Point3& origin, const Point3& direction) : origin_(origin) {
    for (std::size_t axis = 0; axis < 3; ++axis) inverse_[axis] = 1.0 / direction[axis];
  }

  bool Pierces(const Box& box) const {
    double entry = 0;
    double exit = 0;
    GetSlab(box, 0, entry, exit);
    for (std::size_t axis = 1; axis < 3; ++axis) {
      double slabEntry = 0;
      double slabExit = 0;
      GetSlab(box, axis, slabEntry, slabExit);
      if (entry > slabExit || slabEntry > exit) return false;
      if (slabEntry > entry) entry = slabEntry;
      if (slabExit < exit) exit = slabExit;
    }
    return entry < kFarthestHit && exit > 0;
  }

 private:
  void GetSlab(const Box& box, std::size_t axis, double& entry, double& exit) const {
    entry = (box.min[axis] - origin_[axis]) * inverse_[axis];
    exit = (box.max[axis] - origin_[axis]) * inverse_[axis];
    if (inverse_[axis] < 0) std::swap(entry, exit);
  }

  Point3 origin_;
  Point3 inverse_{};
};

inline void Include(Box& box, double x, double y, double hair) {
  box.min[0] = std::min(box.min[0], x - hair);
  box.max[0] = std::max(box.max[0], x + hair);
  box.min[1] = std::min(box.min[1], y - hair);
  box.max[1] = std::max(box.max[1], y + hair);
}

// Bounds of a ring sector in the plane: its four corners, and the outermost points on those axis directions that lie
// between its ends. The corners are a hair wider, since their sines and cosines are rounded.
inline Box BoundSector(const Point3& centre, double outer, double inner, double start, double end) {
  constexpr double kEverywhere = std::numeric_limits<double>::infinity();
  Box box;
  box.min = {kEverywhere, kEverywhere, -kEverywhere};
  box.max = {-kEverywhere, -kEverywhere, kEverywhere};
  const double hair =
      4 * std::numeric_limits<double>::epsilon() * (std::fabs(centre[0]) + std::fabs(centre[1]) + std::fabs(outer));
  for (const double angle : {start, end}) {
    for (const double radius : {outer, inner}) {
      Include(box, centre[0] + radius * std::cos(angle), centre[1] + radius * std::sin(angle), hair);
    }
  }
  const double turns = std::floor(start / (4 * kHalfPi));
  for (int quarter = 0; quarter < 12; ++quarter) {
    const double angle = (4 * turns + quarter) * kHalfPi;
    if (!(angle > start && angle < end)) continue;
    constexpr int kCosine[4] = {1, 0, -1, 0};
    Include(box, centre[0] + outer * kCosine[quarter % 4], centre[1] + outer * kCosine[(quarter + 3) % 4], 0);
  }
  return box;
}

// The searches, from a node on: each appends leaves, left before right.

template <class Node>
void CollectInBox(std::vector<Node*>& out, Node* node, int axes, const Box& box, bool includeEmpty) {
  WithAxes(axes, [&](auto count) {
    Collect(out, node, includeEmpty, [&](const Box& cell) { return Meets<count()>(cell, box); });
  });
}

template <class Node>
void CollectBetweenBoxes(std::vector<Node*>& out, Node* node, int axes, const Box& outer, const Box& inner,
                         bool includeEmpty) {
  WithAxes(axes, [&](auto count) {
    Collect(out, node, includeEmpty,
            [&](const Box& cell) { return Meets<count()>(cell, outer) && SticksOut<count()>(cell, inner); });
  });
}

template <class Node>
void CollectInSphere(std::vector<Node*>& out, Node* node, int axes, const Point3& centre, double radius,
                     bool includeEmpty) {
  const std::size_t before = out.size();
  WithAxes(axes, [&](auto count) {
    Collect(out, node, includeEmpty, [&](const Box& cell) { return IsNear<count()>(cell, centre, radius); });
    const auto isTooFar = [&](const Node* leaf) {
      return !(SquaredDistance<count()>(leaf->box, centre) <= radius * radius);
    };
    out.erase(std::remove_if(out.begin() + static_cast<std::ptrdiff_t>(before), out.end(), isTooFar), out.end());
  });
}

template <class Node>
void CollectOnRays(std::vector<Node*>& out, Node* node, int axes, std::span<const Point3> origins,
                   std::span<const Point3> directions, bool includeEmpty) {
  if (axes < 3) return;
  std::vector<Ray> rays;
  for (std::size_t i = 0; i < std::min(origins.size(), directions.size()); ++i) {
    rays.emplace_back(origins[i], directions[i]);
  }
  Collect(out, node, includeEmpty, [&rays](const Box& cell) {
    return std::any_of(rays.begin(), rays.end(), [&cell](const Ray& ray) { return ray.Pierces(cell); });
  });
}

}  // namespace tallyscope::leaf_search
