// SPDX-License-Identifier: MIT
#include "host/BivariateReport.h"

#include <cassert>
#include <ostream>

#include <nlohmann/json.hpp>

#include "host/HostTable.h"
#include "host/Sentences.h"
#include "host/TextGrid.h"
#include "platform/core/NumberText.h"
#include "statistics/Analysis.h"

namespace tallyscope {

namespace {

constexpr int kBinnedQuantiles = 8;
constexpr int kFigureDigits = 15;
constexpr int kCurveDigits = 8;

CString Figure(double value) {
  return FormatGeneral(value, kFigureDigits);
}

CString Line(const CString& of, const std::array<double, 2>& line, const CString& on) {
  const bool falls = line[1] < 0;
  return Shown(of) + " = " + FormatGeneral(line[0], kCurveDigits) + " " + Shown(on) + (falls ? " - " : " + ") +
         FormatGeneral(falls ? -line[1] : line[1], kCurveDigits);
}

}  // namespace

CBivariateReport::CBivariateReport(CHostTable& table, int key, int ancillary)
    : key_(table.GetValueName(key)), ancillary_(table.GetValueName(ancillary)) {
  session_.Fill(&table, false);
  CAnalysis analysis(session_, /*picksStations=*/false);
  [[maybe_unused]] const bool started = analysis.Start(CTallyscope::eBivariate, key, ancillary, nullptr);
  assert(started);  // both fields have been found in the table
  pair_ = analysis.GetBivariate();
}

std::vector<std::pair<double, double>> CBivariateReport::GetQuantiles() {
  std::vector<std::pair<double, double>> quantiles;
  const bool known = pair_->xLink->Calculate(kBinnedQuantiles, nullptr);
  if (!pair_->yLink->Calculate(kBinnedQuantiles, nullptr) || !known) return quantiles;
  for (int percent = 5; percent <= 95; percent += 5) {
    quantiles.emplace_back(pair_->xLink->binnedHistogram.GetPercentile(percent / 100.0),
                           pair_->yLink->binnedHistogram.GetPercentile(percent / 100.0));
  }
  return quantiles;
}

void CBivariateReport::PrintFigures(std::ostream& out) {
  CTextGrid fields;
  fields.AddRow({"", Shortened(key_), Shortened(ancillary_)});
  fields.AddRow({"Minimum", Figure(pair_->xMinimum), Figure(pair_->yMinimum)});
  fields.AddRow({"Maximum", Figure(pair_->xMaximum), Figure(pair_->yMaximum)});
  fields.AddRow({"Mean", Figure(pair_->xMean), Figure(pair_->yMean)});
  fields.Print(out, "");
  out << "\n";
  CTextGrid both;
  both.AddRow({"Covariance", Figure(pair_->covariance)});
  both.AddRow({"Correlation", Figure(pair_->correlation)});
  both.AddRow({"Rank correlation", Has(kRank) ? Figure(pair_->rankCorrelation) : "too large to sort"});
  both.AddRow({"Moment of inertia", Figure(pair_->inertia)});
  both.Print(out, "");
  out << "\nRegression: " << Line(ancillary_, pair_->yOnX, key_) << "\n            "
      << Line(key_, pair_->xOnY, ancillary_) << "\nOn show:    "
      << (pair_->vertical ? Shown(key_) + " = " + FormatGeneral(pair_->displayLine[1], kCurveDigits)
                          : Line(ancillary_, pair_->displayLine, key_))
      << "\n";
}

// Both curves have a point for each window, so they stand side by side.
void CBivariateReport::PrintCurves(std::ostream& out) {
  const CString key = Shortened(key_);
  const CString ancillary = Shortened(ancillary_);
  CTextGrid grid;
  grid.AddRow({key, "mean " + ancillary, ancillary, "mean " + key});
  for (std::size_t i = 0; i < pair_->expectationX.size(); ++i) {
    std::vector<CString> cells;
    for (const auto* curve :
         {&pair_->expectationX, &pair_->expectationYGivenX, &pair_->expectationY, &pair_->expectationXGivenY}) {
      cells.push_back(FormatGeneral((*curve)[i], kCurveDigits));
    }
    grid.AddRow(std::move(cells));
  }
  out << "\nConditional expectation\n";
  grid.Print(out, "");
}

void CBivariateReport::PrintQuantiles(std::ostream& out) {
  CTextGrid grid;
  grid.AddRow({"", Shortened(key_), Shortened(ancillary_)});
  int percent = 0;
  for (const auto& [x, y] : GetQuantiles()) {
    grid.AddRow({std::to_string(percent += 5) + " %", FormatGeneral(x, kCurveDigits), FormatGeneral(y, kCurveDigits)});
  }
  out << "\nQuantiles\n";
  grid.Print(out, "");
}

void CBivariateReport::PrintText(std::ostream& out) {
  out << Counted(pair_->valid, "station", "stations") << " of " << pair_->total << " with both " << Quoted(key_)
      << " and " << Quoted(ancillary_) << "\n\n";
  if (pair_->valid == 0) return;
  PrintFigures(out);
  if (Has(kExpectation)) PrintCurves(out);
  PrintQuantiles(out);
}

void CBivariateReport::PrintJson(std::ostream& out) {
  using Json = nlohmann::ordered_json;
  const auto curve = [this](const std::vector<double>& values) {
    return Has(kExpectation) ? Json(values) : Json(nullptr);
  };
  const Json report = {{"key", key_},
                       {"ancillary", ancillary_},
                       {"total", pair_->total},
                       {"valid", pair_->valid},
                       {"invalid", pair_->invalid},
                       {"xMinimum", pair_->xMinimum},
                       {"yMinimum", pair_->yMinimum},
                       {"xMaximum", pair_->xMaximum},
                       {"yMaximum", pair_->yMaximum},
                       {"xMean", pair_->xMean},
                       {"yMean", pair_->yMean},
                       {"covariance", pair_->covariance},
                       {"correlation", pair_->correlation},
                       {"inertia", pair_->inertia},
                       {"vertical", pair_->vertical},
                       {"yOnX", pair_->yOnX},
                       {"xOnY", pair_->xOnY},
                       {"displayLine", pair_->displayLine},
                       {"rankCorrelation", Has(kRank) ? Json(pair_->rankCorrelation) : Json(nullptr)},
                       {"expectationX", curve(pair_->expectationX)},
                       {"expectationYGivenX", curve(pair_->expectationYGivenX)},
                       {"expectationXGivenY", curve(pair_->expectationXGivenY)},
                       {"expectationY", curve(pair_->expectationY)},
                       {"qq", GetQuantiles()}};
  out << report.dump(2, ' ', false, Json::error_handler_t::replace) << "\n";
}

}  // namespace tallyscope
