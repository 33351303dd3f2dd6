// SPDX-License-Identifier: MIT
#pragma once

#include <iosfwd>
#include <vector>

#include "host/OpenTable.h"

namespace tallyscope {

enum class Quantiles { kSorted, kBinned };  // which histogram they come from

// The figures of one column, copied out of its calculator.
struct ColumnSummary {
  CString name;
  int dim = 0;
  int total = 0;
  int valid = 0;
  int invalid = 0;
  double minimum = 0;
  double maximum = 0;
  double mean = 0;
  double variance = 0;
  double standardDeviation = 0;
  double ratio = 0;
  double skewness = 0;
  double median = 0;
  double mode = 0;
  double lowerQuartile = 0;
  double upperQuartile = 0;
  double interquartileRange = 0;
};

struct FigureRow {
  const char* key;  // in JSON
  const char* caption;
  double ColumnSummary::*figure;
};
const std::vector<FigureRow>& GetFigureRows();  // the doubles, in the order of JSON

ColumnSummary Summarise(CStats_Data& table, int dim, Quantiles quantiles);
std::vector<ColumnSummary> Summarise(CStats_Data& table, const std::vector<int>& dims, Quantiles quantiles);

std::vector<int> GetDims(CStats_Data& table);  // of all its columns, axes first

// What is told of a table beside its figures: size, axes, nulls of special kinds, labels, warnings.
void PrintFacts(const CString& file, OpenedTable& opened, std::ostream& out);
void PrintOverview(CHostTable& table, const std::vector<ColumnSummary>& columns, std::ostream& out);  // a line a field
void PrintFigures(const std::vector<ColumnSummary>& columns, std::ostream& out);  // all figures, 15 digits
void PrintJson(const CString& file, CStats_Data& table, const std::vector<ColumnSummary>& columns, std::ostream& out);

}  // namespace tallyscope
