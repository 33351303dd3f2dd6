// SPDX-License-Identifier: MIT
// Reading 1,000,000 rows of 10 numbers, 110 MB of comma-separated text, into columns; and the figures of what was read.
#include <benchmark/benchmark.h>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <random>
#include <string>

#include "host/OpenTable.h"
#include "host/Summary.h"

namespace tallyscope {
namespace {

constexpr int kRows = 1'000'000;
constexpr int kColumns = 10;

// The file, written at first use and removed at the end. Its numbers are whole multiples of 1e-6 from 100 to 1000.
class CBigFile {
 public:
  CBigFile() : path_((std::filesystem::temp_directory_path() / "tallyscope-bench-XXXXXX").string()) {
    close(mkstemp(path_.data()));
    std::ofstream file(path_, std::ios::binary);
    std::mt19937_64 random(1);
    for (int column = 0; column < kColumns; ++column) file << (column > 0 ? ",c" : "c") << column;
    std::string line;
    for (int row = 0; row < kRows; ++row) {
      line = "\n";
      for (int column = 0; column < kColumns; ++column) {
        const std::uint64_t micros = 100'000'000 + random() % 900'000'000;
        const std::string digits = std::to_string(micros);
        line += (column > 0 ? "," : "") + digits.substr(0, 3) + "." + digits.substr(3);
        sum_ += static_cast<double>(micros) / 1e6;
      }
      file << line;
    }
    file << "\n";
  }
  ~CBigFile() { std::filesystem::remove(path_); }

  const std::string& GetPath() const { return path_; }
  double GetSum() const { return sum_; }  // row by row

 private:
  std::string path_;
  double sum_ = 0;
};

const CBigFile& GetFile() {
  static const CBigFile file;
  return file;
}

void SetRates(benchmark::State& state) {
  const auto bytes = static_cast<std::int64_t>(std::filesystem::file_size(GetFile().GetPath()));
  state.SetBytesProcessed(state.iterations() * bytes);
  state.SetItemsProcessed(state.iterations() * kRows);
}

// The floor: digits and points straight into ten arrays of the right length, nothing checked.
void FloorScan(benchmark::State& state) {
  static constexpr double kPowers[] = {1, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9};
  GetFile();
  for (auto _ : state) {
    const int file = open(GetFile().GetPath().c_str(), O_RDONLY);
    struct stat facts {};
    fstat(file, &facts);
    const auto size = static_cast<std::size_t>(facts.st_size);
    auto* const map = static_cast<char*>(mmap(nullptr, size, PROT_READ, MAP_PRIVATE, file, 0));
    std::array<std::unique_ptr<double[]>, kColumns> columns;
    for (auto& column : columns) column = std::make_unique_for_overwrite<double[]>(kRows);
    const char* p = map;
    while (*p++ != '\n') {
    }
    for (std::size_t row = 0; row < kRows; ++row) {
      for (auto& column : columns) {
        std::uint64_t digits = 0;
        unsigned behind = 0;
        unsigned step = 0;
        for (;; ++p) {
          const auto digit = static_cast<unsigned>(*p - '0');
          if (digit < 10) {
            digits = digits * 10 + digit;
            behind += step;
          } else if (*p == '.') {
            step = 1;
          } else {
            break;
          }
        }
        column[row] = static_cast<double>(static_cast<std::int64_t>(digits)) / kPowers[behind];
        ++p;
      }
    }
    double sum = 0;
    state.PauseTiming();
    for (std::size_t row = 0; row < kRows; ++row) {
      for (auto& column : columns) sum += column[row];
    }
    if (sum != GetFile().GetSum()) state.SkipWithError("the floor reads other numbers");
    state.ResumeTiming();
    munmap(map, size);
    close(file);
  }
  SetRates(state);
}

void ReadTable(benchmark::State& state) {
  GetFile();
  for (auto _ : state) {
    auto opened = OpenTable(GetFile().GetPath(), {}, nullptr);
    state.PauseTiming();
    double sum = 0;
    for (int row = 0; row < kRows; ++row) {
      for (int column = 0; column < kColumns; ++column) sum += opened.table->GetValue(column, row);
    }
    if (sum != GetFile().GetSum()) state.SkipWithError("the table holds other numbers");
    state.ResumeTiming();
  }
  SetRates(state);
}

// What "tallyscope summary" does beside starting and printing.
void ReadAndSummarise(benchmark::State& state) {
  GetFile();
  for (auto _ : state) {
    auto opened = OpenTable(GetFile().GetPath(), {}, nullptr);
    double means = 0;
    for (int column = 0; column < kColumns; ++column) {
      means += Summarise(*opened.table, column, Quantiles::kBinned).mean;
    }
    const double expected = GetFile().GetSum() / kRows;
    if (std::abs(means - expected) > 1e-9 * expected) state.SkipWithError("the means are others");
  }
  SetRates(state);
}

BENCHMARK(FloorScan)->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime()->UseRealTime();
BENCHMARK(ReadTable)->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime()->UseRealTime();
BENCHMARK(ReadAndSummarise)->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime()->UseRealTime();

}  // namespace
}  // namespace tallyscope
