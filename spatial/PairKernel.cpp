// SPDX-License-Identifier: MIT
#include "spatial/PairKernel.h"

#include <algorithm>
#include <cmath>

#define TALLYSCOPE_INLINE [[gnu::always_inline]] inline

namespace tallyscope::pair_kernel {

namespace {

// In place of a cell: too far, and not sure. A bit tells whether there is one that isn't sure among many.
constexpr std::int32_t kOutside = -0x7fffffff - 1;
constexpr std::int32_t kDoubt = 0x40000000;
constexpr std::int32_t kDoubtful = kOutside | kDoubt;

using Two [[gnu::vector_size(16), gnu::may_alias]] = double;

// The functions below are straight lines of code without a call, so that the loops over them become vector code; the
// conditions are numbers for that.

TALLYSCOPE_INLINE float Truncate(float value) {
  return static_cast<float>(static_cast<std::int32_t>(value));
}

TALLYSCOPE_INLINE int IsNearBorder(float place, float bin, float guard) {
  return std::fabs(place - bin - 0.5f) > guard ? 1 : 0;
}

// The angle of (x, y), neither negative, in bins; `quarter` bins are 90 degrees.
TALLYSCOPE_INLINE float GetAngle(float x, float y, const float* terms, float quarter) {
  constexpr float kLeast = 1e-30f;
  const float larger = x > y ? x : y;
  const float smaller = x > y ? y : x;
  const float ratio = smaller / (larger > kLeast ? larger : kLeast);
  const float square = ratio * ratio;
  const float angle =
      ratio * (terms[0] + square * (terms[1] + square * (terms[2] + square * (terms[3] + square * terms[4]))));
  return y > x ? quarter - angle : angle;
}

TALLYSCOPE_INLINE float FlipSign(float value, float by, std::uint32_t mask) {
  return __builtin_bit_cast(float,
                            __builtin_bit_cast(std::uint32_t, value) ^ (__builtin_bit_cast(std::uint32_t, by) & mask));
}

constexpr std::uint32_t kSign = 0x80000000;

// `lag` counts lags, `dx` and `dy` are the horizontal part.
struct PolarPlace {
  float lag;
  float row;
  int doubtful;
};

TALLYSCOPE_INLINE PolarPlace GetPolarPlace(const Estimate& e, float dx, float dy, float horizontal, float distance) {
  const float farthest = e.lags + 0.5f;
  const float lags = distance < farthest ? distance : farthest;  // NaN is far off as well
  const float lag = Truncate(lags);
  const float ax = std::fabs(dx);
  const float ay = std::fabs(dy);
  float angle = GetAngle(ax, ay, e.azimuthTerms, e.azimuthQuarter);
  angle = FlipSign(dx, dy, kSign) < 0 ? e.azimuthHalf - angle : angle;
  angle = dy < 0 ? angle + e.azimuthTurn : angle;
  angle = angle < 2 * e.azimuthHalf ? angle : 2 * e.azimuthHalf;
  const float row = Truncate(angle);
  const int doubtful = IsNearBorder(lags, lag, e.lagGuard) | IsNearBorder(angle, row, e.azimuthGuard) |
                       (horizontal < e.nearSquare ? 1 : 0);
  return {lag, row, doubtful};
}

TALLYSCOPE_INLINE std::int32_t Conclude(float cell, int doubtful, int outside) {
  const auto number = static_cast<std::int32_t>(cell);
  const std::int32_t sure = outside != 0 ? kOutside : number;
  return doubtful != 0 ? kDoubtful : sure;
}

template <Shape kShape>
TALLYSCOPE_INLINE std::int32_t EstimateCell(const Run& run, const Estimate& e, int j) {
  const float dx = run.offsets[0][j] - run.from[0];
  const float dy = run.offsets[1][j] - run.from[1];
  if constexpr (kShape == Shape::kPlane) {
    const float square = dx * dx + dy * dy;
    const PolarPlace place = GetPolarPlace(e, dx, dy, square, std::sqrt(square));
    return Conclude(place.row * e.columns + place.lag, place.doubtful, place.lag >= e.lags ? 1 : 0);
  } else if constexpr (kShape == Shape::kSolid) {
    const float dz = run.offsets[2][j] - run.from[2];
    const float square = dx * dx + dy * dy;
    const PolarPlace place = GetPolarPlace(e, dx, dy, square, std::sqrt(square + dz * dz));
    const float steep = GetAngle(std::sqrt(square), std::fabs(dz), e.dipTerms, e.dipHalf);
    float dip = FlipSign(dz, dy, e.flip) < 0 ? e.dipHalf - steep : e.dipHalf + steep;
    dip = dip < 2 * e.dipHalf ? dip : 2 * e.dipHalf;
    const float level = Truncate(dip);
    const int doubtful = place.doubtful | IsNearBorder(dip, level, e.dipGuard);
    return Conclude(level * e.plane + place.row * e.columns + place.lag, doubtful, place.lag >= e.lags ? 1 : 0);
  } else {
    const float dz = run.offsets[2][j] - run.from[2];
    const float separation[3] = {FlipSign(dx, dy, kSign), std::fabs(dy), FlipSign(dz, dy, kSign)};
    float bins[3];
    int doubtful = 0;
    int outside = 0;
    for (int axis = 0; axis < 3; ++axis) {
      const float farthest = e.last[axis] + 1.5f;
      const float there = separation[axis] + e.before[axis];
      const float least = there > 0.5f ? there : 0.5f;
      const float place = least < farthest ? least : farthest;
      bins[axis] = Truncate(place);
      doubtful |= IsNearBorder(place, bins[axis], e.guard[axis]);
      outside |= (bins[axis] < 1 ? 1 : 0) | (bins[axis] > e.last[axis] ? 1 : 0);
    }
    return Conclude((bins[2] - 1) * e.plane + (bins[1] - 1) * e.columns + (bins[0] - 1), doubtful, outside);
  }
}

// By the plain formula.
[[gnu::noinline]] void DecideDoubts(const Run& run, std::int32_t* cells) {
  int doubtful[LagStations::kBlock];
  int count = 0;
  for (int j = 0; j < run.count; ++j) {
    doubtful[count] = j;
    count += static_cast<int>(cells[j] == kDoubtful);
  }
  for (int k = 0; k < count; ++k) {
    const int j = doubtful[k];
    cells[j] = run.binning->GetCell(run.places[0][j] - run.place[0], run.places[1][j] - run.place[1],
                                    run.places[2][j] - run.place[2]);
  }
}

// Adds pairs to their cells: the covariance in the lower half of a register, the moment in the upper. A copy of what it
// reads of the run, since the sums could be any memory and the run would be read again for each pair.
class Adder {
 public:
  TALLYSCOPE_INLINE explicit Adder(const Run& run)
      : values_(run.values),
        sums_(run.sums),
        pairs_(run.pairs),
        zeroAndRaw_{0.0, run.value.raw},
        centred_(run.value.centred) {}

