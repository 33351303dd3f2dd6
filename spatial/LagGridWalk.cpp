// SPDX-License-Identifier: MIT
#include "spatial/LagGridWalk.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <numeric>

#include "spatial/LeafSearch.h"
#include "statistics/Stats_Data.h"

namespace tallyscope {

namespace {

using Node = PointIndex::Node;

Box Widen(Box box, const Point3& range) {
  for (std::size_t axis = 0; axis < 3; ++axis) {
    box.min[axis] -= range[axis];
    box.max[axis] += range[axis];
  }
  return box;
}

// How far apart the eighth and the last eighth of the finite co-ordinates of some stations begin.
double FindSpread(CStats_Data& data, int dim, const std::vector<int>& stations) {
  std::vector<double> values(stations.size());
  std::vector<unsigned char> valid(stations.size());
  data.ReadValuesAt(dim, stations.data(), static_cast<int>(stations.size()), values.data(), valid.data());
  std::size_t count = 0;
  for (std::size_t i = 0; i < values.size(); ++i) {
    if (valid[i] != 0 && std::isfinite(values[i])) values[count++] = values[i];
  }
  std::sort(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(count));
  return count == 0 ? 0 : values[count - 1 - count / 8] - values[count / 8];
}

}  // namespace

LagGridWalk::LagGridWalk(const Source& source, const LagBinning& binning, int stride, pair_kernel::Level level)
    : source_(source),
      binning_(binning),
      stride_(stride),
      filler_(binning, level, FindScale(source, binning)),
      stations_(source.mean, filler_.GetPerUnit()),
      firsts_(source.mean, filler_.GetPerUnit()),
      seconds_(source.mean, filler_.GetPerUnit()) {}

// How many parts a cell is to be cut into where nearly all stations lie in too small a corner of one for floats; 1
// elsewhere. One station far off makes the default range as large as that.
double LagGridWalk::FindScale(const Source& source, const LagBinning& binning) {
  constexpr int kMost = 1000;         // stations looked at
  constexpr double kSmall = 0x1p-40;  // cells: their square is still far from the least float
  const int total = source.data->GetSize();
  const int looks = std::min(total, kMost);
  std::vector<int> stations;
  for (int i = 0; i < looks; ++i) stations.push_back(static_cast<int>(std::int64_t{total} * i / looks));
  double largest = 0;
  for (int axis = 0; axis < 3; ++axis) {
    if (source.dims[axis] == kNoColumn) continue;
    largest = std::max(largest, FindSpread(*source.data, source.dims[axis], stations) / binning.GetWidth(axis));
  }
  if (!(largest > 0 && largest < kSmall)) return 1;
  return std::exp2(std::floor(-std::log2(largest)) - 5);  // with room for those that lie further out
}

bool LagGridWalk::AddBlocks(const LagStations& firsts, int block, const LagStations& seconds, int begin, int end) {
  for (int other = begin; other < end; ++other) {
    filler_.AddPairs(firsts, block, seconds, other);
    if (!progress_->Work(std::int64_t{firsts.GetBlock(block).count} * seconds.GetBlock(other).count)) return false;
  }
  return true;
}

bool LagGridWalk::WalkWithin(const LagStations& stations, int begin, int end) {
  for (int block = begin; block < end; ++block) {
    filler_.AddPairsWithin(stations, block);
    if (!AddBlocks(stations, block, stations, block + 1, end)) return false;
  }
  return true;
}

// Through the search.

void LagGridWalk::GatherLeaves(const StationIndex& index) {
  const PointIndex& points = *index.points;
  std::vector<double> values;
  std::vector<unsigned char> valid;
  std::vector<double> read[3];
  std::size_t total = 0;
  for (const Node* leaf : nodes_) total += leaf->points.size();
  stations_.Reserve(total);
  if (stride_ > 1) hasValue_.reserve(total);
  for (const Node* leaf : nodes_) {
    const std::size_t count = leaf->points.size();
    const int size = static_cast<int>(count);
    values.resize(count);
    valid.resize(count);
    source_.data->ReadValuesAt(source_.field, leaf->points.data(), size, values.data(), valid.data());
    const double* places[3] = {};
    for (int axis = 0; axis < 3; ++axis) {
      const int dim = source_.dims[axis];
      if (dim == kNoColumn) continue;
      places[axis] = points.GetLeafCoordinates(*leaf, std::min(axis, points.axes - 1));
      if (axis < points.axes && index.fields[static_cast<std::size_t>(axis)] == dim) continue;
      read[axis].resize(count);
      source_.data->ReadRawValuesAt(dim, leaf->points.data(), size, read[axis].data());
      places[axis] = read[axis].data();
    }
    Leaf entry{stations_.GetBlockCount(), 0, stations_.GetSize(), size};
    for (std::size_t p = 0; p < count; ++p) {
      // A column that isn't one of the search's may have any number.
      for (const double* column : places) {
        if (column != nullptr && !std::isfinite(column[p])) valid[p] = 0;
      }
      if (stride_ > 1) hasValue_.push_back(valid[p]);
      if (valid[p] == 0 && stride_ == 1) continue;
      Point3 place{};
      for (std::size_t axis = 0; axis < 3; ++axis) {
        if (places[axis] != nullptr && valid[p] != 0) place[axis] = places[axis][p];
      }
      stations_.Append(place, valid[p] != 0 ? values[p] : 0);
    }
    entry.lastBlock = stations_.CloseBlocks();
    leaves_.push_back(entry);
  }
}

// Which of the leaves from this one on its box meets, in their order, which is that of the search's store.
std::vector<int> LagGridWalk::FindLeavesWithin(const PointIndex& points, int leaf, const Point3& range) {
  const auto comesBefore = [](const Node* a, const Node* b) { return a->run < b->run; };
  const auto own = nodes_.begin() + leaf;
  found_.clear();
  leaf_search::CollectInBox(found_, points.GetRoot(), points.axes, Widen((*own)->box, range), false);
  std::vector<int> near;
  for (const Node* node : found_) {
    if (comesBefore(node, *own)) continue;
    near.push_back(static_cast<int>(std::lower_bound(own, nodes_.end(), node, comesBefore) - nodes_.begin()));
  }
  return near;
}

bool LagGridWalk::WalkLeaves(const StationIndex& index, const Point3& range, PairProgress& progress) {
  progress_ = &progress;
  leaf_search::Collect(nodes_, index.points->GetRoot(), false, [](const Box&) { return true; });
  GatherLeaves(index);
  const int leaves = static_cast<int>(nodes_.size());
  for (int leaf = 0; leaf < leaves; ++leaf) {
    const std::vector<int> near = FindLeavesWithin(*index.points, leaf, range);
    const bool done = stride_ == 1 ? WalkWholeLeaf(leaf, near) : WalkSampledLeaf(leaf, near);
    if (!done || !progress.Report(leaf, leaves)) return false;
  }
  return true;
}

bool LagGridWalk::WalkWholeLeaf(int leaf, const std::vector<int>& near) {
  const Leaf& own = GetLeaf(leaf);
  for (const int other : near) {
    const Leaf& met = GetLeaf(other);
    if (other == leaf && !WalkWithin(stations_, own.firstBlock, own.lastBlock)) return false;
    for (int block = own.firstBlock; block < own.lastBlock && other != leaf; ++block) {
      if (!AddBlocks(stations_, block, stations_, met.firstBlock, met.lastBlock)) return false;
    }
  }
  return true;
}

// The stations that a stride takes from leaf after leaf: it runs on from each into the next.
class LagGridWalk::Sampler {
 public:
  explicit Sampler(const LagGridWalk& walk) : walk_(walk) {}

