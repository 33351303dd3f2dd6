// SPDX-License-Identifier: MIT
#include "statistics/BlockReader.h"

#include <gtest/gtest.h>

#include <random>

#include "tests/support/Made.h"

namespace tallyscope {

namespace {

// Three columns with nulls in no order, some stretches without any, beside single reads.
TEST(BlockReader, GivesTheJointStationsInOrder) {
  std::mt19937 random(20240611);
  for (const int size : {0, 1, 511, 512, 513, 3000}) {
    std::vector<MadeColumn> columns;
    for (int k = 0; k < 3; ++k) {
      columns.push_back(made::WithNulls(made::Ramp(size, k, k + size),
                                        [&](int station) { return station / 700 % 2 == 0 && random() % 4 == 0; }));
    }
    CMadeTable table(std::move(columns));
    for (const int limit : {CBlockReader::kBlock, 1, 100}) {
      SCOPED_TRACE(testing::Message() << size << " stations by " << limit);
      CBlockReader reader({{&table, 0}, {&table, 1}, {&table, 2}}, size);
      int station = 0;
      while (reader.Next(limit)) {
        ASSERT_EQ(reader.First(), station);
        ASSERT_EQ(reader.Count(), std::min(limit, size - station));
        reader.KeepJoint();
        std::size_t kept = 0;
        for (; station < reader.First() + reader.Count(); ++station) {
          bool joint = true;
          for (int k = 0; k < 3; ++k) {
            ASSERT_EQ(reader.IsValid(static_cast<std::size_t>(k), station), table.IsValueValid(k, station));
            joint &= table.IsValueValid(k, station);
          }
          ASSERT_EQ(reader.IsJoint(station), joint);
          if (!joint) continue;
          for (int k = 0; k < 3; ++k) {
            ASSERT_EQ(reader.Values(static_cast<std::size_t>(k))[kept], table.GetValue(k, station));
          }
          ++kept;
        }
        ASSERT_EQ(reader.Values(0).size(), kept);
        ASSERT_EQ(reader.IsWhole(), kept == static_cast<std::size_t>(reader.Count()));
      }
      EXPECT_EQ(station, size);
      EXPECT_FALSE(reader.Next()) << "goes on behind the end";
    }
  }
}

}  // namespace

}  // namespace tallyscope
