// SPDX-License-Identifier: MIT
#include <ostream>

#include <CLI/CLI.hpp>

#include "host/Command.h"
#include "host/CommandTable.h"
#include "host/OutputTargets.h"
#include "host/ReaderFlags.h"
#include "host/SelectionPlan.h"
#include "host/Sentences.h"
#include "host/Summary.h"
#include "host/TerminalProgress.h"
#include "platform/core/AtomicFile.h"
#include "spatial/Stats_Spatial.h"
#include "statistics/Stats_Region.h"

namespace tallyscope {

namespace {

constexpr unsigned kExtract =
    CStats_Spatial::kLists | CStats_Spatial::kBitmaps | CStats_Spatial::kExtractX | CStats_Spatial::kExtractY;

class CSelectCommand : public CCommand {
 public:
  void AddOptions(CLI::App& app) override;
  CString CheckOptions() const override;
  int Run(std::ostream& out, std::ostream& err) override;

 private:
  void AddSteps(CLI::App& app);
  void PrintSummary(CHostTable& table, CStats_Spatial& spatial, std::ostream& out) const;

  CString file_;
  CsvTarget target_;
  bool summary_ = false;
  bool json_ = false;
  bool force_ = false;
  bool takes_ = true;  // what the options at hand do, while they are parsed
  CSelectionPlan plan_;
  ReaderOptions reader_;
};

void CSelectCommand::AddOptions(CLI::App& app) {
  app.add_option("FILE", file_, "the table; '-' is standard input")->required();
  AddSteps(app);
  app.add_option("-o,--output", target_.file, "the file that gets the selected stations; '-' is standard output")
      ->type_name("OUT.csv");
  app.add_flag("--summary", summary_, "print the figures of the selected stations");
  app.add_flag("--json", json_, "print the summary as JSON, with all digits");
  AddFormulaFlag(app, target_);
  AddForceFlag(app, force_);
  AddReaderFlags(app, reader_);
}

// The order of the options is that of the gestures, so each is noted as soon as it is met.
void CSelectCommand::AddSteps(CLI::App& app) {
  struct Row {
    const char* name;
    const char* type;
    SelectionStep::Kind kind;
    const char* description;
  };
  static constexpr Row kRows[] = {
      {"where", "'FIELD in LOW..HIGH'", SelectionStep::kWhere, "stations with a value from LOW to HIGH"},
      {"inside", "POLYGON.csv", SelectionStep::kInside, "stations inside a polygon, its corners one a row"},
      {"rows", "A..B[,C...]", SelectionStep::kRows, "stations by row, the first being 1"},
  };
  const CString group = "Selecting, step by step";
  const auto addStep = [&](const CString& name, const Row& row, bool excludes) {
    const auto note = [this, kind = row.kind, excludes](const CString& text) {
      plan_.Add(kind, text, takes_ && !excludes);
    };
    app.add_option_function<CString>(name, note, excludes ? "the same, taken out" : row.description)
        ->type_name(row.type)
        ->group(group)
        ->trigger_on_parse();
  };
  for (const auto& row : kRows) addStep(CString("--") + row.name, row, false);
  for (const auto& row : kRows) addStep(CString("--exclude-") + row.name, row, true);
  const auto addSwitch = [&](const CString& name, const std::function<void()>& set, const CString& description) {
    app.add_flag_callback(name, set, description)->group(group)->trigger_on_parse();
  };
  addSwitch(
      "--exclude", [this] { takes_ = false; }, "every step from here on takes stations out");
  addSwitch(
      "--include", [this] { takes_ = true; }, "every step from here on adds stations again");
  addSwitch(
      "--invert", [this] { plan_.Add(SelectionStep::kInvert, {}, true); }, "selects what is not selected so far");
}

CString CSelectCommand::CheckOptions() const {
  if (plan_.IsEmpty()) return "Say what to select: --where, --inside, --rows or --invert";
  if (target_.file.empty() && !summary_) return "Say what to do with the selected stations: -o OUT.csv or --summary";
  if (target_.file == "-" && summary_) return "-o - and --summary both write to standard output";
  if (json_ && !summary_) return "--json goes with --summary";
  const CString sentence = plan_.Check();
  return sentence.empty() ? CheckReaderFlags(reader_) : sentence;
}

int CSelectCommand::Run(std::ostream& out, std::ostream& err) {
  CommandFiles files{{file_}, {target_.file}};
  for (const auto& polygon : plan_.GetFiles()) files.reads.push_back(polygon);
  if (!MayWrite(files, force_, err)) return kExitBadInput;
  OpenedTable opened = OpenForCommand(file_, reader_, err);
  if (!opened.table) return kExitBadInput;
  auto& table = *opened.table;
  CStats_Spatial spatial;
  spatial.Add(&table, table.GetValueSize() > 0 ? 0 : -1);
  spatial.ResetSpatialDims();
  if (!plan_.Build(table, file_, spatial, err)) return kExitBadInput;
  for (const auto& warning : opened.warnings) Say(err, warning);
  spatial.extractFlags = kExtract;
  {
    CTerminalProgress progress(err);
    if (!spatial.Calculate(1, &progress)) {
      Say(err, "The stations of " + file_ + " cannot be searched by their places.");
      return kExitBadInput;
    }
  }
  if (!target_.file.empty() && !WriteForCommand(table, spatial.lists.front(), target_, out, err)) return kExitBadInput;
  if (summary_) PrintSummary(table, spatial, out);
  return kExitDone;
}

void CSelectCommand::PrintSummary(CHostTable& table, CStats_Spatial& spatial, std::ostream& out) const {
  CStats_Region region(&spatial);
  const auto columns = Summarise(region, GetDims(region), Quantiles::kBinned);
  if (json_) {
    PrintJson(file_, region, columns, out);
    return;
  }
  out << Shown(file_) << ": " << std::to_string(region.GetSize()) << " of "
      << Counted(table.GetSize(), "station", "stations") << " selected\n\n";
  PrintOverview(table, columns, out);
}

}  // namespace

std::unique_ptr<CCommand> MakeSelectCommand() {
  return std::make_unique<CSelectCommand>();
}

}  // namespace tallyscope
