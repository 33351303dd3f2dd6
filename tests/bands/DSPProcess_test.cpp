// SPDX-License-Identifier: MIT
#include "bands/DSPProcess.h"

#include <gtest/gtest.h>

#include <limits>

#include "bands/DSPAGC.h"
#include "bands/DSPConvolution.h"
#include "bands/DSPLog.h"
#include "bands/DSPPower.h"
#include "bands/DSPTransform.h"
#include "bands/Stats_DSPData.h"
#include "statistics/Stats_Univariate.h"
#include "tests/bands/BandTesting.h"

namespace tallyscope {

namespace {

constexpr double kNull = std::numeric_limits<double>::quiet_NaN();

TEST(DSPData, ShapesAndIndices) {
  CDSPData data;
  data.SetDimensions(5, 0, 0);
  EXPECT_EQ(data.dimensionality, 1);
  EXPECT_EQ(data.sampleCount, 5);
  data.SetDimensions(4, 3, 2);
  EXPECT_EQ(data.dimensionality, 3);
  EXPECT_EQ(data.GetIndex(3, 2, 1), 23);
  data.SetDimensions(4, 3, 1);
  EXPECT_EQ(data.GetIndex(1, 2, 0), 9);
  EXPECT_FALSE(data.SetDimensions(1 << 16, 1 << 16, 2)) << "more samples than an int can count";
  EXPECT_EQ(data.sampleCount, 12);
}

TEST(DSPData, ScansForNullsAndClonesWithoutTaking) {
  CDSPData data;
  data.SetDimensions(3, 1, 1);
  float samples[] = {1, -1e32f, -0.9999999e32f};
  data.AddBand().SetFloatData(samples, false);
  data.EnsureMask(0, true);
  EXPECT_EQ(data.bands[0]->mask->Count(), 2);
  {
    const auto shallow = data.bands[0]->Clone(false);
    EXPECT_EQ(shallow->floatData, samples);
    const auto deep = data.Clone(true);
    EXPECT_NE(deep->bands[0]->floatData, samples);
    EXPECT_EQ(deep->bands[0]->floatData[0], 1);
  }
  EXPECT_EQ(data.bands[0]->mask->Count(), 2) << "the clones freed nothing of ours";
}

TEST(DSPProcess, AChainOverNullsWritesNulls) {
  TestBand band({kNull, kNull, kNull});
  CDSPPower power;
  CDSPTransform transform;
  EXPECT_TRUE(RunInPlace(band, {&power, &transform}));
  EXPECT_EQ(band.nulls.Count(), 3);
  EXPECT_EQ(band.samples, (std::vector<float>(3, -1e32f)));
}

TEST(DSPProcess, StepsFollowEachOtherInPlaceAndApart) {
  const std::vector<double> values{1, 2, kNull, 4, 5, 9, 1, 0, 3};
  std::vector<float> results[2];
  for (const bool apart : {false, true}) {
    CDSPTransform twice;
    twice.scale = 2;
    CDSPConvolution smooth;
    smooth.SetBoxKernel(1, 3, 1, 1);
    CDSPPower square;
    TestBand band(values);
    TestBand other(std::vector<double>(values.size(), 77));
    EXPECT_TRUE(apart ? RunApart(band, other, {&twice, &smooth, &square})
                      : RunInPlace(band, {&twice, &smooth, &square}));
    results[apart ? 1 : 0] = apart ? other.samples : band.samples;
    EXPECT_TRUE(!apart || band.samples[1] == 2) << "the input of the process stands";
  }
  EXPECT_EQ(results[0], results[1]);
  EXPECT_EQ(results[0][0], 9) << "(2 + 4) / 2, squared";
  EXPECT_EQ(results[0][2], -1e32f);
}

TEST(DSPPointwise, HandFigures) {
  CDSPLog log;
  TestBand band({0, 1, -1, 10, -10, kNull});
  RunInPlace(band, {&log});
  EXPECT_EQ(band.samples, (std::vector<float>{0, 1, -1, 2, -2, -1e32f}));
  EXPECT_EQ(log.inverse, 1);
  RunInPlace(band, {&log});
  EXPECT_EQ(band.samples, (std::vector<float>{0, 1, -1, 10, -10, -1e32f}));

  CDSPPower root;
  root.exponent = 0.5;
  TestBand negative({-4, 9});
  RunInPlace(negative, {&root});
  EXPECT_TRUE(std::isnan(negative.samples[0])) << "stored, not masked";
  EXPECT_FALSE(negative.nulls.Get(0));
  EXPECT_EQ(negative.samples[1], 3);

  CDSPTransform transform;
  transform.scale = 3;
  transform.offset = -1;
  TestBand line({1, 2, kNull});
  RunInPlace(line, {&transform});
  EXPECT_EQ(line.samples, (std::vector<float>{2, 5, -1e32f}));
  RunInPlace(line, {&transform});
  EXPECT_EQ(line.samples, (std::vector<float>{1, 2, -1e32f}));
}

TEST(DSPOperation, DisabledInputsAndBandsStayAsTheyAre) {
  CDSPData data;
  data.SetDimensions(2, 1, 1);
  TestBand first({1, 2});
  TestBand second({3, 4});
  first.Put(data);
  second.Put(data);
  CDSPTransform transform;
  transform.scale = 10;
  transform.bandEnable.emplace_back(1, false);  // shorter than the bands: the second is on
  CDSPProcess process;
  process.Storage().AddInput(&data, false);
  process.Storage().AddOutput(&data, false);
  process.Append(transform);
  EXPECT_TRUE(process.Run(nullptr));
  EXPECT_EQ(first.samples, (std::vector<float>{1, 2}));
  EXPECT_EQ(second.samples, (std::vector<float>{30, 40}));
}

// An operation made of steps leaves what is switched off alone, and mixes nothing up.
TEST(DSPOperation, StepsWithinAStepKeepInputsAndBandsApart) {
  const std::vector<double> values[] = {{1, 2, 6, 4}, {10, 20, 60, 40}};
  for (const bool gain : {false, true}) {
    CDSPData data[2];
    std::vector<TestBand> bands;
    bands.reserve(4);
    for (CDSPData& set : data) {
      set.SetDimensions(2, 2, 1);
      for (const auto& band : values) bands.emplace_back(band).Put(set);
    }
    CDSPConvolution smooth;
    CDSPAGC agc;
    smooth.SetBoxKernel(2, 3, 3, 1);
    agc.width = 3;
    CDSPOperation& step = gain ? static_cast<CDSPOperation&>(agc) : smooth;
    step.inputEnable = {false};
    step.bandEnable = {bvector(), bvector(1, false)};
    CDSPProcess process;
    for (CDSPData& set : data) process.Storage().AddInput(&set, false), process.Storage().AddOutput(&set, false);
    process.Append(step);
    EXPECT_TRUE(process.Run(nullptr));
    for (const int untouched : {0, 1, 2}) {
      EXPECT_EQ(bands[untouched].samples, TestBand(values[untouched % 2]).samples) << untouched;
    }
    const float amplitude = std::sqrt(float{(100 + 400 + 3600 + 1600) / 4});
    const float wanted = gain ? 10 / amplitude : 32.5f;
    EXPECT_FLOAT_EQ(bands[3].samples[0], wanted);
  }
}

class Impatient : public CDSPProgress {
 public:
  explicit Impatient(int patience) : patience_(patience) {}
  void SetTask(const char*, int) override {}
  bool OnProgress(int percent) override {
    last = percent;
    return --patience_ > 0;
  }
  int last = -1;

