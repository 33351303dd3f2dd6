// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <numeric>
#include <random>
#include <utility>

#include "statistics/ProgressSink.h"
#include "tests/support/Made.h"

namespace tallyscope {

namespace {

constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

const double kLeast = std::nextafter(-1048576.0, 0.0);

// The sort as it is defined: positions of the table compared through raw reads, nothing copied, the pivot followed by
// its position. Referee for every quicker way. `before(a, b)` compares stations.
template <class Before>
class PlainSort {
 public:
  PlainSort(int size, Before before) : table_(static_cast<std::size_t>(size)), before_(before) {
    std::iota(table_.begin(), table_.end(), 0);
    if (table_.size() < 100) {
      Comb();
    } else {
      Quick();
    }
  }
  const std::vector<int>& GetTable() const { return table_; }

 private:
  bool IsBefore(int a, int b) {  // positions
    return before_(table_[static_cast<std::size_t>(a)], table_[static_cast<std::size_t>(b)]);
  }
  void Swap(int a, int b) { std::swap(table_[static_cast<std::size_t>(a)], table_[static_cast<std::size_t>(b)]); }

  void Comb() {
    const int n = static_cast<int>(table_.size());
    bool ordered = true;
    for (int i = 0; i + 1 < n && ordered; ++i) ordered = !IsBefore(i + 1, i);
    if (ordered) return;
    int gap = n;
    for (;;) {
      gap = gap * 10 / 13;
      if (gap == 9 || gap == 10) gap = 11;
      if (gap < 1) gap = 1;
      bool swapped = false;
      for (int i = 0; i < n - gap; ++i) {
        if (!IsBefore(i + gap, i)) continue;
        Swap(i, i + gap);
        swapped = true;
      }
      if (gap == 1 && !swapped) return;
    }
  }

  void Quick() {
    std::vector<std::pair<int, int>> stack{{0, static_cast<int>(table_.size()) - 1}};
    while (!stack.empty()) {
      auto [left, right] = stack.back();
      stack.pop_back();
      while (left < right) {
        int i = left;
        int j = right;
        int p = (left + right) / 2;
        while (i <= j) {
          while (IsBefore(i, p)) ++i;
          while (IsBefore(p, j)) --j;
          if (i > j) continue;
          if (i < j) {
            p = i == p ? j : j == p ? i : p;
            Swap(i, j);
          }
          ++i;
          --j;
        }
        if (j - left < right - i) {
          if (i < right) stack.push_back({i, right});
          right = j;
        } else {
          if (left < j) stack.push_back({left, j});
          left = i;
        }
      }
      ASSERT_LE(stack.size(), 64u);
    }
  }

