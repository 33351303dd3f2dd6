// SPDX-License-Identifier: MIT
#include <ostream>

#include <CLI/CLI.hpp>

#include "host/BivariateReport.h"
#include "host/Command.h"
#include "host/CommandTable.h"
#include "host/ReaderFlags.h"
#include "host/Sentences.h"

namespace tallyscope {

namespace {

class CBivariateCommand : public CCommand {
 public:
  void AddOptions(CLI::App& app) override {
    app.add_option("FILE", file_, "the table; '-' is standard input")->required();
    app.add_option("KEY", key_, "field or axis that is X")->required();
    app.add_option("ANCILLARY", ancillary_, "field or axis that is Y")->required();
    app.add_flag("--json", json_, "print JSON, with all digits");
    AddReaderFlags(app, reader_);
  }

  CString CheckOptions() const override { return CheckReaderFlags(reader_); }
  int Run(std::ostream& out, std::ostream& err) override;

 private:
  CString file_;
  CString key_;
  CString ancillary_;
  bool json_ = false;
  ReaderOptions reader_;
};

int CBivariateCommand::Run(std::ostream& out, std::ostream& err) {
  OpenedTable opened = OpenForCommand(file_, reader_, err);
  if (!opened.table) return kExitBadInput;
  auto& table = *opened.table;
  const int key = FindDimForCommand(table, file_, key_, err);
  if (key == CHostTable::kNoDim) return kExitBadInput;
  const int ancillary = FindDimForCommand(table, file_, ancillary_, err);
  if (ancillary == CHostTable::kNoDim) return kExitBadInput;
  for (const auto& warning : opened.warnings) Say(err, warning);
  CBivariateReport report(table, key, ancillary);
  if (json_) {
    report.PrintJson(out);
  } else {
    report.PrintText(out);
  }
  return kExitDone;
}

}  // namespace

std::unique_ptr<CCommand> MakeBivariateCommand() {
  return std::make_unique<CBivariateCommand>();
}

}  // namespace tallyscope
