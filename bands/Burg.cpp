// SPDX-License-Identifier: MIT
#include "bands/Burg.h"

#include <algorithm>
#include <cstddef>
#include <type_traits>

namespace tallyscope {

namespace {

using DoublePair = double __attribute__((vector_size(16)));

// One fit in plain doubles, or two in the lanes of pairs. A lane is a double's own arithmetic.
template <class Number>
class Recursion {
 public:
  static constexpr std::size_t kLanes = std::is_same_v<Number, double> ? 1 : 2;
  using Tasks = std::array<BurgTask, kLanes>;
  using Predictors = std::array<BurgPredictor*, kLanes>;

  Recursion(const Tasks& tasks, const Predictors& predictors) : predictors_(predictors) {
    for (std::size_t l = 0; l < kLanes; ++l) {
      pairs_[l] = tasks[l].samples.size() - 1;
      predictors[l]->count = tasks[l].order;
      for (std::size_t j = 0; j < pairs_[l]; ++j) {
        Set(forward_[j], l, tasks[l].samples[j]);
        Set(backward_[j], l, tasks[l].samples[j + 1]);
      }
    }
    Pass([](std::size_t) {}, [](std::size_t, std::size_t) {});
  }

  void Run() {
    int orders = 0;
    for (const BurgPredictor* predictor : predictors_) orders = std::max(orders, predictor->count);
    for (int k = 0; k < orders; ++k) {
      for (std::size_t l = 0; l < kLanes; ++l) Reflect(k, l);
      // The errors of the next order, and its sums on the way.
      Pass(
          [&](std::size_t j) {
            forward_[j] -= reflection_ * backward_[j];
            backward_[j] = backward_[j + 1] - reflection_ * forward_[j + 1];
          },
          [&](std::size_t j, std::size_t l) {
            const double r = Get(reflection_, l);
            Set(forward_[j], l, Get(forward_[j], l) - r * Get(backward_[j], l));
            Set(backward_[j], l, Get(backward_[j + 1], l) - r * Get(forward_[j + 1], l));
          });
    }
  }

 private:
  static double Get(const Number& number, std::size_t lane) {
    if constexpr (kLanes == 1) {
      return number;
    } else {
      return number[lane];
    }
  }
  static void Set(Number& number, std::size_t lane, double value) {
    if constexpr (kLanes == 1) {
      number = value;
    } else {
      number[lane] = value;
    }
  }

  // Sums over the pairs, each after `update`: over all lanes as far as all have pairs, over one lane beyond.
  template <class Update, class UpdateLane>
  void Pass(Update update, UpdateLane updateLane) {
    const std::size_t common = *std::min_element(pairs_.begin(), pairs_.end());
    Number products{};
    Number squares{};
    for (std::size_t j = 0; j < common; ++j) {
      update(j);
      const Number f = forward_[j];
      const Number b = backward_[j];
      products += f * b;
      squares += f * f + b * b;
    }
    for (std::size_t l = 0; l < kLanes; ++l) {
      double product = Get(products, l);
      double square = Get(squares, l);
      for (std::size_t j = common; j < pairs_[l]; ++j) {
        updateLane(j, l);
        const double f = Get(forward_[j], l);
        const double b = Get(backward_[j], l);
        product += f * b;
        square += f * f + b * b;
      }
      products_[l] = product;
      squares_[l] = square;
    }
  }

  // The next coefficient of a fit, and what it makes of those before; one pair is left out from here on.
  void Reflect(int k, std::size_t l) {
    if (k >= predictors_[l]->count) {
      pairs_[l] = 0;
      return;
    }
    auto& c = predictors_[l]->coefficients;
    const double reflection = squares_[l] == 0 && products_[l] == 0 ? 0.0 : 2 * products_[l] / squares_[l];
    std::array<double, BurgPredictor::kMaxOrder> before;
    std::copy_n(c.begin(), k, before.begin());
    const auto last = static_cast<std::size_t>(k);
    c[last] = reflection;
    for (std::size_t i = 0; i < last; ++i) c[i] = before[i] - reflection * before[last - 1 - i];
    Set(reflection_, l, reflection);
    if (pairs_[l] > 0) --pairs_[l];
  }

  Predictors predictors_;
  std::array<std::size_t, kLanes> pairs_{};
  std::array<double, kLanes> products_{};
  std::array<double, kLanes> squares_{};
  Number reflection_{};
  // The errors of predicting forward and backward, in pairs.
  Number forward_[BurgPredictor::kMaxSamples];
  Number backward_[BurgPredictor::kMaxSamples];
};

}  // namespace

BurgPredictor::Error BurgTask::Check() const {
  if (order > BurgPredictor::kMaxOrder) return BurgPredictor::kOrderTooHigh;
  if (order < 2) return BurgPredictor::kOrderTooLow;
  if (samples.size() > BurgPredictor::kMaxSamples) return BurgPredictor::kTooManySamples;
  return samples.size() < 2 ? BurgPredictor::kTooFewSamples : BurgPredictor::kNone;
}

BurgPredictor::Error BurgPredictor::Fit(std::span<const double> samples, int order) {
  const BurgTask task{samples, order};
  const Error error = task.Check();
  if (error == kNone) Recursion<double>({task}, {this}).Run();
  return error;
}

void FitTwo(const BurgTask& one, BurgPredictor& first, const BurgTask& other, BurgPredictor& second) {
  Recursion<DoublePair>({one, other}, {&first, &second}).Run();
}

}  // namespace tallyscope