  TALLYSCOPE_INLINE void Add(int j, std::int32_t cell) const {
    const Two there = {values_[j].centred, values_[j].raw};
    const Two less = there - zeroAndRaw_;
    const Two with = {centred_, less[1]};
    *reinterpret_cast<Two*>(sums_ + cell) += less * with;
    ++pairs_[cell];
  }

 private:
  const LagStations::Value* values_;
  Sums* sums_;
  std::uint32_t* pairs_;
  Two zeroAndRaw_;
  double centred_;
};

template <Shape kShape>
TALLYSCOPE_INLINE void AddRun(const Run& run) {
  constexpr int kStep = LagStations::kSpare;
  alignas(64) std::int32_t cells[LagStations::kBlock + 2 * kStep];
  const Estimate estimate = *run.estimate;
  const int count = run.count;
  const int padded = (count + kStep - 1) / kStep * kStep;
  for (int j = 0; j < padded; ++j) cells[j] = EstimateCell<kShape>(run, estimate, j);
  for (int j = count; j < count + kStep; ++j) cells[j] = 0;
  std::int32_t all = 0;
  for (int j = 0; j < padded; ++j) all |= cells[j];

  const Adder adder(run);
  if (all >= 0) {
    for (int j = 0; j < count; ++j) adder.Add(j, cells[j]);
    return;
  }
  if ((all & kDoubt) != 0) DecideDoubts(run, cells);
  std::int32_t inside[LagStations::kBlock];
  int insideCount = 0;
  for (int j = 0; j < count; ++j) {
    inside[insideCount] = j;
    insideCount += static_cast<int>(cells[j] >= 0);
  }
  for (int k = 0; k < insideCount; ++k) adder.Add(inside[k], cells[inside[k]]);
}

template <Shape kShape>
void AddRunPlain(const Run& run) {
  AddRun<kShape>(run);
}

#if defined(__x86_64__)
template <Shape kShape>
[[gnu::target("avx2")]] void AddRunAvx2(const Run& run) {
  AddRun<kShape>(run);
}

#if defined(__clang__)
#define TALLYSCOPE_AVX512 "avx2,avx512f,avx512vl,avx512bw,avx512dq"
#else
#define TALLYSCOPE_AVX512 "avx2,avx512f,avx512vl,avx512bw,avx512dq,prefer-vector-width=512"
#endif

template <Shape kShape>
[[gnu::target(TALLYSCOPE_AVX512)]] void AddRunAvx512(const Run& run) {
  AddRun<kShape>(run);
}
#endif

template <Shape kShape>
Kernel ChooseKernel([[maybe_unused]] Level level) {
#if defined(__x86_64__)
  if (level == Level::kAvx512) return AddRunAvx512<kShape>;
  if (level == Level::kAvx2) return AddRunAvx2<kShape>;
#endif
  return AddRunPlain<kShape>;
}

}  // namespace

Level GetBestLevel() {
#if defined(__x86_64__)
  const bool avx2 = __builtin_cpu_supports("avx2");
  if (avx2 && __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512vl") &&
      __builtin_cpu_supports("avx512bw") && __builtin_cpu_supports("avx512dq")) {
    return Level::kAvx512;
  }
  if (avx2) return Level::kAvx2;
#endif
  return Level::kPlain;
}

Kernel GetKernel(Shape shape, Level level) {
  level = std::min(level, GetBestLevel());
  if (shape == Shape::kPlane) return ChooseKernel<Shape::kPlane>(level);
  return shape == Shape::kSolid ? ChooseKernel<Shape::kSolid>(level) : ChooseKernel<Shape::kBoxes>(level);
}

}  // namespace tallyscope::pair_kernel
