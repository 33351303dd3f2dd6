// SPDX-License-Identifier: MIT
#include "spatial/PointSearch.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <random>

#include "SpatialTesting.h"

namespace tallyscope {
namespace {

using testing_spatial::BoundsOf;
using testing_spatial::Cloud;
using testing_spatial::kNull;
using testing_spatial::NastyClouds;
using Node = CPointSearch::Node;
using Leaves = CPointSearch::Leaves;

class CloudSearch : public CPointSearch {
 public:
  CloudSearch(std::vector<Point3> points, int dimensions) : points(std::move(points)), dimensions_(dimensions) {}

  bool IsPointValid(int index) override {
    const Point3& point = points[static_cast<std::size_t>(index)];
    return std::none_of(point.begin(), point.begin() + dimensions_, [](double value) { return value == kNull; });
  }
  int GetPointCount() override { return static_cast<int>(points.size()); }
  double GetX(int index) override { return points[static_cast<std::size_t>(index)][0]; }
  double GetY(int index) override { return points[static_cast<std::size_t>(index)][1]; }
  double GetZ(int index) override { return points[static_cast<std::size_t>(index)][2]; }
  int GetDimensions() override { return dimensions_; }

  std::vector<Point3> points;

 private:
  int dimensions_;
};

struct PlainLeaf {
  Box box;
  std::vector<int> points;
};

// The builds as plain recursion over lists, one step after the other.
class PlainBuild {
 public:
  PlainBuild(CloudSearch& search, int capacity) : search_(search), axes_(search.GetDimensions()), capacity_(capacity) {}

  std::vector<PlainLeaf> Partition(const Box& box) {
    std::vector<int> all;
    for (int i = 0; i < search_.GetPointCount(); ++i) {
      if (search_.IsPointValid(i)) all.push_back(i);
    }
    target_ = capacity_ * Volume(box) / static_cast<double>(all.size());
    PartitionBox(box, std::move(all));
    return leaves;
  }
  std::vector<PlainLeaf> Split(const Box& box) {
    std::vector<int> all;
    for (int i = 0; i < search_.GetPointCount(); ++i) all.push_back(i);
    SplitBox(box, all);
    return leaves;
  }

  std::vector<PlainLeaf> leaves;

 private:
  double Value(int index, int axis) const {
    return search_.points[static_cast<std::size_t>(index)][static_cast<std::size_t>(axis)];
  }
  double Extent(const Box& box, std::size_t axis) const { return std::fabs(box.max[axis] - box.min[axis]); }
  double Volume(const Box& box) const {
    double volume = 1;
    for (std::size_t axis = 0; axis < static_cast<std::size_t>(axes_); ++axis) {
      volume *= Extent(box, axis) > 0 ? Extent(box, axis) : 1;
    }
    return volume;
  }
  // The longest axis, or -1 where the box must not be cut.
  int Axis(const Box& box, double& cut) const {
    const double ex = Extent(box, 0), ey = Extent(box, 1), ez = Extent(box, 2);
    for (std::size_t axis = 0; axis < static_cast<std::size_t>(axes_); ++axis) {
      if (Extent(box, axis) < 1e-10) return -1;
    }
    int axis = 0;
    if (axes_ == 2) axis = ex < ey ? 1 : 0;
    if (axes_ == 3) axis = ex < ey ? (ey >= ez ? 1 : 2) : (ex >= ez ? 0 : 2);
    const auto a = static_cast<std::size_t>(axis);
    cut = box.min[a] + (box.max[a] - box.min[a]) / 2.0943951023931957;
    return box.min[a] < cut && cut < box.max[a] ? axis : -1;
  }
  void PartitionBox(const Box& box, std::vector<int> list) {
    double cut = 0;
    const int axis = Axis(box, cut);
    if (axis < 0 || target_ > 10.0 * Volume(box) || static_cast<double>(list.size()) <= 1.5 * capacity_) {
      leaves.push_back({box, list});
      return;
    }
    int i = 0;
    int j = static_cast<int>(list.size()) - 1;
    while (true) {
      while (i <= j && Value(list[static_cast<std::size_t>(i)], axis) < cut) ++i;
      while (j >= i && !(Value(list[static_cast<std::size_t>(j)], axis) < cut)) --j;
      if (i >= j) break;
      std::swap(list[static_cast<std::size_t>(i)], list[static_cast<std::size_t>(j)]);
    }
    Box low = box, high = box;
    low.max[static_cast<std::size_t>(axis)] = high.min[static_cast<std::size_t>(axis)] = cut;
    PartitionBox(low, {list.begin(), list.begin() + i});
    PartitionBox(high, {list.begin() + i, list.end()});
  }
  void SplitBox(const Box& box, const std::vector<int>& list) {
    double cut = 0;
    const int axis = Axis(box, cut);
    if (axis < 0 || static_cast<double>(list.size()) <= 1.5 * capacity_) {
      leaves.push_back({box, list});
      return;
    }
    Box low = box, high = box;
    low.max[static_cast<std::size_t>(axis)] = high.min[static_cast<std::size_t>(axis)] = cut;
    std::vector<int> below, above;
    for (int index : list) (Value(index, axis) < cut ? below : above).push_back(index);
    SplitBox(low, below);
    SplitBox(high, above);
  }

