// SPDX-License-Identifier: MIT
#include "spatial/PointSearch.h"

#include <span>

#include "spatial/LeafSearch.h"

namespace tallyscope {

void CPointSearch::CollectLeaves(Leaves& out, Node* node, bool includeEmpty) {
  leaf_search::Collect(out, node, includeEmpty, [](const Box&) { return true; });
}

void CPointSearch::CollectLeaves(Leaves& out, bool includeEmpty) {
  out.clear();
  CollectLeaves(out, GetRoot(), includeEmpty);
}

void CPointSearch::CollectLeavesInBox(Leaves& out, Node* node, const Box& box, bool includeEmpty) {
  leaf_search::CollectInBox(out, node, GetAxes(), box, includeEmpty);
}

void CPointSearch::CollectLeavesInBox(Leaves& out, const Box& box, bool includeEmpty) {
  out.clear();
  CollectLeavesInBox(out, GetRoot(), box, includeEmpty);
}

void CPointSearch::CollectLeavesBetweenBoxes(Leaves& out, Node* node, const Box& outer, const Box& inner,
                                             bool includeEmpty) {
  leaf_search::CollectBetweenBoxes(out, node, GetAxes(), outer, inner, includeEmpty);
}

void CPointSearch::CollectLeavesBetweenBoxes(Leaves& out, const Box& outer, const Box& inner, bool includeEmpty) {
  out.clear();
  CollectLeavesBetweenBoxes(out, GetRoot(), outer, inner, includeEmpty);
}

void CPointSearch::CollectLeavesInSphere(Leaves& out, Node* node, const Point3& centre, double radius,
                                         bool includeEmpty) {
  leaf_search::CollectInSphere(out, node, GetAxes(), centre, radius, includeEmpty);
}

void CPointSearch::CollectLeavesInSphere(Leaves& out, const Point3& centre, double radius, bool includeEmpty) {
  out.clear();
  CollectLeavesInSphere(out, GetRoot(), centre, radius, includeEmpty);
}

void CPointSearch::CollectLeavesInSector(Leaves& out, const Point3& centre, double outerRadius, double innerRadius,
                                         double startAngle, double endAngle, bool includeEmpty) {
  CollectLeavesInBox(out, GetRoot(), leaf_search::BoundSector(centre, outerRadius, innerRadius, startAngle, endAngle),
                     includeEmpty);
}

void CPointSearch::CollectLeavesOnRay(Leaves& out, Node* node, const Point3& origin, const Point3& direction,
                                      bool includeEmpty) {
  leaf_search::CollectOnRays(out, node, GetAxes(), std::span(&origin, 1), std::span(&direction, 1), includeEmpty);
}

void CPointSearch::CollectLeavesOnRay(Leaves& out, const Point3& origin, const Point3& direction, bool includeEmpty) {
  out.clear();
  CollectLeavesOnRay(out, GetRoot(), origin, direction, includeEmpty);
}

void CPointSearch::CollectLeavesOnRays(Leaves& out, Node* node, const std::vector<Point3>& origins,
                                       const std::vector<Point3>& directions, bool includeEmpty) {
  leaf_search::CollectOnRays(out, node, GetAxes(), origins, directions, includeEmpty);
}

void CPointSearch::CollectLeavesOnRays(Leaves& out, const std::vector<Point3>& origins,
                                       const std::vector<Point3>& directions, bool includeEmpty) {
  out.clear();
  CollectLeavesOnRays(out, GetRoot(), origins, directions, includeEmpty);
}

CPointSearch::Node* CPointSearch::FindLeaf(Node* node, const Point3& point) {
  if (node == nullptr) return nullptr;
  for (int axis = 0; axis < GetAxes(); ++axis) {
    const auto a = static_cast<std::size_t>(axis);
    if (!(node->box.min[a] <= point[a] && point[a] < node->box.max[a])) return nullptr;
  }
  if (node->IsLeaf()) return node;
  Node* leaf = FindLeaf(node->left, point);
  return leaf != nullptr ? leaf : FindLeaf(node->right, point);
}

CPointSearch::Node* CPointSearch::FindLeaf(const Point3& point) {
  return FindLeaf(GetRoot(), point);
}

}  // namespace tallyscope
