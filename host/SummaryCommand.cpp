// SPDX-License-Identifier: MIT
#include <ostream>

#include <CLI/CLI.hpp>

#include "host/Choice.h"
#include "host/Command.h"
#include "host/CommandTable.h"
#include "host/ReaderFlags.h"
#include "host/Sentences.h"
#include "host/Summary.h"

namespace tallyscope {

namespace {

class CSummaryCommand : public CCommand {
 public:
  void AddOptions(CLI::App& app) override {
    app.add_option("FILE", file_, "the table; '-' is standard input")->required();
    app.add_option("--field", fields_, "only this field or axis, with all figures; may be given several times")
        ->type_name("NAME")
        ->allow_extra_args(false);
    AddChoice<Quantiles>(app, "--quantiles", {{"sorted", Quantiles::kSorted}, {"binned", Quantiles::kBinned}},
                         "from bins of equal count, or of equal width (so without this)",
                         [this](Quantiles kind) { quantiles_ = kind; });
    app.add_flag("--json", json_, "print JSON, with all digits");
    AddReaderFlags(app, reader_);
  }

  CString CheckOptions() const override { return CheckReaderFlags(reader_); }
  int Run(std::ostream& out, std::ostream& err) override;

 private:
  // The dims asked for, axes first without a choice. False, with a sentence, for a name that isn't there.
  bool FindDims(CHostTable& table, std::vector<int>& dims, std::ostream& err) const;
  void Print(OpenedTable& opened, const std::vector<ColumnSummary>& columns, std::ostream& out,
             std::ostream& err) const;

  CString file_;
  std::vector<CString> fields_;
  Quantiles quantiles_ = Quantiles::kBinned;
  bool json_ = false;
  ReaderOptions reader_;
};

bool CSummaryCommand::FindDims(CHostTable& table, std::vector<int>& dims, std::ostream& err) const {
  if (fields_.empty()) dims = GetDims(table);
  for (const auto& name : fields_) {
    dims.push_back(FindDimForCommand(table, file_, name, err));
    if (dims.back() == CHostTable::kNoDim) return false;
  }
  return true;
}

int CSummaryCommand::Run(std::ostream& out, std::ostream& err) {
  OpenedTable opened = OpenForCommand(file_, reader_, err);
  if (!opened.table) return kExitBadInput;
  auto& table = *opened.table;
  std::vector<int> dims;
  if (!FindDims(table, dims, err)) return kExitBadInput;
  if (quantiles_ == Quantiles::kSorted && !table.CanSort()) {
    Say(err, file_ + " is too large to sort: take --quantiles binned.");
    return kExitBadInput;
  }
  Print(opened, Summarise(table, dims, quantiles_), out, err);
  return kExitDone;
}

void CSummaryCommand::Print(OpenedTable& opened, const std::vector<ColumnSummary>& columns, std::ostream& out,
                            std::ostream& err) const {
  if (json_) {
    for (const auto& warning : opened.warnings) Say(err, warning);
    PrintJson(file_, *opened.table, columns, out);
    return;
  }
  PrintFacts(file_, opened, out);
  out << "\n";
  if (fields_.empty()) {
    PrintOverview(*opened.table, columns, out);
  } else {
    PrintFigures(columns, out);
  }
}

}  // namespace

std::unique_ptr<CCommand> MakeSummaryCommand() {
  return std::make_unique<CSummaryCommand>();
}

}  // namespace tallyscope
