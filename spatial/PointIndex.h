// SPDX-License-Identifier: MIT
#pragma once

#include "spatial/3DPointBinaryPartition.h"
#include "spatial/CoordinateStore.h"
#include "spatial/DLBTree.h"

namespace tallyscope {

// What a build of a CPointSearch leaves: the tree, and the co-ordinates of the points of its leaves. Whoever shares it
// (CPointSearch::Share) has it const, and nothing changes it from then on: any number of threads may read it, each with
// a query of its own (StationQuery.h).
struct PointIndex {
  using Node = C3DPointBinaryPartition;

  CDLBTree<Node> tree;
  CoordinateStore store;
  int axes = 1;  // that count, 1 to 3

  const Node* GetRoot() const { return tree.GetRootNode(); }
  // Co-ordinates of a leaf's points along one of the axes, in their order.
  const double* GetLeafCoordinates(const Node& leaf, int axis) const { return store.GetRun(axis, leaf.run); }
};

}  // namespace tallyscope
