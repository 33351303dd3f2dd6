// SPDX-License-Identifier: MIT
#include "bands/Stats_DSPData.h"

#include <gtest/gtest.h>

#include <limits>

#include "BandTesting.h"

namespace tallyscope {
namespace {

// Runs of any length from anywhere give what the single reads give, on the axes and on the band.
TEST(Stats_DSPData, BulkReadsAreSingleReads) {
  const struct { int x, y, z; } shapes[] = {{200, 1, 1}, {20, 10, 1}, {10, 4, 5}, {1, 50, 4}, {1, 1, 200}, {40, 1, 5}};
  for (const auto& shape : shapes) {
    std::vector<double> samples;
    for (int i = 0; i < 200; ++i) samples.push_back(i % 9 == 4 ? std::numeric_limits<double>::quiet_NaN() : i * 0.5);
    TestBand band(samples);
    CDSPData data;
    data.SetDimensions(shape.x, shape.y, shape.z);
    band.Put(data);
    CStats_DSPData table(&data);
    for (int field = -table.GetSpatialSize(); field < 1; ++field) {
      for (const int first : {0, 1, 63, 199}) {
        double values[200];
        unsigned char valid[200];
        const int count = 200 - first;
        int good = 0;
        const int told = table.ReadValues(field, first, count, values, valid);
        for (int i = 0; i < count; ++i) {
          good += valid[i];
          EXPECT_EQ(valid[i] != 0, table.IsValueValid(field, first + i));
          EXPECT_EQ(values[i], table.GetValue(field, first + i)) << field << " " << first + i;
        }
        EXPECT_EQ(told, good);
      }
    }
  }
}

}  // namespace
}  // namespace tallyscope
