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

template <class Number>
struct FourOf {
  using Aligned [[gnu::vector_size(4 * sizeof(Number))]] = Number;
  using Anywhere [[gnu::vector_size(4 * sizeof(Number)), gnu::aligned(alignof(Number)), gnu::may_alias]] = Number;
};

// The sums of four windows in a row. Each moves four samples on by the four changes that begin at it, a change being
// the sample that comes in less the one that leaves. Changes are added up by pairs, so that no chain of sums waits for
// another. All of it stays in registers.
template <class Number, class Sample>
class FourSums {
 public:
  using Four = typename FourOf<Number>::Aligned;

  [[gnu::always_inline]] FourSums(const Sample* samples, int width) : width_(width) {
    Four part{};
    int i = 0;
    for (; i + 4 <= width; i += 4) {
      Four more;
      Load(samples + i, more);
      part += more;
    }
    Number sum = (part[0] + part[1]) + (part[2] + part[3]);
    for (; i < width; ++i) sum += static_cast<Number>(samples[i]);
    for (int k = 0; k < 4; ++k) {
      sums[k] = sum;
      sum += static_cast<Number>(samples[k + width]) - static_cast<Number>(samples[k]);
    }
    Four first;
    LoadChanges(samples, first);
    LoadChanges(samples + 4, changes_);
    pairs_ = first + __builtin_shufflevector(first, changes_, 1, 2, 3, 4);
  }

  // `at`: the first sample of the first of the four.
  [[gnu::always_inline]] void Advance(const Sample* at) {
    Four next;
    LoadChanges(at + 8, next);
    const Four pairs = changes_ + __builtin_shufflevector(changes_, next, 1, 2, 3, 4);
    sums += pairs_ + __builtin_shufflevector(pairs_, pairs, 2, 3, 4, 5);
    pairs_ = pairs;
    changes_ = next;
  }

  Four sums;

 private:
  [[gnu::always_inline]] static void Load(const Sample* from, Four& to) {
    to = __builtin_convertvector(*reinterpret_cast<const typename FourOf<Sample>::Anywhere*>(from), Four);
  }
  [[gnu::always_inline]] void LoadChanges(const Sample* at, Four& to) const {
    Four leaving;
    Load(at, leaving);
    Load(at + width_, to);
    to -= leaving;
  }

  int width_;
  Four pairs_;    // each of a change of the four windows and the next one
  Four changes_;  // of the four windows after these
};

using Doubles = FourOf<double>::Aligned;
using Floats = FourOf<float>;

TALLYSCOPE_WIDE_VECTORS
void SlideMeans(const float* samples, int width, double divisor, float* means, int count) {
  FourSums<double, float> box(samples, width);
  for (int i = 0; i < count; i += 4) {
    *reinterpret_cast<Floats::Anywhere*>(means + i) = __builtin_convertvector(box.sums / divisor, Floats::Aligned);
    box.Advance(samples + i);
  }
}

TALLYSCOPE_WIDE_VECTORS
void SlideMeans(const float* samples, const std::int32_t* nulls, int width, float* means, int count) {
  FourSums<double, float> box(samples, width);
  FourSums<std::int32_t, std::int32_t> missing(nulls, width);
  for (int i = 0; i < count; i += 4) {
    const Doubles divisors = static_cast<double>(width) - __builtin_convertvector(missing.sums, Doubles);
    *reinterpret_cast<Floats::Anywhere*>(means + i) = __builtin_convertvector(box.sums / divisors, Floats::Aligned);
    box.Advance(samples + i);
    missing.Advance(nulls + i);
  }
}

}  // namespace

// Before they are added, the changes of four windows are put together: eight samples more than the window's.
bool CBoxMeans::IsExact(const float* samples, int count) const {
  const std::span window(samples, static_cast<std::size_t>(count) + static_cast<std::size_t>(width_) - 1);
  const SumSpread spread = GetSumSpread(window, width_ + 8, 0);
  return spread.finite && spread.bound == 0;
}

bool CBoxMeans::Run(const float* samples, double divisor, float* means, int count) const {
  if (!IsExact(samples, count)) return false;
  SlideMeans(samples, width_, divisor, means, count);
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
  SlideMeans(samples_.data(), nulls_.data(), width_, means, count);
  return true;
}

}  // namespace tallyscope
