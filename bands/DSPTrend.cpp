// SPDX-License-Identifier: MIT
#include "bands/DSPTrend.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "bands/BandRegression.h"
#include "bands/BandWalk.h"
#include "spatial/Stats_Spatial.h"
#include "statistics/Stats_Univariate.h"

namespace tallyscope {

namespace {

constexpr std::size_t kLineCoefficients = 2;
constexpr std::size_t kPlaneCoefficients = 9;

bool IsPlane(int axes) {
  return axes == 3 || axes == 5 || axes == 6;
}

// The two co-ordinate fields of the axes.
std::array<int, 2> GetPlaneFields(int axes) {
  if (axes == 5) return {-1, -3};
  if (axes == 6) return {-2, -3};
  return {-1, -2};
}

int GetAxes(const CDSPOperation& operation, const CDSPOperationData& input) {
  return operation.axes != 0 ? operation.axes : input.GetAxes();
}

double GetStatistic(const CStats_Univariate& figures, int statistic) {
  switch (statistic) {
    case CDSPTrend::kMedian:
      return figures.median;
    case CDSPTrend::kMode:
      return figures.mode;
    case CDSPTrend::kMinimum:
      return figures.minimum;
    case CDSPTrend::kMaximum:
      return figures.maximum;
    default:
      return figures.mean;
  }
}

std::vector<double> FitConstant(CStats_DSPData& table, int band, int statistic) {
  constexpr int kBasic = 1;
  constexpr int kBinnedQuantiles = 8;
  CStats_Univariate figures;
  figures.Add(&table, band);
  const bool quantile = statistic == CDSPTrend::kMedian || statistic == CDSPTrend::kMode;
  figures.Calculate(quantile ? kBinnedQuantiles : kBasic, nullptr);
  return {GetStatistic(figures, statistic)};
}

std::vector<double> FitPlane(CStats_DSPData& table, int band, int axes) {
  constexpr int kSurfaceFit = 8;
  const auto fields = GetPlaneFields(axes);
  CStats_Spatial fit;
  fit.Add(&table, band);
  fit.SetSpatialDims(fields[0], fields[1], -3, 2);
  fit.Calculate(kSurfaceFit, nullptr);
  return {fit.fitA, fit.fitB, fit.fitC, fit.xMin, fit.xRange, fit.yMin, fit.yRange, fit.valueMin, fit.valueRange};
}

double GetPlaneAt(const std::vector<double>& c, double u, double v) {
  return ((u - c[3]) / c[4] * c[1] + c[0] + (v - c[5]) / c[6] * c[2]) * c[8] + c[7];
}

// y = f(x, t), t the sample's linear index in the input, for the samples of a line along x that are no null.
template <class Formula>
void MapIndexedLine(const DSPLine& line, const Formula& f) {
  const CDSPDataBand& in = line.In();
  CDSPDataBand& out = line.Out();
  WithSamples(in, line.overlap->input->data->elementType, 0, [&](const auto* from) {
    WithSamples(out, line.overlap->output->data->elementType, static_cast<std::size_t>(line.outFirst),
                [&]<class Out>(Out* to) {
                  for (int first = 0; first < line.count; first += kMaskWord) {
                    const int count = std::min(kMaskWord, line.count - first);
                    const auto nulls = in.mask == nullptr ? 0 : LoadBits(*in.mask, line.inFirst + first, count);
                    for (int i = 0; i < count; ++i) {
                      const int t = line.inFirst + first + i;
                      to[first + i] = static_cast<Out>(f(static_cast<double>(from[t]), t));
                    }
                    for (auto left = nulls; left != 0; left &= left - 1) {
                      to[first + std::countr_zero(left)] = static_cast<Out>(out.nullValue);
                    }
                    StoreBits(*out.mask, line.outFirst + first, count, nulls);
                  }
                });
  });
}

}  // namespace

CDSPTrend::CDSPTrend() {
  dimension = 0;
  inputFlags = kExactInputs;
  outputFlags = kExactOutputs;
}

bool CDSPTrend::ProcessAny(CDSPProgress* progress) {
  if (storage == nullptr) return false;
  if (restore == 0) FitBands();
  if (!WalkLines(*this, 0, progress, [&](const DSPLine& line) { ApplyTo(line); })) return false;
  restore = restore == 0 ? 1 : 0;
  return true;
}

void CDSPTrend::FitBands() {
  coefficients.clear();
  for (const DSPOverlap& overlap : GetOverlaps(*this)) {
    for (const DSPBandPair& pair : overlap.bands) {
      const auto band = static_cast<std::size_t>(pair.band);
      coefficients.resize(std::max(coefficients.size(), band + 1));
      coefficients[band] = FitBand(*overlap.input->data, pair.band, GetAxes(*this, *overlap.input));
    }
  }
}

std::vector<double> CDSPTrend::FitBand(CDSPData& data, int band, int spanned) const {
  CStats_DSPData table(&data);
  if (method == kConstant) return FitConstant(table, band, statistic);
  if (method != kLinear || spanned == 7) return {};
  if (IsPlane(spanned)) return FitPlane(table, band, spanned);
  const BandRegression line = RegressOnIndex(data, band);
  return {line.slope, line.intercept};
}

void CDSPTrend::ApplyTo(const DSPLine& line) const {
  const auto band = static_cast<std::size_t>(line.pair->band);
  const std::vector<double> none;
  const std::vector<double>& c = band < coefficients.size() ? coefficients[band] : none;
  const auto map = [&](auto trend) {
    if (restore == 0) {
      MapIndexedLine(line, [&](double x, int t) { return x - trend(t); });
    } else {
      MapIndexedLine(line, [&](double x, int t) { return x + trend(t); });
    }
  };
  if (c.size() == kPlaneCoefficients) {
    const auto fields = GetPlaneFields(GetAxes(*this, *line.overlap->input));
    CStats_DSPData table(line.overlap->input->data);
    map([&](int t) { return GetPlaneAt(c, table.GetValue(fields[0], t), table.GetValue(fields[1], t)); });
  } else if (c.size() == kLineCoefficients) {
    map([slope = c[0], intercept = c[1]](int t) { return t * slope + intercept; });
  } else {
    map([constant = c.empty() ? 0.0 : c[0]](int) { return constant; });
  }
}

}  // namespace tallyscope
