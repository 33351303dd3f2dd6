// SPDX-License-Identifier: MIT
#include <algorithm>
#include <ostream>

#include <CLI/CLI.hpp>

#include "host/CancellableProgress.h"
#include "host/Choice.h"
#include "host/Command.h"
#include "host/CommandTable.h"
#include "host/ModelReport.h"
#include "host/OutputTargets.h"
#include "host/ReaderFlags.h"
#include "host/Sentences.h"
#include "host/VariogramReport.h"
#include "host/VariogramStations.h"
#include "spatial/ModelVariogramFile.h"

namespace tallyscope {

namespace {

constexpr int kDefaultWidth = 20;

class CVariogramCommand : public CCommand {
 public:
  void AddOptions(CLI::App& app) override;
  CString CheckOptions() const override;
  int Run(std::ostream& out, std::ostream& err) override;

 private:
  void AddCurves(CLI::App& app);
  void AddModel(CLI::App& app);
  void TellLayout(CHostTable& table, int dim, std::ostream& err) const;
  bool Calculate(CVariogramReport& report, std::ostream& err) const;
  bool Save(CVariogramReport& report, std::ostream& err) const;

  VariogramRequest request_;
  bool force_ = false;
  bool strayDip_ = false;  // --dip or --width in front of every --direction
};

void CVariogramCommand::AddOptions(CLI::App& app) {
  app.add_option("FILE", request_.file, "the table; '-' is standard input")->required();
  app.add_option("--field", request_.field, "the field, or axis, whose variogram is computed")
      ->required()
      ->type_name("NAME");
  app.add_option("--range", request_.range, "longest distance of a pair; without it from the spacing of the stations")
      ->type_name("R")
      ->check(AboveZero());
  app.add_option(
         "--samples", request_.samples,
         "take every n-th station, n being the number of stations over N without its fraction, so that N to 2 N are "
         "left; all without it")
      ->type_name("N")
      ->check(AboveZero());
  app.add_flag("--covariance", request_.covariance, "print the covariance beside the moment of inertia");
  app.add_option("--error-variance", request_.errorDistance, "the variance among neighbours closer than R")
      ->type_name("R")
      ->check(AboveZero());
  AddChoice<GridKind>(app, "--grid", {{"polar", GridKind::kPolar}, {"cartesian", GridKind::kCartesian}},
                      "the cells that the pairs were counted in: a summary, or all of them with --json",
                      [this](GridKind grid) { request_.grid = grid; });
  app.add_flag("--json", request_.json, "print JSON, with all digits");
  AddCurves(app);
  AddModel(app);
  AddReaderFlags(app, request_.reader);
}

// Each --direction begins a curve; the options behind it are that curve's.
void CVariogramCommand::AddCurves(CLI::App& app) {
  const CString group = "Curves beside that of all directions";
  const auto add = [&](const char* name, const char* text, double low, double high, auto set) {
    app.add_option_function<double>(name, set, text)
        ->type_name("DEGREES")
        ->group(group)
        ->check(CLI::Range(low, high))
        ->trigger_on_parse();
  };
  const auto onLast = [this](auto set) {
    return [this, set](const double& degrees) {
      strayDip_ = strayDip_ || request_.curves.empty();
      if (!strayDip_) set(request_.curves.back(), degrees);
    };
  };
  add("--direction", "a curve in this bearing, clockwise from north; may be given several times", 0, 360,
      [this](const double& degrees) {
        request_.curves.push_back({degrees, 0, kDefaultWidth});
      });
  add("--dip", "dip of the direction in front of it, positive downward; 0 without it", -90, 90,
      onLast([](CurveRequest& curve, double degrees) { curve.dip = degrees; }));
  app.add_option_function<int>(
         "--width",
         [onLast](const int& degrees) {
           onLast([](CurveRequest& curve, double width) { curve.width = static_cast<int>(width); })(degrees);
         },
         "opening of the direction in front of it, 20 without it; 180 takes all directions")
      ->type_name("DEGREES")
      ->group(group)
      ->check(CLI::Range(2, kAllDirections))
      ->trigger_on_parse();
}

void CVariogramCommand::AddModel(CLI::App& app) {
  const CString group = "Model";
  app.add_option("--model", request_.modelFile, "a model whose curves stand beside the sample's")
      ->type_name("FILE.mvf")
      ->group(group);
  app.add_flag("--fit", request_.fit, "make the model to start from: a straight line through the sample's curve")
      ->group(group);
  app.add_option("-o,--output", request_.target, "the file that gets the fitted model")
      ->type_name("FILE.mvf")
      ->group(group);
  AddForceFlag(app, force_);
}

CString CVariogramCommand::CheckOptions() const {
  if (strayDip_) return "--dip and --width stand behind the --direction that they belong to";
  if (request_.fit && !request_.modelFile.empty()) return "--fit makes a model and --model reads one: give one of them";
  if (!request_.target.empty() && !request_.fit) return "-o goes with --fit: it gets the fitted model";
  if (request_.target == "-") return "-o needs the name of a file: standard output has the report";
  return CheckReaderFlags(request_.reader);
}

int CVariogramCommand::Run(std::ostream& out, std::ostream& err) {
  if (!MayWrite({{request_.file}, {request_.target}}, force_, err)) return kExitBadInput;
  OpenedTable opened = OpenForCommand(request_.file, request_.reader, err);
  if (!opened.table) return kExitBadInput;
  auto& table = *opened.table;
  const int dim = FindDimForCommand(table, request_.file, request_.field, err);
  if (dim == CHostTable::kNoDim) return kExitBadInput;
  if (table.GetSpatialSize() == 0) {
    Say(err, request_.file + " has no axes, and a variogram needs distances; --x and --y name the axes.");
    return kExitBadInput;
  }
  if (request_.HasDips() && table.GetSpatialSize() < 3) {
    Say(err,
        "--dip needs three axes; " + request_.file + " has " + Counted(table.GetSpatialSize(), "axis", "axes") + ".");
    return kExitBadInput;
  }
  for (const auto& warning : opened.warnings) Say(err, warning);
  TellLayout(table, dim, err);
  CVariogramReport report(table, dim, request_);
  if (!request_.modelFile.empty() &&
      !ReadModelForCommand(request_.modelFile, table.GetSpatialSize(), report.UseModel(), err)) {
    return kExitBadInput;
  }
  if (!Calculate(report, err)) return CCancellableProgress::IsCancelled() ? kExitCancelled : kExitBadInput;
  if (!Save(report, err)) return kExitBadInput;
  if (request_.json) {
    report.PrintJson(out);
  } else {
    report.PrintText(out);
  }
  return kExitDone;
}

void CVariogramCommand::TellLayout(CHostTable& table, int dim, std::ostream& err) const {
  const StationLayout layout = FindStationLayout(table, dim);
  if (layout == StationLayout::kFewOrSpread) return;
  Say(err, "All stations of " + request_.file + " with a value lie " +
               (layout == StationLayout::kOneLine ? "on one line: there are no pairs in other directions."
                                                  : "in one place: no distance is above 0."));
}

bool CVariogramCommand::Calculate(CVariogramReport& report, std::ostream& err) const {
  {
    CCancellableProgress progress(err);
    if (report.Calculate(&progress)) return true;
  }
  Say(err, CCancellableProgress::IsCancelled()
               ? CString("Cancelled.")
               : "The pairs of " + request_.file + " cannot be searched by their places.");
  return false;
}

bool CVariogramCommand::Save(CVariogramReport& report, std::ostream& err) const {
  if (request_.target.empty()) return true;
  const Status saved = SaveToFile(report.UseModel(), request_.target);
  if (!saved.IsGood()) Say(err, OnOneLine(saved.GetError()));
  return saved.IsGood();
}

}  // namespace

bool VariogramRequest::HasDips() const {
  return std::any_of(curves.begin(), curves.end(), [](const CurveRequest& curve) { return curve.dip != 0; });
}

std::unique_ptr<CCommand> MakeVariogramCommand() {
  return std::make_unique<CVariogramCommand>();
}

}  // namespace tallyscope
