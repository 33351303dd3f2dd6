// SPDX-License-Identifier: MIT
// Threads that work on tables of their own share nothing that one of them changes: no cache, no counter, no buffer
// behind the calculators. Under ThreadSanitizer a shared write fails; without it the figures would differ.
#include <gtest/gtest.h>

#include <array>
#include <thread>
#include <vector>

#include "conditioning/Stats_Conditioning.h"
#include "platform/core/NumberText.h"
#include "spatial/Stats_SampleVariogram.h"
#include "spatial/Stats_VariogramData.h"
#include "statistics/Stats_Univariate.h"
#include "statistics/bvector.h"
#include "tests/support/Made.h"

namespace tallyscope {
namespace {

constexpr int kStations = 2000;

// One of everything that is computed, as text.
CString ComputeAll() {
  CMadeTable table({made::Normal(kStations, 0, 100, 1), made::Normal(kStations, 0, 100, 2),
                    made::WithNulls(made::Normal(kStations, 10, 2, 3), made::Every(7))},
                   2);
  CString text;
  const auto add = [&](double value) { text += FormatGeneral(value, 17) + " "; };
  CStats_Univariate figures;
  figures.Add(&table, 0);
  figures.Calculate(15, nullptr);
  for (const double value : {figures.mean, figures.skewness, figures.median, figures.binnedMode}) add(value);
  CStats_SampleVariogram variogram;
  variogram.Add(&table, 0);
  variogram.ResetSpatialDims();
  variogram.CalcVariogram(0, 100, -1, nullptr);
  CStats_VariogramData curve;
  EXPECT_TRUE(variogram.GetVariogramData(curve, 45, 0, 22.5));
  for (int lag = 0; lag < curve.GetSize(); ++lag) {
    for (int column = 0; column < curve.GetValueSize(); ++column) add(curve.GetValue(column, lag));
  }
  CStats_Conditioning rules;
  rules.operatorsUsed = true;
  rules.AddOperator(CStats_Operator::kFillNull, "");
  rules.AddOperator(CStats_Operator::kMovingAverage, "11");
  std::vector<float> samples(kStations);
  bvector nulls(kStations);
  for (int i = 0; i < kStations; ++i) {
    samples[static_cast<std::size_t>(i)] = static_cast<float>(table.GetValue(0, i));
    nulls.Set(i, i % 7 == 0);
  }
  EXPECT_EQ(rules.ProcessOperations(samples.data(), &nulls, kStations), 1);
  for (const float sample : samples) add(static_cast<double>(sample));
  return text;
}

TEST(OwnTables, ThreadsShareNothing) {
  std::array<CString, 4> found;
  std::vector<std::thread> threads;
  for (auto& text : found) threads.emplace_back([&text] { text = ComputeAll(); });
  for (auto& thread : threads) thread.join();
  const CString alone = ComputeAll();
  for (const auto& text : found) EXPECT_EQ(text, alone);
}

}  // namespace
}  // namespace tallyscope
