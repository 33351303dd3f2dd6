// SPDX-License-Identifier: MIT
#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstddef>
#include <cstdint>

#include "spatial/PairProgress.h"
#include "spatial/PointSearch.h"

namespace tallyscope {

namespace {

constexpr double kThin = 1e-10;                     // a box this thin isn't cut
constexpr double kCutDivisor = 2.0943951023931957;  // cuts lie at 47.7 % of an extent
constexpr double kSameFace = 1e-10;
constexpr double kSmallLeaf = 10.0;  // times its volume below the mean leaf volume: such a leaf isn't cut
constexpr int kBlock = 1024;

std::size_t At(int i) {
  return static_cast<std::size_t>(i);
}

double Extent(const Box& box, int axis) {
  return std::fabs(box.max[At(axis)] - box.min[At(axis)]);
}

// Ties go to the lower axis.
int LongestAxis(const Box& box, int axes) {
  int longest = 0;
  for (int axis = 1; axis < axes; ++axis) {
    if (Extent(box, longest) < Extent(box, axis)) longest = axis;
  }
  return longest;
}

bool IsStrictlyInside(double cut, const Box& box, int axis) {
  return box.min[At(axis)] < cut && cut < box.max[At(axis)];
}

// An extent within 1/8 to 8 of each of the other two, active or not.
bool IsCompact(const Box& box, int axis) {
  for (int other = 0; other < 3; ++other) {
    const double ratio = Extent(box, axis) / Extent(box, other);
    if (other != axis && !(ratio >= 0.125 && ratio <= 8.0)) return false;
  }
  return true;
}

// The longer of x and y if both will do, then z if it is longer than y; -1 if none will do. With all three, z is
// measured against y even where x was the longer.
int ChooseRefinement(const bool* candidate, const Box& box) {
  int axis = candidate[0] ? 0 : candidate[1] ? 1 : -1;
  if (candidate[0] && candidate[1] && Extent(box, 0) < Extent(box, 1)) axis = 1;
  if (!candidate[2]) return axis;
  return axis < 0 || Extent(box, candidate[1] ? 1 : 0) < Extent(box, 2) ? 2 : axis;
}

void MoveFace(double& face, double oldFace, double newFace) {
  if (face == oldFace || std::fabs(face - oldFace) < kSameFace) face = newFace;
}

// A block of co-ordinates of up to three axes.
class Block {
 public:
  double* const* GetAxes() { return axes_; }