 private:
  int patience_;
};

TEST(DSPProcess, WithoutStorageItFails) {
  CDSPLog log;
  CDSPProcess process;
  process.storage = nullptr;
  EXPECT_FALSE(process.Run(nullptr));
  process.Append(log);
  EXPECT_FALSE(process.Run(nullptr));
}

TEST(DSPProcess, AStoppedStepFailsAndKeepsItsDirection) {
  TestBand band(std::vector<double>(12, 1));
  CDSPData data;
  data.SetDimensions(3, 4, 1);
  band.Put(data);
  CDSPLog log;
  Impatient stop(2);
  CDSPProcess process;
  process.Storage().AddInput(&data, false);
  process.Storage().AddOutput(&data, false);
  process.Append(log);
  EXPECT_FALSE(process.Run(&stop));
  EXPECT_EQ(stop.last, 50) << "two of four lines";
  EXPECT_EQ(log.inverse, 0);
}

TEST(Stats_DSPData, ShowsABandAsATable) {
  TestBand band({1, 2, kNull, 4, 5, 6, 7, 8});
  CDSPData data;
  data.SetDimensions(2, 2, 2);
  band.Put(data);
  CStats_DSPData table(&data);
  EXPECT_EQ(table.GetSize(), 8);
  EXPECT_EQ(table.GetSpatialSize(), 3);
  EXPECT_EQ(table.GetValue(-1, 5), 1);
  EXPECT_EQ(table.GetValue(-2, 6), 1);
  EXPECT_EQ(table.GetValue(-3, 6), 1);
  EXPECT_FALSE(table.IsValueValid(0, 2));
  CStats_Univariate figures;
  figures.Add(&table, 0);
  figures.Calculate(1, nullptr);
  EXPECT_EQ(figures.valid, 7);
  EXPECT_EQ(figures.mean, 33.0 / 7);
}

}  // namespace

}  // namespace tallyscope
