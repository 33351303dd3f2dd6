// SPDX-License-Identifier: MIT
#include "host/Summary.h"

#include <algorithm>
#include <ostream>

#include "host/Labels.h"
#include "host/Sentences.h"
#include "host/TextGrid.h"
#include "platform/core/NumberText.h"
#include "statistics/Stats_Univariate.h"

namespace tallyscope {

namespace {

constexpr int kShortDigits = 6;
constexpr int kFullDigits = 15;

// How often each code occurs in a column of texts, at code - 1.
std::vector<int> CountLabels(const CHostColumn& column, int stations) {
  std::vector<int> counts(column.labels.size());
  for (std::size_t row = 0; row < static_cast<std::size_t>(stations); ++row) {
    if (!column.IsValid(row)) continue;
    if (const auto label = FindLabel(column.GetValues()[row], counts.size())) ++counts[*label];
  }
  return counts;
}

void PrintLabels(const CHostColumn& column, int stations, std::ostream& out) {
  constexpr std::size_t kShown = 20;
  const auto counts = CountLabels(column, stations);
  out << Shown(column.name) << ": text, " << Counted(static_cast<long long>(counts.size()), "label", "labels");
  for (std::size_t i = 0; i < std::min(counts.size(), kShown); ++i) {
    out << (i == 0 ? ": " : ", ") << std::to_string(i + 1) << " " << Shortened(column.labels[i]) << " ("
        << std::to_string(counts[i]) << ")";
  }
  out << (counts.size() > kShown ? ", ...\n" : "\n");
}

void PrintLimits(const CHostColumn& column, std::ostream& out) {
  const auto& counts = column.counts;
  if (counts.belowDetection + counts.aboveDetection == 0) return;
  out << Shown(column.name) << ": ";
  if (counts.belowDetection > 0) out << Counted(counts.belowDetection, "value", "values") << " below detection";
  if (counts.aboveDetection > 0) {
    out << (counts.belowDetection > 0 ? ", " : "") << Counted(counts.aboveDetection, "value", "values")
        << " above detection";
  }
  out << "\n";
}

}  // namespace

const std::vector<FigureRow>& GetFigureRows() {
  static const std::vector<FigureRow> rows = {
      {"minimum", "Minimum", &ColumnSummary::minimum},
      {"maximum", "Maximum", &ColumnSummary::maximum},
      {"mean", "Mean", &ColumnSummary::mean},
      {"variance", "Variance", &ColumnSummary::variance},
      {"standardDeviation", "Standard deviation", &ColumnSummary::standardDeviation},
      {"ratio", "S/N ratio", &ColumnSummary::ratio},
      {"skewness", "Skewness", &ColumnSummary::skewness},
      {"median", "Median", &ColumnSummary::median},
      {"mode", "Mode", &ColumnSummary::mode},
      {"lowerQuartile", "Lower quartile", &ColumnSummary::lowerQuartile},
      {"upperQuartile", "Upper quartile", &ColumnSummary::upperQuartile},
      {"interquartileRange", "Interquartile range", &ColumnSummary::interquartileRange},
  };
  return rows;
}

ColumnSummary Summarise(CStats_Data& table, int dim, Quantiles quantiles) {
  CStats_Univariate figures;
  figures.Add(&table, dim);
  figures.Calculate(quantiles == Quantiles::kSorted ? 7 : 11, nullptr);
  ColumnSummary summary;
  summary.name = table.GetValueName(dim);
  summary.dim = dim;
  summary.total = figures.total;
  summary.valid = figures.valid;
  summary.invalid = figures.invalid;
  summary.minimum = figures.minimum;
  summary.maximum = figures.maximum;
  summary.mean = figures.mean;
  summary.variance = figures.variance;
  summary.standardDeviation = figures.standardDeviation;
  summary.ratio = figures.ratio;
  summary.skewness = figures.skewness;
  summary.median = figures.median;
  summary.mode = figures.mode;
  summary.lowerQuartile = figures.lowerQuartile;
  summary.upperQuartile = figures.upperQuartile;
  summary.interquartileRange = figures.interquartileRange;
  return summary;
}

std::vector<int> GetDims(CStats_Data& table) {
  std::vector<int> dims;
  for (int axis = 1; axis <= table.GetSpatialSize(); ++axis) dims.push_back(-axis);
  for (int field = 0; field < table.GetValueSize(); ++field) dims.push_back(field);
  return dims;
}

// Sort tables are let go of together: that touches every column, and is no work to do for each.
std::vector<ColumnSummary> Summarise(CStats_Data& table, const std::vector<int>& dims, Quantiles quantiles) {
  constexpr std::size_t kMostSorted = std::size_t{1} << 22;  // stations of all sort tables that are kept
  std::vector<ColumnSummary> columns;
  columns.reserve(dims.size());
  std::size_t sorted = 0;
  for (const int dim : dims) {
    columns.push_back(Summarise(table, dim, quantiles));
    sorted += static_cast<std::size_t>(table.GetSize());
    if (sorted < kMostSorted) continue;
    table.ClearSort();
    sorted = 0;
  }
  table.ClearSort();
  return columns;
}

void PrintFacts(const CString& file, OpenedTable& opened, std::ostream& out) {
  auto& table = *opened.table;
  out << Shown(file) << ": " << Counted(table.GetSize(), "station", "stations") << ", "
      << Counted(table.GetColumnCount(), "column", "columns") << ", " << opened.format << "\n";
  Say(out, "Axes: " + opened.axes);
  for (const auto& column : table.GetFileColumns()) PrintLimits(column, out);
  for (const auto& column : table.GetFileColumns()) {
    if (column.IsText()) PrintLabels(column, table.GetSize(), out);
  }
  for (const auto& warning : opened.warnings) Say(out, warning);
}

void PrintOverview(CHostTable& table, const std::vector<ColumnSummary>& columns, std::ostream& out) {
  static constexpr double ColumnSummary::*kShown[] = {&ColumnSummary::minimum,
                                                      &ColumnSummary::lowerQuartile,
                                                      &ColumnSummary::median,
                                                      &ColumnSummary::mean,
                                                      &ColumnSummary::upperQuartile,
                                                      &ColumnSummary::maximum,
                                                      &ColumnSummary::standardDeviation,
                                                      &ColumnSummary::skewness};
  CTextGrid grid;
  grid.AddRow({"field", "valid", "null", "minimum", "lower q.", "median", "mean", "upper q.", "maximum", "st. dev.",
               "skewness"});
  for (const auto& column : columns) {
    if (table.GetColumn(column.dim).IsText()) continue;
    std::vector<CString> cells = {Shortened(column.name), std::to_string(column.valid), std::to_string(column.invalid)};
    for (const auto figure : kShown)
      cells.push_back(column.valid > 0 ? FormatGeneral(column.*figure, kShortDigits) : "");
    grid.AddRow(std::move(cells));
  }
  grid.Print(out, "");
}

void PrintFigures(const std::vector<ColumnSummary>& columns, std::ostream& out) {
  constexpr std::size_t kBeside = 4;
  for (std::size_t first = 0; first < columns.size(); first += kBeside) {
    const auto last = std::min(columns.size(), first + kBeside);
    CTextGrid grid;
    const auto add = [&](const CString& caption, const auto& text) {
      std::vector<CString> cells = {caption};
      for (std::size_t i = first; i < last; ++i) cells.push_back(text(columns[i]));
      grid.AddRow(std::move(cells));
    };
    add("", [](const auto& column) { return Shortened(column.name); });
    add("Total", [](const auto& column) { return std::to_string(column.total); });
    add("Valid", [](const auto& column) { return std::to_string(column.valid); });
    add("Null", [](const auto& column) { return std::to_string(column.invalid); });
    for (const auto& row : GetFigureRows()) {
      add(row.caption, [&](const auto& column) { return FormatGeneral(column.*row.figure, kFullDigits); });
    }
    if (first > 0) out << "\n";
    grid.Print(out, "");
  }
}

}  // namespace tallyscope