 private:
  double values_[3][kBlock];
  double* const axes_[3] = {values_[0], values_[1], values_[2]};
};

}  // namespace

struct CPointSearch::Cut {
  int axis = 0;
  double position = 0;
};

CPointSearch::~CPointSearch() = default;

void CPointSearch::DestroyTree() {
  index_.reset();
}

// The index for a change: nobody else has it.
PointIndex& CPointSearch::Own() {
  if (index_.use_count() > 1) index_ = std::make_shared<PointIndex>(*index_);
  std::atomic_thread_fence(std::memory_order_acquire);  // after the last look of who had it
  return *index_;
}

CDLBTree<CPointSearch::Node>* CPointSearch::GetTree() {
  return index_ != nullptr ? &Own().tree : nullptr;
}

void CPointSearch::Reset() {
  DestroyTree();
  leafCapacity_ = 64;
  targetLeafVolume_ = 1.0;
  SetPartitioned(false);
}

void CPointSearch::Initialise(const Box& box, int leafCapacity) {
  DestroyTree();
  leafCapacity_ = std::max(leafCapacity, 0);
  index_ = std::make_shared<PointIndex>();
  index_->axes = GetAxes();
  index_->tree.GetOrCreateRoot()->box = box;
  SetPartitioned(false);
}

// A tree that was built before makes way for one of its root alone.
CPointSearch::Node* CPointSearch::PrepareRoot() {
  Node* root = GetRoot();
  const bool isFresh = root != nullptr && root->IsLeaf() && root->points.empty() && index_.use_count() == 1;
  if (root == nullptr || isFresh) return root;
  Initialise(Box(root->box), leafCapacity_);
  return GetRoot();
}

int CPointSearch::GetAxes() {
  return std::clamp(GetDimensions(), 1, 3);
}

double CPointSearch::GetCoordinate(int index, int axis) {
  return axis == 0 ? GetX(index) : axis == 1 ? GetY(index) : GetZ(index);
}

void CPointSearch::ReadPoints(int first, int count, double* const* coordinates, unsigned char* valid) {
  const int axes = GetAxes();
  for (int i = 0; i < count; ++i) {
    valid[i] = IsPointValid(first + i) ? 1 : 0;
    if (valid[i] == 0) continue;
    for (int axis = 0; axis < axes; ++axis) coordinates[axis][i] = GetCoordinate(first + i, axis);
  }
}

void CPointSearch::ReadPointsAt(const int* indices, int count, double* const* coordinates) {
  const int axes = GetAxes();
  for (int i = 0; i < count; ++i) {
    for (int axis = 0; axis < axes; ++axis) coordinates[axis][i] = GetCoordinate(indices[i], axis);
  }
}

// Geometry of a split.

bool CPointSearch::IsDegenerate(const Box& box) {
  for (int axis = 0; axis < GetAxes(); ++axis) {
    if (Extent(box, axis) < kThin) return true;
  }
  return false;
}

// An extent that is zero counts as 1.
double CPointSearch::GetVolume(const Box& box) {
  double volume = 1.0;
  for (int axis = 0; axis < GetAxes(); ++axis) {
    const double extent = Extent(box, axis);
    volume *= extent > 0 ? extent : 1.0;
  }
  return volume;
}

bool CPointSearch::FindCut(const Box& box, Cut& cut) {
  if (IsDegenerate(box)) return false;
  cut.axis = LongestAxis(box, GetAxes());
  const double low = box.min[At(cut.axis)];
  cut.position = low + (box.max[At(cut.axis)] - low) / kCutDivisor;
  return IsStrictlyInside(cut.position, box, cut.axis);
}

void CPointSearch::MakeChildren(Node* node, const Cut& cut) {
  Node* left = index_->tree.AddLeft(node);
  Node* right = index_->tree.AddRight(node);
  left->box = right->box = node->box;
  left->box.max[At(cut.axis)] = cut.position;
  right->box.min[At(cut.axis)] = cut.position;
}

// The bulk build.

void CPointSearch::Partition() {
  PartitionUnlessCancelled(nullptr);
}

bool CPointSearch::PartitionUnlessCancelled(CProgressSink* sink) {
  Node* root = PrepareRoot();
  if (root == nullptr) return false;
  PairProgress progress(sink);
  std::vector<int> indices;
  if (!progress.Start("Building the point search") || !StoreValidPoints(indices, progress) ||
      !PartitionRoot(indices, progress)) {
    DestroyTree();
    SetPartitioned(false);
    return false;
  }
  CopyPointsToLeaves(indices);
  SetPartitioned(true);
  return true;
}

bool CPointSearch::StoreValidPoints(std::vector<int>& indices, PairProgress& progress) {
  const int total = GetPointCount();
  indices.reserve(At(total));
  index_->store.Reset(GetAxes(), total);
  Block block;
  unsigned char valid[kBlock];
  for (int first = 0; first < total; first += kBlock) {
    const int count = std::min(kBlock, total - first);
    ReadPoints(first, count, block.GetAxes(), valid);
    index_->store.Append(block.GetAxes(), valid, count);
    for (int i = 0; i < count; ++i) {
      if (valid[i] != 0) indices.push_back(first + i);
    }
    if (!progress.Report(first, std::int64_t{total} * 2)) return false;  // half of the work
  }
  index_->store.ReleaseSpare();
  return true;
}

// Nodes of many points are split one by one, so that the sink can be asked between them.
bool CPointSearch::PartitionRoot(std::vector<int>& indices, PairProgress& progress) {
  constexpr int kMany = 1 << 16;
  Node* root = GetRoot();
  const int total = static_cast<int>(indices.size());
  targetLeafVolume_ = leafCapacity_ * GetVolume(root->box) / total;
  root->first = 0;
  root->last = total - 1;
  std::vector<Node*> nodes{root};
  for (std::int64_t done = 0; !nodes.empty();) {
    Node* node = nodes.back();
    nodes.pop_back();
    const int count = node->last - node->first + 1;
    if (count > kMany && SplitNode(node, indices)) {
      nodes.push_back(node->right);
      nodes.push_back(node->left);
      if (!progress.Work(count)) return false;
      continue;
    }
    if (count <= kMany) PartitionNode(node, indices);
    done += count;
    if (total > 0 && !progress.Report(total + done, std::int64_t{total} * 2)) return false;
  }
  return true;
}

void CPointSearch::CopyPointsToLeaves(const std::vector<int>& indices) {
  Leaves leaves;
  CollectLeaves(leaves, true);
  for (Node* leaf : leaves) {
    leaf->run = leaf->first;
    if (leaf->first < 0 || leaf->last < 0) continue;
    leaf->points.assign(indices.begin() + leaf->first, indices.begin() + leaf->last + 1);
  }
}

void CPointSearch::PartitionNode(Node* node, std::vector<int>& indices) {
  if (!SplitNode(node, indices)) return;
  PartitionNode(node->left, indices);
  PartitionNode(node->right, indices);
}

bool CPointSearch::SplitNode(Node* node, std::vector<int>& indices) {
  const int count = node->first < 0 ? 0 : std::max(0, node->last - node->first + 1);
  Cut cut;
  if (count <= 1.5 * leafCapacity_ || targetLeafVolume_ > kSmallLeaf * GetVolume(node->box)) return false;
  if (!node->IsLeaf() || !FindCut(node->box, cut)) return false;
  MakeChildren(node, cut);
  const int below = index_->store.PartitionByCut(cut.axis, cut.position, node->first, count, indices.data());
  node->left->first = node->first;
  node->left->last = node->first + below - 1;
  node->right->first = node->first + below;
  node->right->last = node->last;
  node->first = node->last = -1;
  return true;
}

// Leaves that hold their own points.

void CPointSearch::PartitionAll() {
  Node* root = PrepareRoot();
  if (root == nullptr) return;
  root->points.resize(At(GetPointCount()));
  for (std::size_t i = 0; i < root->points.size(); ++i) root->points[i] = static_cast<int>(i);
  StoreLeaves();
  SplitLeaf(root);
  SetPartitioned(true);
}

// Lays the store anew, in the order of the leaves.
void CPointSearch::StoreLeaves() {
  Leaves leaves;
  CollectLeaves(leaves, true);
  index_->store.Reset(GetAxes(), 0);
  Block block;
  for (Node* leaf : leaves) {
    leaf->run = index_->store.GetSize();
    const int total = static_cast<int>(leaf->points.size());
    for (int first = 0; first < total; first += kBlock) {
      const int count = std::min(kBlock, total - first);
      ReadPointsAt(leaf->points.data() + first, count, block.GetAxes());
      index_->store.Append(block.GetAxes(), nullptr, count);
    }
  }
  index_->store.ReleaseSpare();
}

void CPointSearch::SplitLeaf(Node* node) {
  Cut cut;
  if (static_cast<double>(node->points.size()) <= 1.5 * leafCapacity_ || !FindCut(node->box, cut)) return;
  DealPoints(node, cut);
  SplitLeaf(node->left);
  SplitLeaf(node->right);
}

void CPointSearch::DealPoints(Node* node, const Cut& cut) {
  MakeChildren(node, cut);
  const int below = index_->store.DealByCut(cut.axis, cut.position, node->run, node->points);
  const auto middle = node->points.begin() + below;
  node->left->points.assign(node->points.begin(), middle);
  node->right->points.assign(middle, node->points.end());
  node->left->run = node->run;
  node->right->run = node->run + below;
  node->points = {};
  node->first = node->last = node->run = -1;
}

void CPointSearch::RefineLeaves() {
  if (index_ == nullptr) return SetPartitioned(true);
  Own();
  Leaves leaves;
  CollectLeaves(leaves, true);
  for (Node* leaf : leaves) RefineLeaf(leaf);
  SetPartitioned(true);
}

void CPointSearch::RefineLeaf(Node* node) {
  Cut cut;
  if (node->points.size() < 4 || IsDegenerate(node->box) || !FindRefinement(*node, cut)) return;
  DealPoints(node, cut);
  RefineLeaf(node->left);
  RefineLeaf(node->right);
}

// The middle of an axis on which all points lie on one side, if the box stays within 8 to 1 of its other extents.
bool CPointSearch::FindRefinement(const Node& node, Cut& cut) {
  const Box& box = node.box;
  bool candidate[3] = {};
  Point3 middle{};
  for (int axis = 0; axis < GetAxes(); ++axis) {
    middle[At(axis)] = (box.min[At(axis)] + box.max[At(axis)]) * 0.5;
    const double* values = GetLeafCoordinates(node, axis);
    const double* end = values + node.points.size();
    const auto isBelow = [&](double value) { return value < middle[At(axis)]; };
    const bool oneSided = std::all_of(values, end, isBelow) || std::none_of(values, end, isBelow);
    candidate[axis] = oneSided && IsCompact(box, axis);
  }
  cut.axis = ChooseRefinement(candidate, box);
  if (cut.axis < 0) return false;
  cut.position = middle[At(cut.axis)];
  return IsStrictlyInside(cut.position, box, cut.axis);
}

void CPointSearch::AddPoints(int first, int last) {
  if (index_ == nullptr) return;
  Own();
  for (int index = first; index <= last; ++index) {
    Point3 point{};
    for (int axis = 0; axis < GetAxes(); ++axis) point[At(axis)] = GetCoordinate(index, axis);
    if (Node* leaf = FindLeaf(point)) leaf->points.push_back(index);
  }
  StoreLeaves();
  Leaves leaves;
  CollectLeaves(leaves, true);
  for (Node* leaf : leaves) SplitLeaf(leaf);
}

// Bounds.

void CPointSearch::ReplaceBoundary(Node* node, const Box& oldBox, const Box& newBox) {
  if (node == nullptr) return;
  for (std::size_t axis = 0; axis < 3; ++axis) {
    MoveFace(node->box.min[axis], oldBox.min[axis], newBox.min[axis]);
    MoveFace(node->box.max[axis], oldBox.max[axis], newBox.max[axis]);
  }
  ReplaceBoundary(node->left, oldBox, newBox);
  ReplaceBoundary(node->right, oldBox, newBox);
}

void CPointSearch::ExtendBounds(const Box& box) {
  if (GetRoot() == nullptr) return;
  Own();
  const Box old = GetRoot()->box;
  Box whole = old;
  for (std::size_t axis = 0; axis < 3; ++axis) {
    whole.min[axis] = std::min(old.min[axis], box.min[axis]);
    whole.max[axis] = std::max(old.max[axis], box.max[axis]);
  }
  ReplaceBoundary(GetRoot(), old, whole);
}

}  // namespace tallyscope
