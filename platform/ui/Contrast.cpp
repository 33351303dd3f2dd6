// SPDX-License-Identifier: MIT
#include "platform/ui/Contrast.h"

#include <algorithm>
#include <cmath>

namespace tallyscope {

namespace {

constexpr double kReadable = 4.5;

double Linear(double channel) {
  return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double Luminance(const QColor& colour) {
  return 0.2126 * Linear(colour.redF()) + 0.7152 * Linear(colour.greenF()) + 0.0722 * Linear(colour.blueF());
}

}  // namespace

double Contrast(const QColor& one, const QColor& other) {
  const auto [dark, light] = std::minmax({Luminance(one), Luminance(other)});
  return (light + 0.05) / (dark + 0.05);
}

QColor ReadableOn(const QColor& background, const QColor& wanted) {
  if (Contrast(background, wanted) >= kReadable) return wanted;
  return Contrast(background, Qt::black) >= Contrast(background, Qt::white) ? Qt::black : Qt::white;
}

QColor Mixed(const QColor& from, const QColor& to, double part) {
  const auto mix = [&](int a, int b) { return static_cast<int>(std::lround(a + (b - a) * part)); };
  return QColor(mix(from.red(), to.red()), mix(from.green(), to.green()), mix(from.blue(), to.blue()));
}

}  // namespace tallyscope
