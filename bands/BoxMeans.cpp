// SPDX-License-Identifier: MIT
#include "bands/BoxMeans.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <span>

#include "bands/BoxSums.h"
#include "bands/MaskBits.h"
#include "platform/core/WideVectors.h"

namespace tallyscope {

namespace {

template <class Number, int kLanes>
struct VectorOf {
  using Aligned [[gnu::vector_size(kLanes * sizeof(Number))]] = Number;
  using Anywhere [[gnu::vector_size(kLanes * sizeof(Number)), gnu::aligned(alignof(Number)), gnu::may_alias]] = Number;
};

// The sums of a few windows in a row, one to a lane. Each moves on by as many samples as there are lanes, by the
// changes that begin at it, a change being the sample that comes in less the one that leaves. No sum waits for its
// neighbour, and all of it stays in registers.
template <class Number, class Sample, int kLanes>
class WindowSums {
 public:
  using Vector = typename VectorOf<Number, kLanes>::Aligned;

  [[gnu::always_inline]] WindowSums(const Sample* samples, int width) : width_(width) {
    Vector part{};
    int i = 0;
    for (; i + kLanes <= width; i += kLanes) {
      Vector more;
      Load(samples + i, more);
      part += more;
    }
    Number sum = 0;
    for (int k = 0; k < kLanes; ++k) sum += part[k];
    for (; i < width; ++i) sum += static_cast<Number>(samples[i]);
    for (int k = 0; k < kLanes; ++k) {
      sums[k] = sum;
      sum += static_cast<Number>(samples[k + width]) - static_cast<Number>(samples[k]);
    }
    LoadChanges(samples, changes_);
    if constexpr (kLanes == 4) {
      const Vector first = changes_;
      LoadChanges(samples + kLanes, changes_);
      pairs_ = first + __builtin_shufflevector(first, changes_, 1, 2, 3, 4);
    }
  }

  // `at`: the first sample of the first window.
  [[gnu::always_inline]] void Advance(const Sample* at) {
    Vector next;
    if constexpr (kLanes == 4) {
      LoadChanges(at + 2 * kLanes, next);
      const Vector pairs = changes_ + __builtin_shufflevector(changes_, next, 1, 2, 3, 4);
      sums += pairs_ + __builtin_shufflevector(pairs_, pairs, 2, 3, 4, 5);
      pairs_ = pairs;
    } else {
      static_assert(kLanes == 2);
      LoadChanges(at + kLanes, next);
      sums += changes_ + __builtin_shufflevector(changes_, next, 1, 2);
    }
    changes_ = next;
  }

  Vector sums;

 private:
  [[gnu::always_inline]] static void Load(const Sample* from, Vector& to) {
    to = __builtin_convertvector(*reinterpret_cast<const typename VectorOf<Sample, kLanes>::Anywhere*>(from), Vector);
  }
  [[gnu::always_inline]] void LoadChanges(const Sample* at, Vector& to) const {
    Vector leaving;
    Load(at, leaving);
    Load(at + width_, to);
    to -= leaving;
  }

  int width_;
  Vector changes_;  // of the windows; with four lanes, of the four after them
  Vector pairs_{};  // with four lanes, of a window's change and the next one's
};

struct Box {
  const float* samples;
  const std::int32_t* nulls;  // or there are none
  int width;
  double divisor;  // without nulls
  float* means;
  int count;
};

template <int kLanes>
[[gnu::always_inline]] inline void Slide(const Box box) {
  using Doubles = typename VectorOf<double, kLanes>::Aligned;
  using Floats = VectorOf<float, kLanes>;
  WindowSums<double, float, kLanes> windows(box.samples, box.width);
  const auto store = [&](int i, const Doubles& means) {
    *reinterpret_cast<typename Floats::Anywhere*>(box.means + i) =
        __builtin_convertvector(means, typename Floats::Aligned);
    windows.Advance(box.samples + i);
  };
  if (box.nulls == nullptr) {
    for (int i = 0; i < box.count; i += kLanes) store(i, windows.sums / box.divisor);
    return;
  }
  WindowSums<std::int32_t, std::int32_t, kLanes> missing(box.nulls, box.width);
  for (int i = 0; i < box.count; i += kLanes) {
    store(i, windows.sums / (static_cast<double>(box.width) - __builtin_convertvector(missing.sums, Doubles)));
    missing.Advance(box.nulls + i);
  }
}

#ifdef TALLYSCOPE_IF_WIDE
TALLYSCOPE_IF_WIDE void SlideMeans(const Box& box) {
  Slide<4>(box);
}

TALLYSCOPE_IF_NARROW void SlideMeans(const Box& box) {
  Slide<2>(box);
}
#else
void SlideMeans(const Box& box) {
  Slide<2>(box);
}
#endif

}  // namespace

// Before they are added, the changes of four windows are put together: eight samples more than the window's.
bool CBoxMeans::IsExact(const float* samples, int count) const {
  const std::span window(samples, static_cast<std::size_t>(count) + static_cast<std::size_t>(width_) - 1);
  const SumSpread spread = GetSumSpread(window, width_ + 8, 0);
  return spread.finite && spread.bound == 0;
}

bool CBoxMeans::Run(const float* samples, double divisor, float* means, int count) const {
  if (!IsExact(samples, count)) return false;
  SlideMeans({samples, nullptr, width_, divisor, means, count});
  return true;
}

bool CBoxMeans::RunAroundNulls(const float* samples, const bvector& mask, int first, float* means, int count) {
  const int loaded = count + width_ - 1;
  const auto room = static_cast<std::size_t>(loaded) + kAhead;
  samples_.assign(samples, samples + room);
  nulls_.assign(room, 0);
  for (int i = 0; i < loaded; i += kMaskWord) {
    for (auto bits = LoadBits(mask, first + i, std::min(kMaskWord, loaded - i)); bits != 0; bits &= bits - 1) {
      const auto at = static_cast<std::size_t>(i + std::countr_zero(bits));
      samples_[at] = 0;
      nulls_[at] = 1;
    }
  }
  if (!IsExact(samples_.data(), count)) return false;
  SlideMeans({samples_.data(), nulls_.data(), width_, 0, means, count});
  return true;
}

}  // namespace tallyscope
