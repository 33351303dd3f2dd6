// SPDX-License-Identifier: MIT
#include "host/SelectionPlan.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <memory>
#include <ostream>
#include <string_view>

#include "host/CommandTable.h"
#include "host/Sentences.h"
#include "platform/core/Blanks.h"
#include "spatial/Stats_Spatial.h"
#include "statistics/Stats_RgnDataRange.h"
#include "statistics/Stats_RgnIndexRange.h"
#include "statistics/Stats_RgnInvert.h"
#include "statistics/Stats_RgnPoly.h"
#include "statistics/Stats_RgnSelAll.h"

namespace tallyscope {

namespace {

constexpr std::string_view kTo = "..";
constexpr std::string_view kIn = " in ";
constexpr int kCorners = 3;

// A whole number text, blanks around it aside; nothing leaves `value` as it is.
template <class Number>
bool ParseEnd(std::string_view text, Number& value) {
  text = TrimBlanks(text);
  if (text.empty()) return true;
  if (text.front() == '+') text.remove_prefix(1);
  Number read{};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), read);
  if (error != std::errc() || end != text.data() + text.size()) return false;
  if (!std::isfinite(static_cast<double>(read))) return false;
  value = read;
  return true;
}

// Numbers may hold dots themselves ("1.5...5"): the first ".." between two numbers parts them.
template <class Number>
bool ParseEnds(std::string_view text, Number& low, Number& high) {
  for (auto at = text.find(kTo); at != std::string_view::npos; at = text.find(kTo, at + 1)) {
    Number from = low;
    Number to = high;
    if (!ParseEnd(text.substr(0, at), from) || !ParseEnd(text.substr(at + kTo.size()), to)) continue;
    low = from;
    high = to;
    return low <= high;
  }
  return false;
}

// "FIELD in LOW..HIGH": a field may have " in " in its name, a range has not.
bool ParseWhere(const CString& text, CString& field, double& low, double& high) {
  const auto at = text.rfind(kIn);
  if (at == CString::npos) return false;
  field = TrimBlanks(std::string_view(text).substr(0, at));
  return !field.empty() && ParseRange(text.substr(at + kIn.size()), low, high);
}

// "A..B", or the number of one row.
bool ParseRows(const CString& text, int& first, int& last) {
  first = 1;
  last = std::numeric_limits<int>::max();
  if (text.find(kTo) != CString::npos) return ParseEnds(text, first, last) && first >= 1;
  first = 0;
  const bool isNumber = ParseEnd(text, first);
  last = first;
  return isNumber && first >= 1;
}

std::unique_ptr<CStats_Rgn> MakeWhere(const CString& text, const CHostTable& table, const CString& file,
                                      std::ostream& err) {
  CString field;
  double low = 0;
  double high = 0;
  ParseWhere(text, field, low, high);
  const int dim = FindDimForCommand(table, file, field, err);
  if (dim == CHostTable::kNoDim) return nullptr;
  auto region = std::make_unique<CStats_RgnDataRange>();
  region->field = dim;
  region->box.min[0] = low;
  region->box.max[0] = high;
  return region;
}

std::unique_ptr<CStats_Rgn> MakeRows(const CString& text, CHostTable& table, const CString& file, std::ostream& err) {
  int first = 0;
  int last = 0;
  ParseRows(text, first, last);
  // The region would bring both ends into the table and take its last row.
  if (first > table.GetSize()) {
    Say(err, file + " has only " + Counted(table.GetSize(), "row", "rows") + ", none in " + text + ".");
    return nullptr;
  }
  auto region = std::make_unique<CStats_RgnIndexRange>();
  region->box.min[0] = first - 1;
  region->box.max[0] = last - 1;
  return region;
}

// The two columns of a polygon's table that hold its corners: its axes, or else the first two of numbers.
std::vector<const CHostColumn*> FindCornerColumns(CHostTable& table) {
  std::vector<const CHostColumn*> columns;
  if (table.GetSpatialSize() >= 2) return {&table.GetColumn(-1), &table.GetColumn(-2)};
  for (const auto& column : table.GetFileColumns()) {
    if (!column.IsText() && columns.size() < 2) columns.push_back(&column);
  }
  return columns;
}

