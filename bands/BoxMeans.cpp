// SPDX-License-Identifier: MIT
#include "bands/BoxMeans.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <span>

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
template <class Number, class Sample, int kLanes, bool kRounds>
class WindowSums {
 public:
  using Vector = typename VectorOf<Number, kLanes>::Aligned;

  // With kRounds samples are rounded next to `beside`.
  [[gnu::always_inline]] WindowSums(const Sample* samples, int width, Number beside) : width_(width), beside_(beside) {
    Vector parts[4]{};
    int i = 0;
    for (; i + 4 * kLanes <= width; i += 4 * kLanes) {
      for (int k = 0; k < 4; ++k) {
        Vector more;
        Load(samples + i + k * kLanes, more);
        parts[k] += more;
      }
    }
    const Vector all = (parts[0] + parts[1]) + (parts[2] + parts[3]);
    Number sum = 0;
    for (int k = 0; k < kLanes; ++k) sum += all[k];
    for (; i < width; ++i) sum += Round(static_cast<Number>(samples[i]));
    for (int k = 0; k < kLanes; ++k) {
      sums[k] = sum;
      sum += Round(static_cast<Number>(samples[k + width])) - Round(static_cast<Number>(samples[k]));
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
  [[gnu::always_inline]] Number Round(Number sample) const { return kRounds ? (sample + beside_) - beside_ : sample; }
  [[gnu::always_inline]] void Load(const Sample* from, Vector& to) const {
    to = __builtin_convertvector(*reinterpret_cast<const typename VectorOf<Sample, kLanes>::Anywhere*>(from), Vector);
    if constexpr (kRounds) to = (to + beside_) - beside_;
  }
  [[gnu::always_inline]] void LoadChanges(const Sample* at, Vector& to) const {
    Vector leaving;
    Load(at, leaving);
    Load(at + width_, to);
    to -= leaving;
  }

  int width_;
  Number beside_;
  Vector changes_;  // of the windows; with four lanes, of the four after them
  Vector pairs_{};  // with four lanes, of a window's change and the next one's
};

struct Box {
  const float* samples;
  const std::int32_t* nulls;  // or there are none
  int width;
  double divisor;  // without nulls
  double beside;   // to round samples next to
  double bound;    // of what a sum of those may be off; 0: nothing, and samples aren't rounded
  float* means;
  std::vector<int>* open;
  int count;
};

// The division may be off by an ulp and so may what is taken off and added: four in all, where a mean needs one.
constexpr double kQuotientError = 0x1p-50;
constexpr int kRun = 256;

// Where the smallest and the largest that a mean may be are one float, that is the mean; but a zero may still be of
// either sign.
[[gnu::always_inline]] inline bool IsOpen(float low, float high) {
  return !(low == high) || low == 0.0f;
}

[[gnu::always_inline]] inline void FindOpen(const float* lows, const float* highs, int first, int count,
                                            std::vector<int>& open) {
  int any = 0;
  for (int i = 0; i < count; ++i) any |= static_cast<int>(!(lows[i] == highs[i])) | static_cast<int>(lows[i] == 0.0f);
  for (int i = 0; any != 0 && i < count; ++i) {
    if (IsOpen(lows[i], highs[i])) open.push_back(first + i);
  }
}

template <int kLanes, bool kIsExact>
[[gnu::always_inline]] inline void Slide(const Box box) {
  using Doubles = typename VectorOf<double, kLanes>::Aligned;
  using Floats = VectorOf<float, kLanes>;
  WindowSums<double, float, kLanes, !kIsExact> windows(box.samples, box.width, box.beside);
  float highs[kRun];
  const auto store = [](float* to, const Doubles& means) {
    *reinterpret_cast<typename Floats::Anywhere*>(to) = __builtin_convertvector(means, typename Floats::Aligned);
  };
  const auto divide = [&](int i, int run, const Doubles& divisors) {
    if constexpr (kIsExact) {
      store(box.means + i, windows.sums / divisors);
    } else {
      const Doubles inverses = 1.0 / divisors;
      const Doubles means = windows.sums * inverses;
      const Doubles off = box.bound * inverses + kQuotientError * (means < 0 ? -means : means);
      store(box.means + i, means - off);
      store(highs + (i - run), means + off);
    }
    windows.Advance(box.samples + i);
  };
  const auto slide = [&](const auto& divideAt) {
    for (int run = 0; run < box.count; run += kRun) {
      const int end = std::min(run + kRun, box.count);
      for (int i = run; i < end; i += kLanes) divideAt(i, run);
      if constexpr (!kIsExact) FindOpen(box.means + run, highs, run, end - run, *box.open);
    }
  };
  if (box.nulls == nullptr) {
    const Doubles divisors = Doubles{} + box.divisor;
    slide([&](int i, int run) __attribute__((always_inline)) { divide(i, run, divisors); });
    return;
  }
  WindowSums<std::int32_t, std::int32_t, kLanes, false> missing(box.nulls, box.width, 0);
  slide([&](int i, int run) __attribute__((always_inline)) {
    divide(i, run, static_cast<double>(box.width) - __builtin_convertvector(missing.sums, Doubles));
    missing.Advance(box.nulls + i);
  });
}

template <int kLanes>
[[gnu::always_inline]] inline void Slide(const Box& box) {
  if (box.bound == 0) {
    Slide<kLanes, true>(box);
  } else {
    Slide<kLanes, false>(box);
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

bool CBoxMeans::Fit(const float* samples, int count) {
  samples_ = samples;
  open_.clear();
  return grid_.Fit({samples, static_cast<std::size_t>(count) + static_cast<std::size_t>(width_) - 1}, width_);
}

bool CBoxMeans::Run(const float* samples, double divisor, float* means, int count) {
  if (!Fit(samples, count)) return false;
  SlideMeans({samples, nullptr, width_, divisor, grid_.GetBeside(), grid_.GetBound(), means, &open_, count});
  return true;
}

bool CBoxMeans::RunAroundNulls(const float* samples, const bvector& mask, int first, float* means, int count) {
  const int loaded = count + width_ - 1;
  const auto room = static_cast<std::size_t>(loaded) + kAhead;
  copy_.assign(samples, samples + room);
  nulls_.assign(room, 0);
  for (int i = 0; i < loaded; i += kMaskWord) {
    for (auto bits = LoadBits(mask, first + i, std::min(kMaskWord, loaded - i)); bits != 0; bits &= bits - 1) {
      const auto at = static_cast<std::size_t>(i + std::countr_zero(bits));
      copy_[at] = 0;
      nulls_[at] = 1;
    }
  }
  if (!Fit(copy_.data(), count)) return false;
  SlideMeans({copy_.data(), nulls_.data(), width_, 0, grid_.GetBeside(), grid_.GetBound(), means, &open_, count});
  return true;
}

}  // namespace tallyscope
