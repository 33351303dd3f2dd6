// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <vector>

#include "platform/core/Box.h"
#include "spatial/PointIndex.h"

namespace tallyscope {

class CProgressSink;
class PairProgress;

// A binary space partition over points in one, two or three dimensions. A derived class says how many points there are,
// where they lie and which are valid. Searches answer with leaves, whose points the caller tests against the exact
// shape.
//   MySearch search;
//   search.Initialise(box, 64);   // a box that holds the points
//   search.Partition();
//   std::vector<CPointSearch::Node*> leaves;
//   search.CollectLeavesInBox(leaves, query, false);
// Only the first GetDimensions() axes are looked at, everywhere. A split gives points below the cut to the left and
// those on it to the right; a cut that rounding would put on a face of its box isn't made, so every build ends. The
// leaves keep a copy of their points' co-ordinates: points that move want a new build. What has been shared stays as it
// is: whatever would change it from then on works on a copy.
class CPointSearch {
 public:
  using Node = PointIndex::Node;
  using Leaves = std::vector<Node*>;

  CPointSearch() = default;
  CPointSearch(const CPointSearch&) = delete;
  CPointSearch& operator=(const CPointSearch&) = delete;
  virtual ~CPointSearch();

  virtual void Reset();  // no tree, capacity 64
  // A tree of one empty leaf. A leaf is split when it holds more than 1.5 times `leafCapacity` points.
  virtual void Initialise(const Box& box, int leafCapacity);

  // A search may be used while this is true. Derived classes see every change.
  virtual void SetPartitioned(bool partitioned) { partitioned_ = partitioned; }
  virtual bool IsPartitioned() { return partitioned_; }

  virtual bool IsPointValid(int) { return true; }
  virtual int GetPointCount() = 0;
  virtual double GetX(int index) = 0;
  virtual double GetY(int index) = 0;
  virtual double GetZ(int index) = 0;
  virtual int GetDimensions() = 0;

  // Builds, each after Initialise. Partition takes the valid points and also leaves alone what is small against the
  // mean volume of a leaf; PartitionAll takes every index and splits by number alone.
  virtual void Partition();
  virtual void PartitionAll();

  // Change the tree that stands.
  virtual void RefineLeaves();                  // cuts empty space off the leaves
  virtual void AddPoints(int first, int last);  // both ends included; a point in no leaf is dropped
  // Moves the faces of the subtree that lie within 1e-10 of those of `oldBox` to those of `newBox`.
  virtual void ReplaceBoundary(Node* node, const Box& oldBox, const Box& newBox);
  virtual void ExtendBounds(const Box& box);  // to the union of the root's box and `box`

  // Searches append leaves to `out`, left before right; the forms without a node start at the root and empty `out`
  // first. Empty leaves come along only with `includeEmpty`. A box takes leaves from beyond its low corner to its high
  // corner included; a leaf that only ends at the low face is not met.
  virtual void CollectLeaves(Leaves& out, Node* node, bool includeEmpty);
  virtual void CollectLeaves(Leaves& out, bool includeEmpty);
  virtual void CollectLeavesInBox(Leaves& out, Node* node, const Box& box, bool includeEmpty);
  virtual void CollectLeavesInBox(Leaves& out, const Box& box, bool includeEmpty);
  // Leaves that meet `outer` and aren't wholly inside `inner`.
  virtual void CollectLeavesBetweenBoxes(Leaves& out, Node* node, const Box& outer, const Box& inner,
                                         bool includeEmpty);
  virtual void CollectLeavesBetweenBoxes(Leaves& out, const Box& outer, const Box& inner, bool includeEmpty);
  virtual void CollectLeavesInSphere(Leaves& out, Node* node, const Point3& centre, double radius, bool includeEmpty);
  virtual void CollectLeavesInSphere(Leaves& out, const Point3& centre, double radius, bool includeEmpty);
  // Leaves that meet the bounding box of a ring sector in the plane; any z. Angles in radians from +x towards +y.
  virtual void CollectLeavesInSector(Leaves& out, const Point3& centre, double outerRadius, double innerRadius,
                                     double startAngle, double endAngle, bool includeEmpty);
  // Rays need three dimensions; nothing is found otherwise.
  virtual void CollectLeavesOnRay(Leaves& out, Node* node, const Point3& origin, const Point3& direction,
                                  bool includeEmpty);
  virtual void CollectLeavesOnRay(Leaves& out, const Point3& origin, const Point3& direction, bool includeEmpty);
  // Pierced by any of the rays; the shorter of the two vectors counts.
  virtual void CollectLeavesOnRays(Leaves& out, Node* node, const std::vector<Point3>& origins,
                                   const std::vector<Point3>& directions, bool includeEmpty);
  virtual void CollectLeavesOnRays(Leaves& out, const std::vector<Point3>& origins,
                                   const std::vector<Point3>& directions, bool includeEmpty);

  // The leaf whose box holds the point, low faces in and high faces out; null outside.
  virtual Node* FindLeaf(Node* node, const Point3& point);
  virtual Node* FindLeaf(const Point3& point);

  // Steps of the builds. `indices` is the shared array of a bulk build, of which the node's first and last are a range.
  virtual void PartitionNode(Node* node, std::vector<int>& indices);
  virtual void SplitLeaf(Node* node);
  virtual void RefineLeaf(Node* node);

  // Bulk reads of the active axes, an array for each; the defaults loop over the single reads. ReadPoints takes a run
  // of indices and says which points are valid, leaving the others' co-ordinates unset.
  virtual void ReadPoints(int first, int count, double* const* coordinates, unsigned char* valid);
  virtual void ReadPointsAt(const int* indices, int count, double* const* coordinates);

  // The tree, null before Initialise. Who deletes leaves must call SetPartitioned(false) in the end.
  CDLBTree<Node>* GetTree();
  // What was built; null unless partitioned.
  std::shared_ptr<const PointIndex> Share() { return IsPartitioned() ? index_ : nullptr; }
  int GetLeafCapacity() const { return leafCapacity_; }
  double GetTargetLeafVolume() const { return targetLeafVolume_; }
  // Co-ordinates of a leaf's points along an active axis, in their order.
  const double* GetLeafCoordinates(const Node& leaf, int axis) const { return index_->GetLeafCoordinates(leaf, axis); }

 protected:
  // Partition with a sink, which is told the share done. False, without a tree, when it cancels.
  bool PartitionUnlessCancelled(CProgressSink* progress);
  const PointIndex* GetIndex() const { return index_.get(); }  // null before Initialise

 private:
  struct Cut;

  Node* GetRoot() { return index_ != nullptr ? index_->tree.GetRoot() : nullptr; }
  PointIndex& Own();
  Node* PrepareRoot();
  int GetAxes();
  void DestroyTree();
  bool StoreValidPoints(std::vector<int>& indices, PairProgress& progress);
  bool PartitionRoot(std::vector<int>& indices, PairProgress& progress);
  bool SplitNode(Node* node, std::vector<int>& indices);
  void CopyPointsToLeaves(const std::vector<int>& indices);
  void StoreLeaves();
  bool IsDegenerate(const Box& box);
  double GetVolume(const Box& box);
  bool FindCut(const Box& box, Cut& cut);
  bool FindRefinement(const Node& node, Cut& cut);
  void MakeChildren(Node* node, const Cut& cut);
  void DealPoints(Node* node, const Cut& cut);
  double GetCoordinate(int index, int axis);

  int leafCapacity_ = 64;
  double targetLeafVolume_ = 1.0;
  bool partitioned_ = false;
  std::shared_ptr<PointIndex> index_;
};

}  // namespace tallyscope
