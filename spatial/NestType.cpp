// SPDX-License-Identifier: MIT
#include "spatial/NestType.h"

#include <cmath>
#include <numbers>

namespace tallyscope {

namespace {

using Nest = CModelVariogram;

double EvaluateNugget(const Nest& nest, double r) {
  return r == 0 ? 0.0 : nest.nugget;
}

double EvaluateLinear(const Nest& nest, double r) {
  return nest.nugget + nest.sill * r;
}

// At the range the polynomial is 1, but its terms may round to a neighbour of 1.
double EvaluateSpherical(const Nest& nest, double r) {
  const double a = nest.primaryRange;
  const double q = r / a;
  if (!(r <= a) || q == 1) return nest.nugget + nest.sill;
  return nest.nugget + nest.sill * (1.5 * r / a - 0.5 * (q * q * q));
}

double EvaluateExponential(const Nest& nest, double r) {
  return r == 0 ? nest.nugget : nest.nugget + nest.sill * (1.0 - std::exp(-3.0 * r / nest.primaryRange));
}

double EvaluateGaussian(const Nest& nest, double r) {
  const double a = nest.primaryRange;
  return r == 0 ? nest.nugget : nest.nugget + nest.sill * (1.0 - std::exp(-3.0 * (r * r) / (a * a)));
}

double EvaluatePower(const Nest& nest, double r) {
  return nest.nugget + nest.sill * std::pow(r, nest.power);
}

double EvaluateHole(const Nest& nest, double r) {
  return nest.nugget + nest.sill * (1.0 - std::cos(std::numbers::pi * r / nest.primaryRange));
}

double EvaluateDampedHole(const Nest& nest, double r) {
  const double wave = std::cos(std::numbers::pi * r / nest.primaryRange);
  return nest.nugget + nest.sill * (1.0 - wave * std::exp(-3.0 * r / nest.dampedRange));
}

double SillItself(const Nest& nest) {
  return nest.sill;
}

// Without a sill the curve's value at the range stands for it.
double SillOfLine(const Nest& nest) {
  return nest.sill * nest.primaryRange;
}

double SillOfPower(const Nest& nest) {
  return nest.sill * std::pow(nest.primaryRange, nest.power);
}

constexpr NestParameter kSill = {"Sill", &Nest::sill, "Sill"};
constexpr NestParameter kRange = {"Range", &Nest::primaryRange, "Range"};
constexpr NestParameter kPeak = {"Peak Range", &Nest::primaryRange, "Range"};
constexpr NestParameter kVariance = {"PositiveVariance", &Nest::sill};

constexpr NestType kTypes[] = {
    {"Pure Nugget", EvaluateNugget, SillItself, {{{"Nugget", &Nest::nugget, "Nugget"}}}, {kVariance}, false},
    {"Linear", EvaluateLinear, SillOfLine, {{{"Slope", &Nest::sill, "Slope"}}}, {{{"Slope", &Nest::sill}}}, true},
    {"Spherical", EvaluateSpherical, SillItself, {kSill, kRange}, {kVariance}, true},
    {"Exponential", EvaluateExponential, SillItself, {kSill, kRange}, {kVariance}, true},
    {"Gaussian", EvaluateGaussian, SillItself, {kSill, kRange}, {kVariance}, true},
    {"Power law",
     EvaluatePower,
     SillOfPower,
     {{{"Power", &Nest::power, "Power"}, {"Sill", &Nest::sill}}},
     {{kVariance, {"Power", &Nest::power}}},
     true},
    {"Hole effect", EvaluateHole, SillItself, {kSill, kPeak}, {kVariance}, true},
    {"Damped hole effect",
     EvaluateDampedHole,
     SillItself,
     {{kSill, kPeak, {"Damped Range", &Nest::dampedRange, "DampRange"}}},
     {{kVariance, {"DampedRange", &Nest::dampedRange}}},
     true},
};

}  // namespace

std::span<const NestType> GetNestTypes() {
  return kTypes;
}

const NestType* FindNestType(int number) {
  return number >= 0 && number < static_cast<int>(std::size(kTypes)) ? &kTypes[number] : nullptr;
}

}  // namespace tallyscope
