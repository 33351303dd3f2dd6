// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "platform/core/Box.h"
#include "spatial/DLBTree.h"

namespace tallyscope {

// A node of a CPointSearch. The children of a node tile its box; only leaves hold points. Aligned so that a descent in
// the plane touches one cache line a node.
class C3DPointBinaryPartition : public CDLBTree_Base<C3DPointBinaryPartition> {
 public:
  Box box;
  std::vector<int> points;  // point indices of a leaf; only the search changes them
  int first = -1;           // range in the shared index array of a bulk build, both ends included
  int last = -1;
  int run = -1;  // where the leaf's co-ordinates start in the search's store, in the order of `points`
};

}  // namespace tallyscope
