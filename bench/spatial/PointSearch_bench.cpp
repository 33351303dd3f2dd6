// SPDX-License-Identifier: MIT
// Building the point search and walking box queries, each beside the same work on bare arrays: records partitioned at
// the same cuts, without nodes, table, null tests or cursor.
#include <benchmark/benchmark.h>
#include <malloc.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <random>
#include <vector>

#include "spatial/Stats_PointSearch.h"
#include "statistics/Stats_Data.h"

namespace tallyscope {
namespace {

constexpr int kStations = 1'000'000;
constexpr int kQueries = 100'000;

// Columns of doubles without nulls.
class Table : public CStats_Data {
 public:
  explicit Table(int axes) : columns(static_cast<std::size_t>(axes), std::vector<double>(kStations)) {
    std::mt19937_64 random(42);
    for (auto& column : columns) {
      for (double& value : column) value = static_cast<double>(random() >> 11) * 0x1p-53;
    }
  }
  int GetSize() override { return kStations; }
  int GetSpatialSize() override { return static_cast<int>(columns.size()); }
  int GetValueSize() override { return 0; }
  using CStats_Data::GetValue;
  double GetValue(int field, int station) override {
    return columns[static_cast<std::size_t>(-field - 1)][static_cast<std::size_t>(station)];
  }
  int ReadValues(int field, int first, int count, double* values, unsigned char* valid) override {
    ReadRawValues(field, first, count, values);
    std::memset(valid, 1, static_cast<std::size_t>(count));
    return count;
  }
  void ReadRawValues(int field, int first, int count, double* values) override {
    std::copy_n(columns[static_cast<std::size_t>(-field - 1)].data() + first, count, values);
  }

  std::vector<std::vector<double>> columns;
};

template <int kAxes>
struct Record {
  double at[kAxes];
  int station;
};

// The floor: a tree of 24 bytes a node over an array of records.
template <int kAxes>
class BareTree {
 public:
  void Build(const Table& table) {
    records.resize(kStations);
    double low[kAxes], high[kAxes];
    for (int a = 0; a < kAxes; ++a) {
      const auto& column = table.columns[static_cast<std::size_t>(a)];
      const auto ends = std::minmax_element(column.begin(), column.end());
      const double margin = (*ends.second - *ends.first) / 1000;
      low[a] = *ends.first - margin;
      high[a] = *ends.second + margin;
      for (int i = 0; i < kStations; ++i)
        records[static_cast<std::size_t>(i)].at[a] = column[static_cast<std::size_t>(i)];
    }
    for (int i = 0; i < kStations; ++i) records[static_cast<std::size_t>(i)].station = i;
    nodes.clear();
    Cut(low, high, 0, kStations);
  }

  template <class Visit>
  void Query(const double* low, const double* high, Visit visit) const {
    Descend(0, low, high, visit);
  }

  std::vector<Record<kAxes>> records;

 private:
  struct Node {
    double cut = 0;
    int axis = -1;  // -1: a leaf
    int first = 0;
    int last = 0;  // the right child of an inner node
  };

  void Cut(const double* low, const double* high, int first, int last) {
    const std::size_t place = nodes.size();
    nodes.push_back({0, -1, first, last});
    if (last - first <= 96) return;
    int axis = 0;
    for (int a = 1; a < kAxes; ++a) {
      if (high[axis] - low[axis] < high[a] - low[a]) axis = a;
    }
    const double cut = low[axis] + (high[axis] - low[axis]) / 2.0943951023931957;
    Record<kAxes>* begin = records.data() + first;
    Record<kAxes>* middle = std::partition(begin, records.data() + last,
                                           [&](const Record<kAxes>& record) { return record.at[axis] < cut; });
    double ends[kAxes];
    std::copy(high, high + kAxes, ends);
    ends[axis] = cut;
    const int split = first + static_cast<int>(middle - begin);
    Cut(low, ends, first, split);
    nodes[place] = {cut, axis, first, static_cast<int>(nodes.size())};
    std::copy(low, low + kAxes, ends);
    ends[axis] = cut;
    Cut(ends, high, split, last);
  }

