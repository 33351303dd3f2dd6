// SPDX-License-Identifier: MIT
#include "host/CsvWriter.h"

#include <charconv>

#include "host/Labels.h"
#include "host/NullRules.h"

namespace tallyscope {

namespace {

constexpr std::string_view kEmptyText = "\"\"";

// Whether a text would be taken for something else without quotes: for several cells, a number or a null.
bool NeedsQuotes(std::string_view text) {
  constexpr std::string_view kBlanks = " \t";
  if (text.empty() || text.find_first_of(",;\t\"\r\n") != std::string_view::npos) return true;
  if (kBlanks.find(text.front()) != std::string_view::npos || kBlanks.find(text.back()) != std::string_view::npos) {
    return true;
  }
  double value = 0;
  return CNullRules().Classify(text, value) != CellKind::kText;
}

bool IsFormula(std::string_view text) {
  if (text.empty() || std::string_view("=+@-\t\r\n").find(text.front()) == std::string_view::npos) return false;
  double value = 0;
  return text.front() != '-' || CNullRules().Classify(text, value) == CellKind::kText;
}

void AppendText(CString& line, std::string_view text, Formulas formulas) {
  if (formulas == Formulas::kGuarded && IsFormula(text))
    return AppendText(line, CString("'").append(text), Formulas::kKept);
  if (!NeedsQuotes(text)) {
    line += text;
    return;
  }
  line += '"';
  for (const char c : text) line.append(c == '"' ? 2 : 1, c);
  line += '"';
}

void AppendNumber(CString& line, double value) {
  char text[32];
  line.append(text, std::to_chars(text, text + sizeof text, value).ptr);
}

void AppendCell(CString& line, const CHostColumn& column, std::size_t row, Formulas formulas) {
  if (!column.IsValid(row)) return;
  const double value = column.GetValues()[row];
  if (column.IsText()) {
    const auto label = FindLabel(value, column.labels.size());
    if (label) AppendText(line, column.labels[*label], formulas);
  } else {
    AppendNumber(line, value);
  }
}

}  // namespace

bool WriteCsv(const CHostTable& table, const std::vector<int>& stations, Formulas formulas, const TextTarget& target) {
  CString line;
  for (const auto& column : table.GetFileColumns()) {
    if (&column != &table.GetFileColumns().front()) line += ',';
    AppendText(line, column.name, formulas);
  }
  line += '\n';
  if (!target(line)) return false;
  for (const int station : stations) {
    line.clear();
    for (const auto& column : table.GetFileColumns()) {
      if (&column != &table.GetFileColumns().front()) line += ',';
      AppendCell(line, column, static_cast<std::size_t>(station), formulas);
    }
    if (line.empty()) line = kEmptyText;  // a blank line would be no row
    line += '\n';
    if (!target(line)) return false;
  }
  return true;
}

}  // namespace tallyscope
