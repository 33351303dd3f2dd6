// SPDX-License-Identifier: MIT
#pragma once

#include <cmath>
#include <initializer_list>
#include <vector>

#include "bands/DSPProcess.h"

namespace tallyscope {

// A band to test with: NaN in the list that makes it stands for a null.
struct TestBand {
  std::vector<float> samples;
  bvector nulls;

  TestBand(const std::vector<double>& values) : nulls(static_cast<int>(values.size())) {
    for (std::size_t i = 0; i < values.size(); ++i) {
      samples.push_back(std::isnan(values[i]) ? 7e7f : static_cast<float>(values[i]));
      nulls.Set(static_cast<int>(i), std::isnan(values[i]));
    }
  }
  int GetSize() const { return static_cast<int>(samples.size()); }
  void Put(CDSPData& data) {
    CDSPDataBand& band = data.AddBand();
    band.SetFloatData(samples.data(), false);
    band.SetMask(&nulls, false, CDSPDataBand::kDefaultNull);
  }
};

// Runs steps over a band in place, as an array of x by y by z.
inline bool RunInPlace(TestBand& band, std::initializer_list<CDSPOperation*> steps, int x = 0, int y = 1, int z = 1) {
  CDSPData data;
  data.SetDimensions(x == 0 ? band.GetSize() : x, y, z);
  band.Put(data);
  CDSPProcess process;
  process.Storage().AddInput(&data, false);
  process.Storage().AddOutput(&data, false);
  for (CDSPOperation* step : steps) process.Append(*step);
  return process.Run(nullptr);
}

// Runs them from one band into another of its size.
inline bool RunApart(TestBand& from, TestBand& to, std::initializer_list<CDSPOperation*> steps, int x = 0, int y = 1,
                     int z = 1) {
  CDSPData in;
  CDSPData out;
  in.SetDimensions(x == 0 ? from.GetSize() : x, y, z);
  out.SetDimensions(x == 0 ? to.GetSize() : x, y, z);
  from.Put(in);
  to.Put(out);
  CDSPProcess process;
  process.Storage().AddInput(&in, false);
  process.Storage().AddOutput(&out, false);
  for (CDSPOperation* step : steps) process.Append(*step);
  return process.Run(nullptr);
}

}  // namespace tallyscope
