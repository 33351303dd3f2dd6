// SPDX-License-Identifier: MIT
#include "host/TextDialect.h"

#include <algorithm>
#include <map>
#include <vector>

#include "host/NullRules.h"
#include "host/TextCells.h"
#include "host/TextSource.h"
#include "host/TextTable.h"

namespace tallyscope {

namespace {

constexpr char kDelimiters[] = {'\t', ';', '|', ',', ' '};
constexpr char kNoDelimiter = '\n';  // a single column: ends a line, so never parts cells
constexpr std::size_t kSampleRows = 1000;
constexpr std::size_t kSampleBytes = std::size_t{64} << 10;
constexpr std::size_t kSampleLimit = std::size_t{16} << 20;

struct SampleCell {
  CString text;
  bool quoted;
};
using SampleRow = std::vector<SampleCell>;

struct Candidate {
  TextDialect dialect;
  double score = -1;
};

// 64 kB, or more where the first lines are so long that hardly any fits.
std::string_view TakeSample(CTextSource& source, std::size_t at) {
  for (std::size_t bytes = kSampleBytes;; bytes *= 4) {
    const auto sample = source.Look(at, bytes).substr(0, bytes);
    if (sample.size() < bytes || bytes >= kSampleLimit || std::count_if(sample.begin(), sample.end(), IsLineEnd) >= 4)
      return sample;
  }
}

// The rows of the sample. One that the sample cuts is left out, and what comes behind a fault.
std::vector<SampleRow> ReadSample(std::string_view sample, bool cut, char delimiter) {
  std::vector<SampleRow> rows;
  CTextCells cells(sample, delimiter);
  TextCell cell;
  while (rows.size() < kSampleRows && !cells.AtEnd()) {
    if (cells.SkipBlankLine()) continue;
    SampleRow row;
    do {
      const bool tooMany = row.size() > kMaxColumns;
      const CellFault fault = tooMany ? CellFault::kTooLong : cells.Next(cell);
      if (fault != CellFault::kNone) {
        // What is wrong in the first line is for the reader to say, with the delimiter that shows before it.
        if (fault == CellFault::kOpenQuote) row.push_back({{}, true});
        if (rows.empty() && (tooMany || fault == CellFault::kOpenQuote)) rows.push_back(std::move(row));
        return rows;
      }
      row.push_back({CString(cell.text), cell.quoted});
    } while (cell.end == CellEnd::kDelimiter);
    if (cell.end == CellEnd::kText && cut) break;
    rows.push_back(std::move(row));
  }
  return rows;
}

bool IsEmptyRow(const SampleRow& row) {
  return std::all_of(row.begin(), row.end(), [](const SampleCell& cell) { return cell.text.empty(); });
}

std::size_t MostFrequentWidth(const std::vector<SampleRow>& rows, std::size_t first) {
  std::map<std::size_t, int> widths;
  for (std::size_t i = first; i < rows.size(); ++i) ++widths[rows[i].size()];
  const auto most =
      std::max_element(widths.begin(), widths.end(), [](const auto& a, const auto& b) { return a.second < b.second; });
  return most == widths.end() ? 0 : most->first;
}

bool IsNumber(const CNullRules& rules, const CString& text) {
  double value = 0;
  const CellKind kind = rules.Classify(text, value);
  return kind == CellKind::kNumber || kind == CellKind::kBelowDetection || kind == CellKind::kAboveDetection;
}

bool HasHeadings(const SampleRow& row, const CNullRules& rules) {
  return std::none_of(row.begin(), row.end(),
                      [&](const SampleCell& cell) { return !cell.quoted && IsNumber(rules, cell.text); });
}

struct NumberShare {
  int cells = 0;  // not null
  int point = 0;  // numbers with a decimal point, and with none
  int comma = 0;  // numbers with a decimal comma, and with none
};

NumberShare CountNumbers(const std::vector<SampleRow>& rows, const CNullRules& point, const CNullRules& comma) {
  NumberShare share;
  double value = 0;
  for (std::size_t i = rows.size() > 1 ? 1 : 0; i < rows.size(); ++i) {
    for (const auto& cell : rows[i]) {
      if (point.Classify(cell.text, value) == CellKind::kEmpty) continue;
      ++share.cells;
      share.point += IsNumber(point, cell.text) ? 1 : 0;
      share.comma += IsNumber(comma, cell.text) ? 1 : 0;
    }
  }
  return share;
}

// Share of the rows that have the usual number of cells. The headings count as a row.
double GetConsistency(const std::vector<SampleRow>& rows, const TextDialect& dialect) {
  const auto same =
      std::count_if(rows.begin(), rows.end(), [&](const SampleRow& row) { return row.size() == dialect.columns; });
  return static_cast<double>(same) / static_cast<double>(rows.size());
}

bool HasRowNames(const std::vector<SampleRow>& rows, std::size_t width) {
  if (rows.size() < 2 || rows[0].size() < 2 || rows[0].size() + 1 != width) return false;
  // With a delimiter at the end of each row the last cell is the odd one.
  return std::any_of(rows.begin() + 1, rows.end(), [](const SampleRow& row) { return !row.back().text.empty(); });
}

// A column on its own has numbers, or there is no reason to take it for one. Delimiters in the first line speak against
// it.
double ScoreColumn(double numbers, std::string_view firstLine) {
  const double score = 0.3 + 1.7 * numbers;
  return firstLine.find_first_of(",;|\t") == std::string_view::npos ? score : score / 3;
}

Candidate Judge(std::string_view sample, bool cut, char delimiter, const ReaderOptions& options) {
  Candidate candidate;
  auto& dialect = candidate.dialect;
  const auto rows = ReadSample(sample, cut, delimiter);
  dialect.delimiter = delimiter;
  if (std::all_of(rows.begin(), rows.end(), IsEmptyRow)) return candidate;

  const CNullRules point({}, '.');
  const CNullRules comma({}, ',');
  const NumberShare share = CountNumbers(rows, point, comma);
  dialect.decimal = options.decimal.value_or(delimiter != ',' && share.comma > share.point ? ',' : '.');
  const auto& rules = dialect.decimal == ',' ? comma : point;
  dialect.headings = options.headings.value_or(HasHeadings(rows[0], rules));
  dialect.columns = MostFrequentWidth(rows, dialect.headings && rows.size() > 1 ? 1 : 0);
  dialect.rowNames = dialect.headings && HasRowNames(rows, dialect.columns);
  const int numbers = dialect.decimal == ',' ? share.comma : share.point;
  const double fraction = share.cells > 0 ? static_cast<double>(numbers) / share.cells : 0;
  const std::size_t width = std::max(dialect.columns, rows[0].size());
  if (delimiter == kNoDelimiter) {
    candidate.score = ScoreColumn(fraction, rows[0][0].text);
  } else if (width > 1) {
    candidate.score = GetConsistency(rows, dialect) * (1 + fraction);
  }
  return candidate;
}

}  // namespace

TextDialect GuessDialect(CTextSource& source, std::size_t at, const ReaderOptions& options) {
  const auto sample = TakeSample(source, at);
  const bool cut = at + sample.size() < source.GetSize();
  if (options.delimiter) return Judge(sample, cut, *options.delimiter, options).dialect;
  Candidate best = Judge(sample, cut, kNoDelimiter, options);
  bool column = true;
  for (const char delimiter : kDelimiters) {
    const Candidate candidate = Judge(sample, cut, delimiter, options);
    if (candidate.score < 0 || candidate.score < best.score || (candidate.score == best.score && !column)) continue;
    best = candidate;
    column = false;
  }
  return best.dialect;
}

CString GetDelimiterName(char delimiter) {
  switch (delimiter) {
    case ',':
      return "comma";
    case ';':
      return "semicolon";
    case '\t':
      return "tab";
    case '|':
      return "bar";
    case ' ':
      return "blanks";
    default:
      return CString("'") + delimiter + "'";
  }
}

}  // namespace tallyscope