  template <class Visit>
  void Descend(int place, const double* low, const double* high, Visit& visit) const {
    const Node& node = nodes[static_cast<std::size_t>(place)];
    if (node.axis >= 0) {
      if (low[node.axis] < node.cut) Descend(place + 1, low, high, visit);
      if (high[node.axis] >= node.cut) Descend(node.last, low, high, visit);
      return;
    }
    for (int i = node.first; i < node.last; ++i) {
      const Record<kAxes>& record = records[static_cast<std::size_t>(i)];
      bool inside = true;
      for (int a = 0; a < kAxes; ++a) inside = inside && low[a] <= record.at[a] && record.at[a] <= high[a];
      if (inside) visit(record.station);
    }
  }

  std::vector<Node> nodes;
};

// Boxes of some fifty stations.
template <int kAxes>
std::vector<Box> Queries() {
  std::mt19937_64 random(7);
  const double half = std::pow(50.0 / kStations, 1.0 / kAxes) / 2;
  std::vector<Box> boxes(kQueries);
  for (Box& box : boxes) {
    for (std::size_t a = 0; a < kAxes; ++a) {
      const double centre = static_cast<double>(random() >> 11) * 0x1p-53;
      box.min[a] = centre - half;
      box.max[a] = centre + half;
    }
  }
  return boxes;
}

template <int kAxes>
void BuildFloor(benchmark::State& state) {
  const Table table(kAxes);
  for (auto _ : state) {
    BareTree<kAxes> tree;
    tree.Build(table);
    benchmark::DoNotOptimize(tree.records.data());
  }
}

template <int kAxes>
void Build(benchmark::State& state) {
  Table table(kAxes);
  const std::size_t before = mallinfo2().uordblks + mallinfo2().hblkhd;
  for (auto _ : state) {
    table.DestroyPointSearch();
    table.PreparePointSearch(nullptr);
  }
  const std::size_t after = mallinfo2().uordblks + mallinfo2().hblkhd;
  state.counters["bytes/station"] = static_cast<double>(after - before) / kStations;
  CStats_PointSearch& search = *table.GetPointSearch();
  search.SearchAll();
  long long sum = 0;
  for (int station = 0; search.GetNext(station, 1);) sum += station;
  if (sum != static_cast<long long>(kStations) * (kStations - 1) / 2) state.SkipWithError("stations are missing");
}

template <int kAxes>
long long SumByFloor(const BareTree<kAxes>& tree, const std::vector<Box>& boxes) {
  long long sum = 0;
  for (const Box& box : boxes) tree.Query(box.min.data(), box.max.data(), [&](int station) { sum += station + 1; });
  return sum;
}

template <int kAxes>
void QueryFloor(benchmark::State& state) {
  BareTree<kAxes> tree;
  tree.Build(Table(kAxes));
  const std::vector<Box> boxes = Queries<kAxes>();
  for (auto _ : state) benchmark::DoNotOptimize(SumByFloor(tree, boxes));
}

template <int kAxes>
void Query(benchmark::State& state) {
  Table table(kAxes);
  table.PreparePointSearch(nullptr);
  CStats_PointSearch& search = *table.GetPointSearch();
  const std::vector<Box> boxes = Queries<kAxes>();
  long long sum = 0;
  for (auto _ : state) {
    sum = 0;
    for (const Box& box : boxes) {
      search.SearchBox(box);
      for (int station = 0; search.GetNext(station, 1);) sum += station + 1;
    }
    benchmark::DoNotOptimize(sum);
  }
  BareTree<kAxes> tree;
  tree.Build(table);
  if (sum != SumByFloor(tree, boxes)) state.SkipWithError("a box gave other stations");
}

BENCHMARK_TEMPLATE(BuildFloor, 2)->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(Build, 2)->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(BuildFloor, 3)->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(Build, 3)->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(QueryFloor, 2)->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(Query, 2)->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(QueryFloor, 3)->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(Query, 3)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace tallyscope
