// SPDX-License-Identifier: MIT
// The mean curve of a model in space, 50 lags in 648 directions, beside the same sums with the directions and the curve
// written out by hand.
#include <benchmark/benchmark.h>

#include <cmath>
#include <numbers>
#include <vector>

#include "spatial/Stats_ModelVariogram.h"
#include "spatial/Stats_VariogramData.h"

namespace tallyscope {
namespace {

constexpr int kLags = 50;
constexpr double kRange = 1000;

CStats_ModelVariogram MakeModel() {
  const NestShape shape = {
      .sill = 10, .primaryRange = 500, .minorRange = 200, .depthRange = 50, .strike = 30, .plunge = 10, .dip = 20};
  CStats_ModelVariogram model;
  model.SetIsotropicNugget(2);
  model.AddNest() = CModelVariogram::Spherical(shape);
  model.AddNest() = CModelVariogram::Exponential(shape);
  model.Update(3);
  return model;
}

std::vector<Point3> ListDirections() {
  std::vector<Point3> directions;
  for (int bearing = 0; bearing < 360; bearing += 10) {
    for (int dip = 90; dip >= -80; dip -= 10) {
      const double d = bearing * std::numbers::pi / 180, e = dip * std::numbers::pi / 180;
      directions.push_back({std::sin(d) * std::cos(e), std::cos(d) * std::cos(e), -std::sin(e)});
    }
  }
  return directions;
}

// Both nests have one transform, and distance grows along a direction, so one length a direction serves all.
std::vector<double> AverageByHand(const CStats_ModelVariogram& model, const std::vector<Point3>& directions) {
  const auto& m = model.transforms.front();
  std::vector<double> curve(kLags, 0.0);
  for (const auto& v : directions) {
    double squares = 0;
    for (std::size_t i = 0; i < 3; ++i) {
      const double x = m[i][0] * v[0] + m[i][1] * v[1] + m[i][2] * v[2];
      squares += x * x;
    }
    const double length = std::sqrt(squares) / 500;
    for (std::size_t i = 0; i < kLags; ++i) {
      const double q = length * (static_cast<double>(i) + 0.5) * kRange / kLags;
      const double spherical = q < 1 ? 1.5 * q - 0.5 * q * q * q : 1;
      curve[i] += 2 + 10 * spherical + 10 * (1 - std::exp(-3 * q));
    }
  }
  for (double& value : curve) value /= static_cast<double>(directions.size());
  return curve;
}

void AveragedFloor(benchmark::State& state) {
  const auto model = MakeModel();
  const auto directions = ListDirections();
  for (auto _ : state) benchmark::DoNotOptimize(AverageByHand(model, directions));
}
BENCHMARK(AveragedFloor)->Unit(benchmark::kMicrosecond);

void Averaged(benchmark::State& state) {
  const auto model = MakeModel();
  CStats_VariogramData curve;
  for (auto _ : state) model.GetAveragedData(curve, kLags, kRange);
  const auto byHand = AverageByHand(model, ListDirections());
  for (std::size_t i = 0; i < kLags; ++i) {
    if (std::fabs(curve.momentOfInertia[i + 1] - byHand[i]) > 1e-10 * byHand[i]) state.SkipWithError("wrong curve");
  }
}
BENCHMARK(Averaged)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace tallyscope
