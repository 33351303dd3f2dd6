// SPDX-License-Identifier: MIT
#include <algorithm>
#include <optional>
#include <ostream>

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include "host/Choice.h"
#include "host/Command.h"
#include "host/ModelReport.h"
#include "host/TextGrid.h"
#include "platform/core/NumberText.h"
#include "spatial/Stats_ModelVariogram.h"
#include "spatial/Stats_VariogramData.h"

namespace tallyscope {

namespace {

constexpr int kLags = 50;
constexpr int kDigits = 8;

class CModelCommand : public CCommand {
 public:
  void AddOptions(CLI::App& app) override;
  CString CheckOptions() const override;
  int Run(std::ostream& out, std::ostream& err) override;

 private:
  void Sample(const CStats_ModelVariogram& model, CStats_VariogramData& curve) const;
  void PrintText(const CStats_ModelVariogram& model, std::ostream& out) const;
  void PrintJson(const CStats_ModelVariogram& model, std::ostream& out) const;

  CString file_;
  std::optional<double> direction_;
  std::optional<double> dip_;
  std::optional<double> range_;
  int dimension_ = 2;
  bool json_ = false;
};

// Half as far again as the longest range of a nest; the least that shows a curve and what becomes of it.
double GetShownRange(const CStats_ModelVariogram& model) {
  double longest = 0;
  for (const auto& nest : model.nests) longest = std::max(longest, nest.type == 0 ? 0.0 : nest.primaryRange);
  return longest > 0 ? 1.5 * longest : 2000.0;
}

void CModelCommand::AddOptions(CLI::App& app) {
  app.add_option("FILE", file_, "the model's file")->required()->type_name("FILE.mvf");
  app.add_option("--direction", direction_, "bearing of the curve, clockwise from north; all directions without it")
      ->type_name("DEGREES")
      ->check(CLI::Range(0.0, 360.0));
  app.add_option("--dip", dip_, "dip of the curve, positive downward")
      ->type_name("DEGREES")
      ->check(CLI::Range(-90.0, 90.0));
  app.add_option("--range", range_, "longest distance; half as far again as the model's longest range without it")
      ->type_name("R")
      ->check(AboveZero());
  AddChoice<int>(app, "--dimension", {{"2", 2}, {"3", 3}},
                 "whether the model is of a plane (so without this) or a space",
                 [this](int dimension) { dimension_ = dimension; });
  app.add_flag("--json", json_, "print JSON, with all digits");
}

CString CModelCommand::CheckOptions() const {
  if (dip_ && !direction_) return "--dip goes with --direction";
  if (dip_ && dimension_ == 2) return "--dip goes with --dimension 3";
  return {};
}

int CModelCommand::Run(std::ostream& out, std::ostream& err) {
  CStats_ModelVariogram model;
  if (!ReadModelForCommand(file_, dimension_, model, err)) return kExitBadInput;
  if (!range_) range_ = GetShownRange(model);
  if (json_) {
    PrintJson(model, out);
  } else {
    PrintText(model, out);
  }
  return kExitDone;
}

void CModelCommand::Sample(const CStats_ModelVariogram& model, CStats_VariogramData& curve) const {
  if (direction_) {
    model.GetDirectionalData(curve, *direction_, dip_.value_or(0), *range_);
  } else {
    model.GetAveragedData(curve, kLags, *range_);
  }
}

void CModelCommand::PrintText(const CStats_ModelVariogram& model, std::ostream& out) const {
  PrintModel(model, out);
  out << "\n";
  if (direction_) {
    out << "Direction " << FormatGeneral(*direction_, kDigits);
    if (dip_) out << ", dip " << FormatGeneral(*dip_, kDigits);
    out << "\n";
  } else {
    out << "Mean of all directions\n";
  }
  CStats_VariogramData curve;
  Sample(model, curve);
  CTextGrid grid;
  grid.AddRow({"lag", "moment of inertia", "covariance"});
  for (std::size_t i = 0; i < curve.lag.size(); ++i) {
    grid.AddRow({FormatGeneral(curve.lag[i], kDigits), FormatGeneral(curve.momentOfInertia[i], kDigits),
                 FormatGeneral(curve.covariance[i], kDigits)});
  }
  grid.Print(out, "");
}

void CModelCommand::PrintJson(const CStats_ModelVariogram& model, std::ostream& out) const {
  using Json = nlohmann::ordered_json;
  CStats_VariogramData curve;
  Sample(model, curve);
  const auto optional = [](const std::optional<double>& value) { return value ? Json(*value) : Json(nullptr); };
  Json report = {{"file", file_}};
  report.update(DescribeModel(model));
  report["curve"] = {{"direction", optional(direction_)},
                     {"dip", direction_ ? Json(dip_.value_or(0)) : Json(nullptr)},
                     {"range", *range_},
                     {"lag", curve.lag},
                     {"momentOfInertia", curve.momentOfInertia},
                     {"covariance", curve.covariance}};
  out << report.dump(2, ' ', false, Json::error_handler_t::replace) << "\n";
}

}  // namespace

std::unique_ptr<CCommand> MakeModelCommand() {
  return std::make_unique<CModelCommand>();
}

}  // namespace tallyscope