  CloudSearch& search_;
  int axes_;
  int capacity_;
  double target_ = 0;
};

// Which promise of the tree is broken, if any; empty: none.
std::string Broken(CloudSearch& search, Node* node, Node* parent) {
  if (node->parent != parent) return "a wrong parent";
  if (node->IsLeaf()) {
    for (std::size_t p = 0; p < node->points.size(); ++p) {
      for (int axis = 0; axis < search.GetDimensions(); ++axis) {
        const double stored = search.GetLeafCoordinates(*node, axis)[p];
        const double own = search.points[static_cast<std::size_t>(node->points[p])][static_cast<std::size_t>(axis)];
        if (stored != own && !(std::isnan(stored) && std::isnan(own))) return "a leaf with other points' co-ordinates";
      }
    }
    return "";
  }
  if (node->left == nullptr || node->right == nullptr) return "a node with one child";
  if (!node->points.empty() || node->first != -1 || node->last != -1) return "an inner node that still holds points";
  int shared = 0;
  for (std::size_t axis = 0; axis < 3; ++axis) {
    const bool same =
        node->left->box.max[axis] == node->box.max[axis] && node->right->box.min[axis] == node->box.min[axis];
    shared += !same && node->left->box.max[axis] == node->right->box.min[axis];
    if (node->left->box.min[axis] != node->box.min[axis] || node->right->box.max[axis] != node->box.max[axis])
      shared = 9;
  }
  if (shared != 1) return "children that don't tile";
  const std::string left = Broken(search, node->left, node);
  return left.empty() ? Broken(search, node->right, node) : left;
}

void ExpectLeaves(CloudSearch& search, const std::vector<PlainLeaf>& plain) {
  Leaves leaves;
  search.CollectLeaves(leaves, true);
  ASSERT_EQ(leaves.size(), plain.size());
  for (std::size_t i = 0; i < leaves.size(); ++i) {
    EXPECT_EQ(leaves[i]->box.min, plain[i].box.min) << "leaf " << i;
    EXPECT_EQ(leaves[i]->box.max, plain[i].box.max) << "leaf " << i;
    ASSERT_EQ(leaves[i]->points, plain[i].points) << "leaf " << i;
  }
  EXPECT_EQ(Broken(search, search.GetTree()->GetRoot(), nullptr), "");
}

TEST(PointSearch, BuildsLeafForLeafAsPlainRecursionDoes) {
  for (const Cloud& cloud : NastyClouds()) {
    for (int dimensions = 1; dimensions <= 3; ++dimensions) {
      for (int capacity : {64, 3, 0}) {
        if (capacity == 0 && cloud.points.size() > 200) continue;  // every point is cut down to the thinnest box
        SCOPED_TRACE(cloud.name + " in " + std::to_string(dimensions) + ", capacity " + std::to_string(capacity));
        CloudSearch search(cloud.points, dimensions);
        search.Initialise(BoundsOf(cloud), capacity);
        search.Partition();
        EXPECT_TRUE(search.IsPartitioned());
        ExpectLeaves(search, PlainBuild(search, capacity).Partition(BoundsOf(cloud)));
        search.Initialise(BoundsOf(cloud), capacity);
        EXPECT_FALSE(search.IsPartitioned());
        search.PartitionAll();
        ExpectLeaves(search, PlainBuild(search, capacity).Split(BoundsOf(cloud)));
        search.Partition();  // over a tree that stands
        ExpectLeaves(search, PlainBuild(search, capacity).Partition(BoundsOf(cloud)));
      }
    }
  }
}

// The two-cursor order of a partition larger than a block of the quick way.
TEST(PointSearch, KeepsTheOrderOfTheTwoCursorsOnLongRuns) {
  std::mt19937_64 random(7);
  for (int share : {1, 50, 99}) {
    CloudSearch search({}, 1);
    for (int i = 0; i < 20000; ++i)
      search.points.push_back({static_cast<int>(random() % 100) < share ? 0.1 : 0.9, 0, 0});
    search.Initialise(Box(), 64);
    search.Partition();
    ExpectLeaves(search, PlainBuild(search, 64).Partition(Box()));
  }
}

// Leaves that pass a test of their own box, in order.
Leaves Matching(CPointSearch& search, bool includeEmpty, const std::function<bool(const Box&)>& test) {
  Leaves all, out;
  search.CollectLeaves(all, true);
  for (Node* leaf : all) {
    if (test(leaf->box) && (includeEmpty || !leaf->points.empty())) out.push_back(leaf);
  }
  return out;
}

TEST(PointSearch, CollectsTheLeavesThatMeetAShape) {
  std::mt19937_64 random(11);
  for (const Cloud& cloud : NastyClouds()) {
    for (int dimensions = 1; dimensions <= 3; ++dimensions) {
      SCOPED_TRACE(cloud.name + " in " + std::to_string(dimensions));
      CloudSearch search(cloud.points, dimensions);
      search.Initialise(BoundsOf(cloud), 8);
      search.Partition();
      const Box bounds = BoundsOf(cloud);
      // Corners on faces of leaves now and then, where strict and lax tests differ.
      Leaves all;
      search.CollectLeaves(all, true);
      const auto corner = [&](std::size_t axis) {
        const Box& box = all[random() % all.size()]->box;
        const double share = static_cast<double>(random() % 1000) / 1000;
        return random() % 2 == 0 ? (random() % 2 == 0 ? box.min[axis] : box.max[axis])
                                 : bounds.min[axis] + share * (bounds.max[axis] - bounds.min[axis]);
      };
      const auto anyBox = [&] {
        Box box;
        for (std::size_t axis = 0; axis < 3; ++axis) {
          const auto ends = std::minmax({corner(axis), corner(axis)});
          box.min[axis] = ends.first;
          box.max[axis] = ends.second;
        }
        return box;
      };
      const auto axes = static_cast<std::size_t>(dimensions);
      for (int query = 0; query < 60; ++query) {
        const Box outer = anyBox(), inner = anyBox();
        const bool includeEmpty = query % 2 == 0;
        const auto meets = [&](const Box& cell) {
          for (std::size_t a = 0; a < axes; ++a) {
            if (!(outer.min[a] < cell.max[a] && cell.min[a] <= outer.max[a])) return false;
          }
          return true;
        };
        Leaves found;
        search.CollectLeavesInBox(found, outer, includeEmpty);
        ASSERT_EQ(found, Matching(search, includeEmpty, meets));
        search.CollectLeavesBetweenBoxes(found, outer, inner, includeEmpty);
        ASSERT_EQ(found, Matching(search, includeEmpty, [&](const Box& cell) {
                    bool out = false;
                    for (std::size_t a = 0; a < axes; ++a)
                      out = out || cell.min[a] < inner.min[a] || inner.max[a] <= cell.max[a];
                    return out && meets(cell);
                  }));
        const Point3 centre = outer.min;
        const double radius = (outer.max[0] - outer.min[0]) / 3;
        search.CollectLeavesInSphere(found, centre, radius, includeEmpty);
        ASSERT_EQ(found, Matching(search, includeEmpty, [&](const Box& cell) {
                    double sum = 0;
                    for (std::size_t a = 0; a < axes; ++a) {
                      if (cell.max[a] <= centre[a] - radius || centre[a] + radius < cell.min[a]) return false;
                      const double gap = std::max({cell.min[a] - centre[a], centre[a] - cell.max[a], 0.0});
                      sum += gap * gap;
                    }
                    return sum <= radius * radius;
                  }));
        Node* leaf = search.FindLeaf(centre);
        const Leaves holders = Matching(search, true, [&](const Box& cell) {
          for (std::size_t a = 0; a < axes; ++a) {
            if (!(cell.min[a] <= centre[a] && centre[a] < cell.max[a])) return false;
          }
          return true;
        });
        ASSERT_LE(holders.size(), 1u);
        ASSERT_EQ(leaf, holders.empty() ? nullptr : holders[0]);
      }
    }
  }
}

TEST(PointSearch, AppendsFromANodeAndEmptiesFromTheRoot) {
  CloudSearch search(NastyClouds()[4].points, 2);
  search.Initialise(Box(), 64);
  search.Partition();
  Leaves all, halves;
  search.CollectLeaves(all, false);
  search.CollectLeaves(halves, false);
  EXPECT_EQ(halves, all);
  Node* root = search.GetTree()->GetRoot();
  halves.clear();
  search.CollectLeaves(halves, root->left, false);
  search.CollectLeaves(halves, root->right, false);
  EXPECT_EQ(halves, all);
  search.Reset();
  search.CollectLeavesInBox(all, Box(), true);
  EXPECT_TRUE(all.empty()) << "no tree";
  EXPECT_EQ(search.FindLeaf({0.5, 0.5, 0.5}), nullptr);
}

TEST(PointSearch, RaysMeetTheBoxesTheyRunThrough) {
  CloudSearch search(NastyClouds()[4].points, 3);
  search.Initialise(Box(), 64);
  search.Partition();
  struct Row {
    const char* name;
    Point3 origin, direction;
    bool hits;
  };
  for (const Row& row :
       {Row{"through the middle", {-1, 0.5, 0.5}, {1, 0, 0}, true}, Row{"backwards", {2, 0.5, 0.5}, {-0.5, 0, 0}, true},
        Row{"behind the origin", {-1, 0.5, 0.5}, {-1, 0, 0}, false}, Row{"beside", {-1, 1.5, 0.5}, {1, 0, 0}, false},
        Row{"over a corner", {-1, -1, 0.9}, {1, 1, 0.2}, false}, Row{"from inside", {0.3, 0.3, 0.3}, {0, 0, -1}, true},
        Row{"too far", {-2e10, 0.5, 0.5}, {1, 0, 0}, false}}) {
    SCOPED_TRACE(row.name);
    Leaves found;
    search.CollectLeavesOnRay(found, row.origin, row.direction, true);
    EXPECT_EQ(!found.empty(), row.hits);
    // Leaves that hold points of the ray are among them.
    for (int i = 0; row.hits && i < 1000; ++i) {
      Point3 at{};
      for (std::size_t a = 0; a < 3; ++a) at[a] = row.origin[a] + (i + 0.5) * 0.003 * row.direction[a];
      Node* leaf = search.FindLeaf(at);
      ASSERT_TRUE(leaf == nullptr || std::find(found.begin(), found.end(), leaf) != found.end());
    }
    Leaves both;
    search.CollectLeavesOnRays(both, {{5, 5, 5}, row.origin}, {{1, 0, 0}, row.direction}, true);
    EXPECT_EQ(both, found);
  }
  CloudSearch flat(NastyClouds()[4].points, 2);
  flat.Initialise(Box(), 64);
  flat.Partition();
  Leaves found;
  flat.CollectLeavesOnRay(found, {-1, 0.5, 0.5}, {1, 0, 0}, true);
  EXPECT_TRUE(found.empty());
}

TEST(PointSearch, RefiningHalvesTowardsTheOccupiedSide) {
  // All in the low quarter of x: cut at 0.5, then at 0.25, where the two sides are occupied.
  CloudSearch search({{0.1, 0.1, 0}, {0.2, 0.9, 0}, {0.3, 0.1, 0}, {0.2, 0.6, 0}}, 2);
  search.Initialise(Box(), 64);
  search.Partition();
  search.RefineLeaves();
  Leaves leaves;
  search.CollectLeaves(leaves, false);
  ASSERT_EQ(leaves.size(), 1u);
  EXPECT_EQ(leaves[0]->box.max, (Point3{0.5, 1, 1}));
  EXPECT_EQ(leaves[0]->points, (std::vector<int>{0, 1, 2, 3}));
  EXPECT_EQ(Broken(search, search.GetTree()->GetRoot(), nullptr), "");

  // Which axis goes first when all points sit in the low corner.
  struct Row {
    const char* name;
    Point3 size;
    std::size_t axis;
  };
  for (const Row& row :
       {Row{"equal: x", {1, 1, 1}, 0}, Row{"y longer than x", {1, 2, 1}, 1}, Row{"z longer than both", {1, 1, 2}, 2},
        Row{"z longer than y, though x is longest", {4, 2, 3}, 2}, Row{"x within 8 to 1", {8, 1, 1}, 0}}) {
    SCOPED_TRACE(row.name);
    CloudSearch corner(std::vector<Point3>(4, Point3{0.01, 0.01, 0.01}), 3);
    Box box;
    box.max = row.size;
    corner.Initialise(box, 64);
    corner.PartitionAll();
    corner.RefineLeaf(corner.GetTree()->GetRoot());
    const Node* low = corner.GetTree()->GetRoot()->left;
    ASSERT_NE(low, nullptr);
    EXPECT_EQ(low->box.max[row.axis], row.size[row.axis] / 2);
    EXPECT_EQ(Broken(corner, corner.GetTree()->GetRoot(), nullptr), "");
  }
  CloudSearch slab(std::vector<Point3>(4, Point3{0.01, 0.01, 0.01}), 3);
  Box box;
  box.max = {9, 1, 1};
  slab.Initialise(box, 64);
  slab.PartitionAll();
  slab.RefineLeaves();
  EXPECT_TRUE(slab.GetTree()->GetRoot()->IsLeaf()) << "one to nine";

  for (const Cloud& cloud : NastyClouds()) {
    SCOPED_TRACE(cloud.name);
    CloudSearch any(cloud.points, 3);
    any.Initialise(BoundsOf(cloud), 64);
    any.Partition();
    Leaves before, after;
    any.CollectLeaves(before, false);
    std::vector<int> was, is;
    for (Node* leaf : before) was.insert(was.end(), leaf->points.begin(), leaf->points.end());
    any.RefineLeaves();
    any.CollectLeaves(after, false);
    for (Node* leaf : after) is.insert(is.end(), leaf->points.begin(), leaf->points.end());
    EXPECT_EQ(Broken(any, any.GetTree()->GetRoot(), nullptr), "");
    EXPECT_TRUE(std::is_permutation(is.begin(), is.end(), was.begin(), was.end()));
  }
}

TEST(PointSearch, AddedPointsGoToTheirLeavesAndBoundsMoveOutwards) {
  CloudSearch search(NastyClouds()[4].points, 2);
  search.points.resize(200);
  search.Initialise(Box(), 64);
  search.Partition();
  for (int i = 0; i < 500; ++i) search.points.push_back({0.001 * i, 0.5, 0});
  search.points.push_back({7, 7, 0});
  search.AddPoints(200, 700);
  Leaves leaves;
  search.CollectLeaves(leaves, false);
  std::size_t held = 0;
  for (Node* leaf : leaves) {
    held += leaf->points.size();
    EXPECT_LE(leaf->points.size(), 96u);
  }
  EXPECT_EQ(held, 700u) << "the point in no leaf is dropped";
  EXPECT_EQ(Broken(search, search.GetTree()->GetRoot(), nullptr), "");

  Box wide;
  wide.min = {-5, 0.2, 0};
  wide.max = {0.5, 8, 1};
  search.ExtendBounds(wide);
  EXPECT_EQ(search.GetTree()->GetRoot()->box.min, (Point3{-5, 0, 0}));
  EXPECT_EQ(search.GetTree()->GetRoot()->box.max, (Point3{1, 8, 1}));
  EXPECT_EQ(Broken(search, search.GetTree()->GetRoot(), nullptr), "");
  EXPECT_NE(search.FindLeaf({-4, 7, 0}), nullptr);
}

TEST(PointSearch, TreeDeletesSubtreesAndReusesPlaces) {
  CDLBTree<Node> tree;
  EXPECT_FALSE(tree.HasRoot());
  Node* root = tree.GetOrCreateRoot();
  EXPECT_EQ(tree.AddLeft(nullptr), nullptr) << "the root's place is taken";
  Node* left = tree.AddLeft(root);
  EXPECT_EQ(tree.AddLeft(root), nullptr);
  tree.AddRight(left)->points = {1, 2};
  tree.Delete(left);
  EXPECT_TRUE(root->IsLeaf());
  Node* again = tree.AddRight(root);
  EXPECT_TRUE(again->points.empty()) << "a reused node is fresh";
  EXPECT_EQ(again->parent, root);
  tree.Delete(root);
  EXPECT_FALSE(tree.HasRoot());
}

}  // namespace
}  // namespace tallyscope
