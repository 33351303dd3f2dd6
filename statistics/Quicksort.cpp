// SPDX-License-Identifier: MIT
#include "statistics/Quicksort.h"

#include <algorithm>
#include <bit>
#include <optional>

#include "statistics/StopTree.h"

namespace tallyscope {

namespace {

constexpr std::ptrdiff_t kScanAlways = 256;  // stations
constexpr std::ptrdiff_t kScanFactor = 4;    // random order takes a third of that

// One end of a partition in blocks: the values of a block that have to change sides are noted without a branch, then
// swapped pairwise with those of the other end.
class PartitionEnd {
 public:
  static constexpr int kBlock = 64;

  template <class Stays>
  void Fill(Stays stays) {
    if (count_ > 0) return;
    first_ = 0;
    for (int i = 0; i < kBlock; ++i) {
      offsets_[first_ + count_] = static_cast<unsigned char>(i);
      count_ += stays(i) ? 0 : 1;
    }
  }
  int GetCount() const { return count_; }
  int GetOffset(int i) const { return offsets_[first_ + i]; }
  void Drop(int count) {
    first_ += count;
    count_ -= count;
  }
  // How far the scan of this end has come: to the first value without a partner, or past the block.
  int GetReached() const { return count_ > 0 ? offsets_[first_] : 0; }

 private:
  unsigned char offsets_[kBlock];
  int first_ = 0;
  int count_ = 0;
};

// Hoare's partition of [i, j] about `pivot`. On return the parts are up to j and from i.
void Partition(const SortColumn& column, double pivot, std::ptrdiff_t& i, std::ptrdiff_t& j) {
  // In long ranges the k-th value from the left that isn't before the pivot meets the k-th from the right that isn't
  // behind it, as in the plain scan below, but without its mispredicted branches (S. Edelkamp and A. Weiss,
  // "BlockQuicksort", 2016). The plain scan ends the range.
  PartitionEnd left;
  PartitionEnd right;
  const double* values = column.values;
  while (j - i + 1 > 2 * PartitionEnd::kBlock) {
    left.Fill([=](int offset) { return values[i + offset] < pivot; });
    right.Fill([=](int offset) { return pivot < values[j - offset]; });
    const int pairs = std::min(left.GetCount(), right.GetCount());
    for (int k = 0; k < pairs; ++k) column.Swap(i + left.GetOffset(k), j - right.GetOffset(k));
    left.Drop(pairs);
    right.Drop(pairs);
    if (left.GetCount() == 0) i += PartitionEnd::kBlock;
    if (right.GetCount() == 0) j -= PartitionEnd::kBlock;
  }
  i += left.GetReached();
  j -= right.GetReached();
  while (i <= j) {
    while (values[i] < pivot) ++i;
    while (pivot < values[j]) --j;
    if (i > j) break;
    if (i < j) column.Swap(i, j);
    ++i;
    --j;
  }
}

// Makes the partitions of a quicksort. Scans that cross a range again and again for a swap or two, as in a column that
// rises and then falls, would take quadratic time. So the stations that may be scanned are limited to a multiple of
// n log n; past that, the next stop of a scan is looked up. The swaps are the same either way, and few: of a partition
// at most as many as its smaller part has stations, and one, which makes O(n log n) of them in all (a station is in the
// smaller part log2 n times at most).
class Partitioner {
 public:
  Partitioner(const SortColumn& column, std::ptrdiff_t size)
      : column_(column), size_(size), allowance_(kScanFactor * size * std::bit_width(static_cast<std::size_t>(size))) {}

  // Of [i, j], about its middle value. On return the parts are up to j and from i.
  void Split(std::ptrdiff_t& i, std::ptrdiff_t& j) {
    const double pivot = column_.values[(i + j) / 2];
    const std::ptrdiff_t length = j - i + 1;
    // A short range is scanned without telling the tree. Blocks inside it aren't asked again; one that it shares with a
    // neighbour counts the neighbour's own values still, and what else it counts only makes a search look into it.
    if (length > kScanAlways) allowance_ -= length;
    if (length <= kScanAlways || allowance_ >= 0) {
      Partition(column_, pivot, i, j);
    } else {
      SplitByLookup(pivot, i, j);
    }
  }

 private:
  // A scan never leaves its range: before the first swap the pivot stops it, after that the last station swapped does.
  void SplitByLookup(double pivot, std::ptrdiff_t& i, std::ptrdiff_t& j) {
    if (!stops_) stops_.emplace(column_.values, size_);
    while (i <= j) {
      i = stops_->FindNotBefore(i, pivot);
      j = stops_->FindNotBehind(j, pivot);
      if (i > j) break;
      if (i < j) {
        column_.Swap(i, j);
        stops_->Update(i);
        stops_->Update(j);
      }
      ++i;
      --j;
    }
  }

  SortColumn column_;
  std::ptrdiff_t size_;
  std::ptrdiff_t allowance_;
  std::optional<StopTree> stops_;
};

}  // namespace

bool Quicksort(const SortColumn& column, std::ptrdiff_t size, double begin, CWorkProgress& progress) {
  // The larger part is always the one that waits, so that each waiting range is less than half of the one before.
  struct Range {
    std::ptrdiff_t left, right;
    std::ptrdiff_t GetLength() const { return right - left + 1; }
  };
  Range waiting[64];
  int count = 0;
  std::ptrdiff_t unsorted = size;  // stations in ranges that wait or are at work
  waiting[count++] = {0, size - 1};
  Partitioner partitioner(column, size);
  while (count > 0) {
    Range range = waiting[--count];
    while (range.left < range.right) {
      const std::ptrdiff_t length = range.GetLength();
      const double done = static_cast<double>(size - unsorted) / static_cast<double>(size);
      if (!progress.Did(length, begin + done * (1 - begin))) return false;
      std::ptrdiff_t i = range.left;
      std::ptrdiff_t j = range.right;
      partitioner.Split(i, j);
      Range smaller{range.left, j};
      Range larger{i, range.right};
      if (j - range.left >= range.right - i) std::swap(smaller, larger);
      unsorted -= length - smaller.GetLength() - larger.GetLength();
      if (larger.left < larger.right) {
        waiting[count++] = larger;
      } else {
        unsorted -= larger.GetLength();
      }
      range = smaller;
    }
    unsorted -= range.GetLength();
  }
  return true;
}

}  // namespace tallyscope