  std::vector<int> table_;
  Before before_;
};

std::vector<int> SortPlainly(CStats_Data& data, int field, bool descending) {
  const auto before = [&](int a, int b) {
    const double x = data.GetValue(field, a);
    const double y = data.GetValue(field, b);
    return descending ? x > y : x < y;
  };
  return PlainSort(data.GetSize(), before).GetTable();
}

std::vector<int> GetTable(CStats_Data& data, int field) {
  std::vector<int> table(static_cast<std::size_t>(data.GetSize()));
  for (int i = 0; i < data.GetSize(); ++i) table[static_cast<std::size_t>(i)] = data.GetSortedStation(field, i);
  return table;
}

std::vector<double> Generate(int n, auto value) {
  std::vector<double> values(static_cast<std::size_t>(n));
  for (int i = 0; i < n; ++i) values[static_cast<std::size_t>(i)] = value(i);
  return values;
}

// Columns for which the middle value of a range is nearly always an extreme one. The first by construction, the second
// by an adversary that decides each comparison against the sort, as late as it can (M. D. McIlroy, "A killer adversary
// for quicksort", 1999).
std::vector<double> MiddleKiller(int n) {
  auto values = Generate(n, [](int i) { return i; });
  for (int i = 1; i < n; ++i) std::swap(values[static_cast<std::size_t>(i)], values[static_cast<std::size_t>(i / 2)]);
  return values;
}
std::vector<double> AdversaryKiller(int n) {
  std::vector<double> values(static_cast<std::size_t>(n), n);  // n: not decided yet
  int decided = 0;
  int candidate = 0;
  const auto before = [&](int a, int b) {
    double& x = values[static_cast<std::size_t>(a)];
    double& y = values[static_cast<std::size_t>(b)];
    if (a != b && x == n && y == n) (a == candidate ? x : y) = decided++;
    if (x == n || y == n) candidate = x == n ? a : b;
    return x < y;
  };
  static_cast<void>(PlainSort(n, before));
  return values;
}

std::vector<double> With(std::vector<double> values, int at, double value) {
  values[static_cast<std::size_t>(at)] = value;
  return values;
}

std::vector<double> Every(int step, std::vector<double> values, double value) {
  for (std::size_t i = 3; i < values.size(); i += static_cast<std::size_t>(step)) values[i] = value;
  return values;
}

std::vector<double> Halved(std::vector<double> values) {
  for (double& value : values) value = std::floor(value / 2);
  return values;
}

std::vector<double> Negated(std::vector<double> values) {
  std::transform(values.begin(), values.end(), values.begin(), std::negate<>());
  return values;
}

struct NastyColumn {
  const char* name;
  std::vector<double> values;
};

std::vector<NastyColumn> NastyColumns(int n) {
  std::mt19937 random(20240611);
  const auto below = [&](unsigned limit) { return static_cast<double>(random() % limit); };
  std::vector<NastyColumn> columns = {
      {"ascending", Generate(n, [](int i) { return i; })},
      {"descending", Generate(n, [](int i) { return -i; })},
      {"all equal", Generate(n, [](int) { return 7.5; })},
      {"two values", Generate(n, [&](int) { return below(2); })},
      {"few values", Generate(n, [&](int) { return below(10); })},
      {"half tied", Generate(n, [&](int) { return below(static_cast<unsigned>(n)); })},
      {"organ pipe", Generate(n, [n](int i) { return std::min(i, n - 1 - i); })},
      {"saw tooth", Generate(n, [](int i) { return i % 17; })},
      {"ordered but the last", Generate(n, [n](int i) { return i == n - 1 ? n / 2 : i; })},
      {"one tie far apart", Generate(n, [n](int i) { return i == n - 1 ? 1 : i; })},
      {"both zeros", Generate(n, [&](int i) { return i % 5 == 0   ? 0.0
                                                     : i % 7 == 0 ? -0.0
                                                                  : below(9) - 4; })},
      // The least value makes the two zeros differ in the leading bits of their keys.
      {"one zero of each sign",
       Generate(n, [n](int i) { return i == 0       ? kLeast
                                       : i == 1     ? -0.0
                                       : i == n / 2 ? 0.0
                                                    : i; })},
      {"the other way round",
       Generate(n, [n](int i) { return i == 0       ? kLeast
                                       : i == 1     ? 0.0
                                       : i == n / 2 ? -0.0
                                                    : i; })},
      {"infinities", Generate(n, [&](int i) { return i % 11 == 0   ? kInf
                                                     : i % 13 == 0 ? -kInf
                                                                   : below(50) / 4; })},
      {"some NaN", Generate(n, [&](int i) { return i % 9 == 4 ? kNan : below(30); })},
      {"one NaN among distinct", Generate(n, [n](int i) { return i == n / 3 ? kNan : (i * 7919) % 100003; })},
      {"all NaN", Generate(n, [](int) { return kNan; })},
      {"distinct in the last bits only", Generate(n, [&](int i) { return 1 + (i * 7919 % n) * 0x1p-52; })},
      {"tied and crowded", Generate(n, [&](int) { return 1 + below(1000) * 0x1p-52; })},
      {"all magnitudes",
       Generate(n, [&](int) { return std::ldexp(below(1000) - 500, static_cast<int>(random() % 2000) - 1000); })},
      {"middle killer with a tie", With(MiddleKiller(n), n - 1, 0)},
      {"negated middle killer with a NaN", With(Negated(MiddleKiller(n)), n - 1, kNan)},
      {"adversary's killer with a tie", With(AdversaryKiller(n), n / 2, 1)},
      {"negated adversary's killer with an infinity", With(With(Negated(AdversaryKiller(n)), n / 2, -kInf), 0, -kInf)},
      {"killer of pairs", Halved(MiddleKiller(n))},
      {"killer with NaN", Every(41, MiddleKiller(n), kNan)},
  };
  return columns;
}

TEST(SortTable, TiesAreLeftAsThePlainProcedureLeavesThem) {
  for (const int n : {1, 2, 3, 13, 50, 99, 100, 101, 127, 128, 129, 130, 255, 257, 1000, 5000, 20'000}) {
    for (auto& column : NastyColumns(n)) {
      CMadeTable table({made::Column(column.values)});
      for (const int descending : {0, 1}) {
        SCOPED_TRACE(testing::Message() << column.name << ", n " << n << ", descending " << descending);
        table.Sort(0, descending, nullptr);
        ASSERT_EQ(GetTable(table, 0), SortPlainly(table, 0, descending != 0));
      }
    }
  }
}

TEST(SortTable, SortsNullsByTheirRawValueAndAxesByTheirDim) {
  auto table = TableFrom(R"(X  Y  Au
                            3  7  1
                            1  8  -
                            2  6  0)");
  table.Sort(0, 0, nullptr);
  EXPECT_EQ(GetTable(table, 0), (std::vector<int>{1, 2, 0}));
  table.Sort(-1, 1, nullptr);
  EXPECT_EQ(GetTable(table, -1), (std::vector<int>{0, 2, 1}));
  table.Sort(-2, 0, nullptr);
  EXPECT_EQ(GetTable(table, -2), (std::vector<int>{2, 0, 1}));
  EXPECT_EQ(GetTable(table, 0), (std::vector<int>{1, 2, 0})) << "another column's table has changed";
}

TEST(SortTable, KeepsOneTableOfAColumn) {
  CMadeTable made({made::Ramp(150, 0, 1), made::Ramp(150, 1, 0)});
  CSingleReads table(made);
  EXPECT_FALSE(table.IsSorted(0, 0));
  table.Sort(0, 0, nullptr);
  const long reads = table.rawReads;
  EXPECT_LE(reads, 150) << "each value is read once";
  table.Sort(0, 0, nullptr);
  EXPECT_EQ(table.rawReads, reads) << "sorted again";
  EXPECT_TRUE(table.IsSorted(0, 0));
  EXPECT_FALSE(table.IsSorted(1, 0));

  table.Sort(0, 1, nullptr);
  EXPECT_FALSE(table.IsSorted(0, 0));
  EXPECT_TRUE(table.IsSorted(0, 1));
  EXPECT_FALSE(table.IsSorted(0, 2)) << "the direction must be the same number";
  EXPECT_EQ(table.GetSortedStation(0, 0), 149);

  std::vector<int> ranks;
  table.GetRanks(1, ranks);
  EXPECT_TRUE(ranks.empty()) << "ranks of a column that isn't sorted";
  table.GetRanks(0, ranks);
  for (int station = 0; station < 150; ++station) EXPECT_EQ(ranks[static_cast<std::size_t>(station)], 149 - station);

  table.ClearSort();
  EXPECT_FALSE(table.IsSorted(0, 1));
}

TEST(SortTable, OutlivesWhatFollows) {
  CMadeTable table({made::Ramp(300, 0, 1)});
  EXPECT_EQ(table.GetSortTable(0), nullptr);
  table.Sort(0, 0, nullptr);
  const auto held = table.GetSortTable(0);
  table.Sort(0, 1, nullptr);
  table.ClearSort();
  EXPECT_EQ((*held)[0], 0);
  EXPECT_EQ(table.GetSortTable(0), nullptr);
  table.TakeSortTable(0, 1, MakeSortTable(table, 0, true, nullptr));  // as from a worker
  EXPECT_TRUE(table.IsSorted(0, 1));
  EXPECT_EQ(table.GetSortedStation(0, 0), 299);
}

// A sink that cancels at its n-th call.
class Patience : public CProgressSink {
 public:
  explicit Patience(int calls) : calls_(calls) {}
  bool OnProgress(int percent) override {
    rises &= percent >= last && percent <= 100;
    last = percent;
    return --calls_ >= 0;
  }
  void SetTask(const char*, int) override { ++tasks; }
  int GetLeft() const { return calls_; }

  bool rises = true;
  int last = 0;
  int tasks = 0;

 private:
  int calls_;
};

TEST(SortTable, ACancelledSortLeavesTheTableThatStood) {
  constexpr int kStations = 700'000;
  CMadeTable table({made::Normal(kStations, 0, 1), made::Rounded(made::Normal(kStations, 0, 1000), 1)});
  for (const int field : {0, 1}) {
    table.Sort(field, 1, nullptr);
    const int top = table.GetSortedStation(field, 0);
    Patience patient(1 << 30);
    table.Sort(field, 0, &patient);
    const int calls = (1 << 30) - patient.GetLeft();
    EXPECT_GT(calls, 2) << "it can hardly be cancelled";
    EXPECT_TRUE(patient.rises);
    EXPECT_EQ(patient.tasks, 1);
    table.Sort(field, 1, nullptr);
    for (int allowed = 0; allowed < calls; ++allowed) {
      Patience sink(allowed);
      table.Sort(field, 0, &sink);
      ASSERT_FALSE(table.IsSorted(field, 0));
      ASSERT_TRUE(table.IsSorted(field, 1));
      ASSERT_EQ(table.GetSortedStation(field, 0), top);
      ASSERT_EQ(sink.GetLeft(), -1) << "asked again after it cancelled";
    }
  }
  CMadeTable small({made::Normal(20'000, 0, 1)});
  Patience never(0);
  small.Sort(0, 0, &never);
  EXPECT_EQ(never.tasks, 0) << "it takes no time";
  EXPECT_TRUE(small.IsSorted(0, 0));
}

TEST(SortTable, RefusesPastTheAllowance) {
  class Sized : public CStats_Data {
   public:
    Sized(int size, int fields, int axes) : size_(size), fields_(fields), axes_(axes) {}
    int GetSize() override { return size_; }
    int GetValueSize() override { return fields_; }
    int GetSpatialSize() override { return axes_; }

   private:
    int size_, fields_, axes_;
  };
  constexpr int kAllowed = 1 << 26;  // tables of one column: four bytes a station
  EXPECT_TRUE(Sized(kAllowed, 1, 0).CanSort());
  EXPECT_FALSE(Sized(kAllowed + 1, 1, 0).CanSort());
  EXPECT_TRUE(Sized(kAllowed / 8, 5, 3).CanSort());
  EXPECT_FALSE(Sized(kAllowed / 8 + 1, 5, 3).CanSort());
  EXPECT_FALSE(Sized(1 << 30, 1 << 30, 0).CanSort()) << "the product wraps in 32 bits, and in 64";
  EXPECT_TRUE(Sized(0, 1 << 30, 3).CanSort());
  Sized large(kAllowed + 1, 1, 0);
  large.Sort(0, 0, nullptr);
  EXPECT_FALSE(large.IsSorted(0, 0)) << "marked without a table";
}

TEST(SortTable, SortsAnEmptyTable) {
  CStats_Data empty;
  empty.Sort(0, 0, nullptr);
  EXPECT_TRUE(empty.IsSorted(0, 0));
  std::vector<int> ranks{1, 2};
  empty.GetRanks(0, ranks);
  EXPECT_TRUE(ranks.empty());
}

}  // namespace

}  // namespace tallyscope
