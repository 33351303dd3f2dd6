// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>

#include "PairTable.h"
#include "statistics/Stats_Bivariate.h"

namespace tallyscope {
namespace {

std::vector<std::string> Cells(const std::string& line) {
  std::vector<std::string> cells;
  std::istringstream stream(line);
  for (std::string cell; std::getline(stream, cell, ',');) cells.push_back(cell);
  return cells;
}

// A column of an example table. A millionth of the row number is added, so that no two values are equal.
PairTable::Column ReadColumn(const std::string& file, const std::string& name) {
  std::ifstream stream(std::string(std::getenv("TALLYSCOPE_EXAMPLES")) + "/" + file);
  std::string line;
  std::getline(stream, line);
  const auto headings = Cells(line);
  const auto at = static_cast<std::size_t>(std::find(headings.begin(), headings.end(), name) - headings.begin());
  PairTable::Column column;
  while (std::getline(stream, line)) {
    const std::string cell = Cells(line).at(at);
    std::istringstream text(cell);
    text.imbue(std::locale::classic());
    double value = 0;
    text >> value;
    column.push_back(cell.empty() ? kNull : PairTable::Cell{value + 1e-6 * static_cast<double>(column.size() + 1)});
  }
  return column;
}

struct Point {
  double at, mean;
};

struct Example {
  const char* file;
  const char* x;
  const char* y;
  int valid;
  double covariance, correlation, inertia;
  double yOnX[2], xOnY[2];
  double rank;
  std::size_t points;
  Point yGivenX[3];  // the first, the fourth, the last
  Point xGivenY[3];
};

// From Rscript ../tests/statistics/bivariate_examples.R, run in examples/ with R 4.2.2.
const Example kExamples[] = {
    {"walker.csv",
     "V",
     "U",
     275,
     69237.2701794776,
     0.30085972131146,
     215900.930490909,
     {0.769906723363599, 268.94182877553},
     {0.117568231528304, 364.278174196164},
     0.764111122532959,
     32,
     {{0.000272, 0.0602672}, {169.800316, 58.1336634444444}, {1528.100232, 1866.2203106}},
     {{0.00026, 24.7002692}, {10.800365, 250.322505333333}, {5190.100442, 882.5002806}}},
    {"quakes.csv",
     "depth",
     "mag",
     1000,
     -20.0257855616284,
     -0.230676115774024,
     70272.59608,
     {-0.000431074185056774, 4.75512471582794},
     {-123.439241395498, 881.771952784078},
     -0.268570657342657,
     34,
     {{40.00007, 4.9068324375}, {54.000972, 4.87148919354839}, {680.000256, 4.5004415}},
     {{4.000005, 446.812616125}, {4.100851, 389.452247354839}, {6.400152, 223.81295375}}},
};

// R's figures have 15 digits; a sum of squares in one pass loses some more.
void ExpectClose(double value, double expected) {
  EXPECT_NEAR(value, expected, 1e-9 * std::max(1.0, std::abs(expected)));
}

void ExpectCurve(const std::vector<double>& at, const std::vector<double>& means, const Example& example,
                 const Point (&points)[3]) {
  ASSERT_EQ(at.size(), example.points);
  ASSERT_EQ(means.size(), example.points);
  const std::size_t places[] = {0, 3, example.points - 1};
  for (std::size_t i = 0; i < 3; ++i) {
    ExpectClose(at[places[i]], points[i].at);
    ExpectClose(means[places[i]], points[i].mean);
  }
}

TEST(BivariateExamples, AgreeWithR) {
  for (const Example& example : kExamples) {
    SCOPED_TRACE(example.file);
    PairTable table({ReadColumn(example.file, example.x), ReadColumn(example.file, example.y)});
    CStats_Bivariate pair;
    pair.Add(&table, 0);
    pair.Add(&table, 1);
    ASSERT_TRUE(pair.Calculate(15, nullptr));
    EXPECT_EQ(pair.valid, example.valid);
    ExpectClose(pair.covariance, example.covariance);
    ExpectClose(pair.correlation, example.correlation);
    ExpectClose(pair.inertia, example.inertia);
    for (std::size_t i = 0; i < 2; ++i) {
      ExpectClose(pair.yOnX[i], example.yOnX[i]);
      ExpectClose(pair.xOnY[i], example.xOnY[i]);
    }
    ExpectClose(pair.rankCorrelation, example.rank);
    ExpectCurve(pair.expectationX, pair.expectationYGivenX, example, example.yGivenX);
    ExpectCurve(pair.expectationY, pair.expectationXGivenY, example, example.xGivenY);
  }
}

}  // namespace
}  // namespace tallyscope