  void Take(const Leaf& leaf, LagStations* out) {
    for (; next_ < leaf.size; next_ += walk_.stride_) {
      const std::int64_t station = leaf.first + next_;
      if (out == nullptr || walk_.hasValue_[static_cast<std::size_t>(station)] == 0) continue;
      out->Append(walk_.stations_, static_cast<int>(station));
    }
    next_ -= leaf.size;
  }

 private:
  const LagGridWalk& walk_;
  std::int64_t next_ = 0;
};

// All stations that are taken from a leaf meet the same ones of the leaves behind it: each is a multiple of the stride
// away from the others.
bool LagGridWalk::WalkSampledLeaf(int leaf, const std::vector<int>& near) {
  firsts_.Clear();
  seconds_.Clear();
  Sampler(*this).Take(GetLeaf(leaf), &firsts_);
  const int blocks = firsts_.CloseBlocks();
  if (blocks == 0) return true;
  Sampler sampler(*this);
  for (const int other : near) sampler.Take(GetLeaf(other), other == leaf ? nullptr : &seconds_);
  const int others = seconds_.CloseBlocks();
  if (!near.empty() && near.front() == leaf && !WalkWithin(firsts_, 0, blocks)) return false;
  for (int block = 0; block < blocks; ++block) {
    if (!AddBlocks(firsts_, block, seconds_, 0, others)) return false;
  }
  return true;
}

// Without a search.

// Stations with a value and a finite place.
void LagGridWalk::GatherAll() {
  constexpr int kRun = 512;
  const int total = source_.data->GetSize();
  int stations[kRun];
  double values[4][kRun] = {};
  unsigned char valid[4][kRun];
  const int dims[4] = {source_.dims[0], source_.dims[1], source_.dims[2], source_.field};
  for (std::int64_t next = 0; next < total;) {
    int count = 0;
    for (; next < total && count < kRun; next += stride_) stations[count++] = static_cast<int>(next);
    for (int i = 0; i < 4; ++i) {
      std::fill(valid[i], valid[i] + count, static_cast<unsigned char>(1));
      if (dims[i] == kNoColumn) continue;
      if (stride_ == 1) {
        source_.data->ReadValues(dims[i], stations[0], count, values[i], valid[i]);
      } else {
        source_.data->ReadValuesAt(dims[i], stations, count, values[i], valid[i]);
      }
    }
    for (int i = 0; i < count; ++i) {
      if ((valid[0][i] & valid[1][i] & valid[2][i] & valid[3][i]) == 0) continue;
      const Point3 place{values[0][i], values[1][i], values[2][i]};
      if (std::all_of(place.begin(), place.end(), [](double x) { return std::isfinite(x); })) {
        stations_.Append(place, values[3][i]);
      }
    }
  }
}

bool LagGridWalk::WalkAll(PairProgress& progress) {
  progress_ = &progress;
  GatherAll();
  // Where both senses of a direction are one cell the order is free, and along x few blocks are near each other.
  if (binning_.IsPolar() && binning_.GetCount(1) == 1 && binning_.GetCount(2) == 1) stations_.SortAlongX();
  const int blocks = stations_.CloseBlocks();
  for (int block = 0; block < blocks; ++block) {
    filler_.AddPairsWithin(stations_, block);
    if (!AddBlocks(stations_, block, stations_, block + 1, blocks)) return false;
    if (!progress.Report(block, blocks)) return false;
  }
  return true;
}

}  // namespace tallyscope
