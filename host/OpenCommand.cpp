// SPDX-License-Identifier: MIT
#include <CLI/CLI.hpp>

#include "host/Choice.h"
#include "host/Command.h"
#include "host/CommandLine.h"
#include "host/ReaderFlags.h"
#include "statistics/AnalysisKind.h"

namespace tallyscope {

namespace {

class COpenCommand : public CCommand {
 public:
  void AddOptions(CLI::App& app) override {
    app.add_option("FILE", request_.file, "the table; without it the window asks for one");
    Choices<CTallyscope::eAnalysisMode> modes;
    for (const auto& kind : GetAnalysisKinds()) {
      if (kind.hasPages) modes.emplace_back(kind.name, kind.mode);
    }
    AddChoice<CTallyscope::eAnalysisMode>(app, "--mode", modes, "analysis to start with",
                                          [this](const auto& mode) { request_.mode = mode; });
    app.add_option("--field", request_.field, "field to start with")->type_name("NAME");
    app.add_option("--pictures", request_.pictures, "write a picture of each page to that folder, and end")
        ->type_name("FOLDER");
    AddReaderFlags(app, request_.reader);
  }

  CString CheckOptions() const override { return CheckReaderFlags(request_.reader); }
  int Run(std::ostream&, std::ostream&) override { return RunWindow(request_); }

 private:
  OpenRequest request_;
};

}  // namespace

std::unique_ptr<CCommand> MakeOpenCommand() {
  return std::make_unique<COpenCommand>();
}

}  // namespace tallyscope
