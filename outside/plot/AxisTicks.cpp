// SPDX-License-Identifier: MIT
#include "outside/plot/AxisTicks.h"

#include <algorithm>
#include <cmath>

#include "outside/plot/Span.h"
#include "platform/core/NumberText.h"

namespace tallyscope {

namespace {

constexpr int kMostMajors = 8;
constexpr double kLeastApart = 4;    // pixels between powers of ten; nearer ones have no tick of their own
constexpr double kMostSteps = 1e14;  // from zero to the range: beyond, a step is lost in the rounding of its ends
constexpr int kEndDigits = 6;
constexpr int kLongLabel = 5;  // characters; longer ones have a power of ten pulled out where that shortens them

struct RoundStep {
  double step = 1;
  int decimals = 0;  // that show it exactly
  int minors = 5;    // parts of a step
};

// An infinite step where no number is as large as it would be.
RoundStep FindStep(double low, double high, int most) {
  static constexpr struct {
    double factor;
    int decimals;
    int minors;
  } kKinds[] = {{1, 0, 5}, {2, 0, 4}, {2.5, 1, 5}, {5, 0, 5}, {10, -1, 5}};
  const double least = HalfSpan(low, high) / most * 2;
  const int power = static_cast<int>(std::floor(std::log10(least)));
  const double unit = std::pow(10.0, power);
  for (const auto& kind : kKinds) {
    if (kind.factor * unit >= least * (1 - 1e-9)) {
      return {kind.factor * unit, kind.decimals - power, kind.minors};
    }
  }
  return {10 * unit, -1 - power, 5};
}

CString MakeLabel(double value, int decimals) {
  CString text = FormatFixed(value, std::max(decimals, 0));
  if (text.find_first_not_of("-0.") == CString::npos) text = "0";
  return ToLocale(text);
}

// The power of ten, a multiple of three, by which labels get shorter.
int FindExponent(double low, double high, const RoundStep& step) {
  const double largest = std::max(std::abs(low), std::abs(high));
  if (!(largest > 0)) return 0;
  const auto length = [&](int exponent) {
    return MakeLabel(largest / std::pow(10.0, exponent), step.decimals + exponent).size();
  };
  const int exponent = 3 * static_cast<int>(std::floor(std::log10(largest) / 3));
  const bool isLong = length(0) > kLongLabel;
  return isLong && length(exponent) + 1 < length(0) ? exponent : 0;
}

CString FindLongest(const AxisTicks& made) {
  CString longest;
  for (const auto& tick : made.ticks) {
    if (tick.label.size() > longest.size()) longest = tick.label;
  }
  return longest;
}

// The ends alone, for a range that is all rounding: no round values lie between them that one could tell apart.
AxisTicks MakeEnds(double low, double high) {
  AxisTicks made;
  for (const double end : {low, high}) made.ticks.push_back({end, ToLocale(FormatGeneral(end, kEndDigits))});
  return made;
}

AxisTicks MakeEven(double low, double high, int most) {
  const RoundStep step = FindStep(low, high, most);
  if (!std::isfinite(step.step)) return MakeEnds(low, high);
  AxisTicks made;
  made.exponent = FindExponent(low, high, step);
  const double power = std::pow(10.0, made.exponent);
  const double first = std::floor(low / step.step);
  const double last = std::ceil(high / step.step);
  if (!(std::max(std::abs(first), std::abs(last)) < kMostSteps)) return MakeEnds(low, high);
  const double slack = HalfSpan(low, high) * 1e-9 * 2;
  const int count = static_cast<int>(last - first);
  for (int major = 0; major <= count; ++major) {
    const double i = first + major;
    for (int minor = 0; minor < step.minors; ++minor) {
      const double value = (i + double(minor) / step.minors) * step.step;
      if (!std::isfinite(value) || value < low - slack || value > high + slack) continue;
      made.ticks.push_back({value, minor == 0 ? MakeLabel(value / power, step.decimals + made.exponent) : CString()});
    }
  }
  return made;
}

CString MakePowerLabel(int power, bool negative) {
  const CString sign = negative ? "-" : "";
  if (power >= -3 && power <= 4) return sign + ToLocale(FormatGeneral(std::pow(10.0, power), 6));
  return sign + "1e" + std::to_string(power);
}

// Zero and every `stride`th power of ten at and beyond the band, both signs. `hasFirst`: the lowest power, which stands
// next to zero however large the stride, has room for a label.
AxisTicks MakePowers(double low, double high, const AxisMap& map, int stride, bool hasFirst) {
  AxisTicks made;
  if (low <= 0 && high >= 0) made.ticks.push_back({0, "0"});
  const double largest = std::max(std::abs(low), std::abs(high));
  const int first = static_cast<int>(std::ceil(std::log10(map.band) - 1e-9));
  const int last = std::min(static_cast<int>(std::floor(std::log10(largest) + 1e-9)), 308);
  for (int power = first; power <= last; ++power) {
    const double value = std::pow(10.0, power);
    for (const double sign : {1.0, -1.0}) {
      const bool major = (power - first) % stride == 0 && (power > first || hasFirst);
      for (int times = 1; times <= 9; ++times) {
        const double at = sign * value * times;
        if (at < low || at > high || (times > 1 && stride > 1)) continue;
        made.ticks.push_back({at, times == 1 && major ? MakePowerLabel(power, sign < 0) : CString()});
      }
    }
  }
  return made;
}

int CountMajors(const AxisTicks& made) {
  return static_cast<int>(
      std::count_if(made.ticks.begin(), made.ticks.end(), [](auto& each) { return each.IsMajor(); }));
}

}  // namespace

AxisTicks MakeAxisTicks(double low, double high, const AxisMap& map, double pixels,
                        const std::function<bool(const CString&, double)>& fits) {
  if (!std::isfinite(low) || !std::isfinite(high) || !(high > low) || pixels < 1) return {};
  if (map.IsLogarithmic()) {
    const double span = map.ToData(high) - map.ToData(low);
    const double perUnit = pixels / span;
    const double firstPower = std::pow(10.0, std::ceil(std::log10(map.band) - 1e-9));
    const bool hasZero = low <= 0 && high >= 0;
    const bool hasFirst = !hasZero || fits("-1", perUnit * map.ToData(firstPower));
    for (int stride = 1; stride <= 512; stride *= 2) {
      auto made = MakePowers(low, high, map, stride, hasFirst);
      if (perUnit < kLeastApart) std::erase_if(made.ticks, [](const auto& tick) { return !tick.IsMajor(); });
      if (CountMajors(made) < 2) break;
      if (CountMajors(made) <= 2 * kMostMajors && fits(FindLongest(made), perUnit * stride)) return made;
    }
  }
  AxisTicks made;
  for (int most = kMostMajors; most >= 2; --most) {
    made = MakeEven(low, high, most);
    const double step = FindStep(low, high, most).step;
    if (fits(FindLongest(made), pixels * (step / 2 / HalfSpan(low, high)))) break;
  }
  return made;
}

}  // namespace tallyscope
