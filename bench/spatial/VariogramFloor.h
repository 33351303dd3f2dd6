// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <vector>

namespace tallyscope::bench_variogram {

struct Stations {
  std::vector<double> at[3];
  std::vector<double> values;
};

// The least that a lag grid takes. Stations stand ready in tiles of float co-ordinates; Run does the pairs and returns
// how many are in range, but for some on borders.
class Floor {
 public:
  Floor(const Stations& stations, int axes, double range, bool cartesian);
  std::int64_t Run();

  struct Sums {
    double covariance;
    double moment;
  };
  struct Tile {
    int first;
    int count;
    float middle[3];
    float reach[3];
  };

 private:
  int axes_;
  bool cartesian_;
  double range_;
  std::vector<float> at_[3];
  std::vector<double> values_;
  std::vector<Tile> tiles_;
};

// All pairs by sqrt and atan2 in double, one cell a pair. Returns the number in range.
std::int64_t RunPlainLoop(const Stations& stations, int axes, double range, bool cartesian);

}  // namespace tallyscope::bench_variogram