bool ReadCorners(const CString& file, std::vector<Point3>& corners, std::ostream& err) {
  OpenedTable opened = OpenForCommand(file, {}, err);
  if (!opened.table) return false;
  const auto columns = FindCornerColumns(*opened.table);
  if (columns.size() < 2) {
    Say(err, file + " is no polygon: it needs two columns of numbers.");
    return false;
  }
  if (opened.table->GetSize() < kCorners) {
    Say(err, file + " is no polygon: it has " + Counted(opened.table->GetSize(), "corner", "corners") +
                 ", and three are needed.");
    return false;
  }
  for (std::size_t row = 0; row < static_cast<std::size_t>(opened.table->GetSize()); ++row) {
    if (!columns[0]->IsValid(row) || !columns[1]->IsValid(row)) {
      Say(err, file + " is no polygon: corner " + std::to_string(row + 1) + " has no place.");
      return false;
    }
    corners.push_back({columns[0]->GetValues()[row], columns[1]->GetValues()[row], 0});
  }
  return true;
}

std::unique_ptr<CStats_Rgn> MakeInside(const CString& text, CHostTable& table, const CString& file,
                                       CStats_Spatial& spatial, std::ostream& err) {
  if (table.GetSpatialSize() < 2) {
    Say(err, file + " has no two axes for the polygon " + text + ": name them with --x and --y.");
    return nullptr;
  }
  auto region = std::make_unique<CStats_RgnPoly>();
  if (!ReadCorners(text, region->points, err)) return nullptr;
  region->SetDims(spatial.GetSpatialDimX(), spatial.GetSpatialDimY(), spatial.GetSpatialDimZ(),
                  spatial.GetSpatialDimCount());
  return region;
}

std::unique_ptr<CStats_Rgn> MakeRegion(const SelectionStep& step, CHostTable& table, const CString& file,
                                       CStats_Spatial& spatial, std::ostream& err) {
  switch (step.kind) {
    case SelectionStep::kWhere:
      return MakeWhere(step.text, table, file, err);
    case SelectionStep::kInside:
      return MakeInside(step.text, table, file, spatial, err);
    case SelectionStep::kRows:
      return MakeRows(step.text, table, file, err);
    default:
      return std::make_unique<CStats_RgnInvert>();
  }
}

}  // namespace

bool ParseRange(const CString& text, double& low, double& high) {
  low = -std::numeric_limits<double>::infinity();
  high = std::numeric_limits<double>::infinity();
  return ParseEnds(text, low, high);
}

void CSelectionPlan::Add(SelectionStep::Kind kind, const CString& text, bool takes) {
  std::size_t from = 0;
  if (kind == SelectionStep::kRows) {
    for (auto comma = text.find(','); comma != CString::npos; comma = text.find(',', from)) {
      steps_.push_back({kind, text.substr(from, comma - from), takes});
      from = comma + 1;
    }
  }
  steps_.push_back({kind, text.substr(from), takes});
}

std::vector<CString> CSelectionPlan::GetFiles() const {
  std::vector<CString> files;
  for (const auto& step : steps_) {
    if (step.kind == SelectionStep::kInside) files.push_back(step.text);
  }
  return files;
}

CString CSelectionPlan::Check() const {
  CString field;
  double low = 0;
  double high = 0;
  int first = 0;
  int last = 0;
  for (const auto& step : steps_) {
    if (step.kind == SelectionStep::kWhere && !ParseWhere(step.text, field, low, high)) {
      return Quoted(step.text) + " is no condition: write it like 'zinc in 200..500', the lower end first";
    }
    if (step.kind == SelectionStep::kRows && !ParseRows(step.text, first, last)) {
      return Quoted(step.text) +
             " is no row and no range of rows: write 3 or 1..50 or both as 3,1..50, the first row being 1";
    }
  }
  return {};
}

bool CSelectionPlan::Build(CHostTable& table, const CString& file, CStats_Spatial& spatial, std::ostream& err) const {
  if (!IsEmpty() && !steps_.front().takes && steps_.front().kind != SelectionStep::kInvert) {
    spatial.regions.Append(std::make_unique<CStats_RgnSelAll>());
  }
  for (const auto& step : steps_) {
    auto region = MakeRegion(step, table, file, spatial, err);
    if (!region) return false;
    region->include = step.takes;
    spatial.regions.Append(std::move(region));
  }
  return true;
}

}  // namespace tallyscope
