// SPDX-License-Identifier: MIT
#include "host/TextTable.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "host/Sentences.h"
#include "host/TextDialect.h"
#include "host/TextEncoding.h"
#include "host/TextRows.h"
#include "host/TextSource.h"
#include "statistics/ProgressSink.h"

namespace tallyscope {

namespace {

class CTextTableReader : public CTableReader {
 public:
  CTextTableReader(CTextSource& source, const CString& file, const ReaderOptions& options, TextLayout layout)
      : source_(source),
        file_(file),
        options_(options),
        layout_(std::move(layout)),
        at_(layout_.at),
        line_(layout_.line) {
    ReaderOptions asked = options;
    if (!layout_.names.empty()) asked.headings = false;
    dialect_ = GuessDialect(source, layout_.at, asked);
  }

  bool Start(std::size_t layer, LayerStart& start) override;
  RowsEnd Fill(CTableBuilder& columns, CProgressSink* progress) override;
  CString DescribeFormat() const override;

 private:
  bool FindNames();
  bool ReadHeadings();
  void NameColumns();
  std::size_t GuessRows() const;

  CTextSource& source_;
  const CString& file_;
  const ReaderOptions& options_;
  TextLayout layout_;
  std::size_t at_;
  long line_;
  TextDialect dialect_;
  std::vector<CString> names_;
  bool latin1_ = false;
};

bool CTextTableReader::FindNames() {
  CTextCells cells(source_, dialect_.delimiter);
  cells.GoTo(at_, line_);
  while (cells.SkipBlankLine()) {
  }
  at_ = cells.GetPosition();
  line_ = cells.line;
  if (cells.AtEnd())
    return Refuse(file_ + (layout_.names.empty() ? " holds nothing but blank lines." : " has headings but no rows."));
  if (!layout_.names.empty()) {
    names_ = layout_.names;
    if (dialect_.delimiter == '\n' && names_.size() > 1) dialect_.delimiter = ' ';  // rows of one cell each
  } else if (!dialect_.headings) {
    names_.resize(std::max<std::size_t>(dialect_.columns, 1));
    warnings_.push_back("No headings: the columns are called Column 1" +
                        (names_.size() > 1 ? " to Column " + std::to_string(names_.size()) + "." : "."));
  } else if (!ReadHeadings()) {
    return false;
  }
  if (names_.size() > kMaxColumns) return Refuse(file_ + " has more than " + std::to_string(kMaxColumns) + " columns.");
  NameColumns();
  return true;
}

bool CTextTableReader::ReadHeadings() {
  CTextCells cells(source_, dialect_.delimiter);
  cells.GoTo(at_, line_);
  TextCell cell;
  if (dialect_.rowNames) names_.emplace_back();
  do {
    const CellFault fault = names_.size() > kMaxColumns ? CellFault::kTooLong : cells.Next(cell);
    const CString place =
        file_ + ", line " + std::to_string(cells.line) + ", column " + std::to_string(names_.size() + 1);
    if (names_.size() > kMaxColumns)
      return Refuse(place + ": there are more than " + std::to_string(kMaxColumns) + " headings.");
    if (fault == CellFault::kOpenQuote) return Refuse(place + ": the quote that opens here is never closed.");
    if (fault == CellFault::kTooLong) return Refuse(place + ": a heading that starts here is longer than 1 MB.");
    if (fault == CellFault::kZeroByte) return Refuse(place + ": a zero byte, which no text holds.");
    latin1_ = latin1_ || !IsUtf8(cell.text);
    names_.push_back(IsUtf8(cell.text) ? CString(cell.text) : Latin1ToUtf8(cell.text));
  } while (cell.end == CellEnd::kDelimiter);
  // A delimiter at the end of the headings alone makes no column.
  while (names_.size() > std::max<std::size_t>(dialect_.columns, 1) && names_.back().empty()) names_.pop_back();
  at_ = cells.GetPosition();
  line_ = cells.line;
  while (cells.SkipBlankLine()) {
  }
  return !cells.AtEnd() || Refuse(file_ + " has headings but no rows.");
}

// Every column gets a name of its own: "Column 3" where there is none, "Cu (2)" for the second "Cu".
void CTextTableReader::NameColumns() {
  constexpr std::size_t kReported = 20;
  const std::size_t warnings = warnings_.size();
  std::unordered_set<CString> taken(names_.begin(), names_.end());
  std::unordered_map<CString, int> seen;
  const auto numbered = [&](const CString& name, int& number) {
    CString free;
    do free = name + " (" + std::to_string(++number) + ")";
    while (!taken.insert(free).second);
    return free;
  };
  for (std::size_t i = 0; i < names_.size(); ++i) {
    if (names_[i].empty()) {
      const CString name = "Column " + std::to_string(i + 1);
      int number = 1;
      names_[i] = taken.insert(name).second ? name : numbered(name, number);
      continue;
    }
    const auto [first, isFirst] = seen.emplace(names_[i], 1);
    if (isFirst) continue;
    const CString name = numbered(names_[i], first->second);
    warnings_.push_back("A second column is called " + names_[i] + ": column " + std::to_string(i + 1) + " goes by " +
                        name + ".");
    names_[i] = name;
  }
  if (warnings_.size() <= warnings + kReported) return;
  const auto more = static_cast<long long>(warnings_.size() - warnings - kReported);
  warnings_.resize(warnings + kReported);
  warnings_.push_back(Counted(more, "further column is", "further columns are") +
                      " called as one before, and numbered likewise.");
}

// From the length of the first rows, and never more than the file can hold.
std::size_t CTextTableReader::GuessRows() const {
  constexpr std::size_t kSample = std::size_t{64} << 10;
  constexpr std::size_t kMost = std::size_t{1} << 24;
  const auto rest = static_cast<double>(source_.GetSize() - at_);
  const auto sample = source_.Look(at_, kSample).substr(0, kSample);
  auto lines = static_cast<std::size_t>(std::count(sample.begin(), sample.end(), '\n'));
  if (lines == 0) lines = static_cast<std::size_t>(std::count(sample.begin(), sample.end(), '\r'));
  const double share = rest / static_cast<double>(std::max<std::size_t>(sample.size(), 1));
  const double rows = static_cast<double>(lines) * share * 1.01 + 16;
  const std::size_t possible = (source_.GetSize() - at_) / names_.size() + 16;
  return std::min({static_cast<std::size_t>(std::min(rows, 1e15)), possible, kMost});
}

CString CTextTableReader::DescribeFormat() const {
  if (!layout_.format.empty()) return layout_.format;
  const CString delimiter = GetDelimiterName(dialect_.delimiter);
  CString format = names_.size() == 1          ? "text of one column"
                   : dialect_.delimiter == ' ' ? "text separated by blanks"
                                               : delimiter + "-separated text";
  if (dialect_.decimal == ',') format += ", decimal comma";
  if (latin1_) format += ", Latin-1";
  return format;
}

bool CTextTableReader::Start(std::size_t, LayerStart& start) {
  if (!FindNames()) return false;
  start.names = names_;
  start.rules = CNullRules(options_.nulls, dialect_.decimal);
  start.rules.SetNullSize(layout_.nullSize);
  start.rows = GuessRows();
  return true;
}

RowsEnd CTextTableReader::Fill(CTableBuilder& columns, CProgressSink* progress) {
  CTextRows rows(source_, file_, dialect_, columns, progress);
  RowsEnd end = rows.Read(at_, line_);
  if (end == RowsEnd::kDone) {
    rows.AddWarnings(warnings_);
    const auto texts = columns.FindColumnsToReread();
    if (!texts.empty()) {
      if (progress != nullptr) progress->SetTask("Reading text columns", 0);
      end = rows.Reread(at_, line_, texts);
    }
  }
  if (end == RowsEnd::kFault) Refuse(rows.GetError());
  latin1_ = latin1_ || columns.IsLatin1();
  return end;
}

}  // namespace

std::unique_ptr<CTableReader> MakeTextReader(CTextSource& source, const CString& file, const ReaderOptions& options,
                                             TextLayout layout) {
  return std::make_unique<CTextTableReader>(source, file, options, std::move(layout));
}

}  // namespace tallyscope
