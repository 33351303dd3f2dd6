// SPDX-License-Identifier: MIT
#include <map>

#include <CLI/CLI.hpp>

#include "host/Command.h"
#include "host/CommandLine.h"
#include "host/ReaderFlags.h"

namespace tallyscope {

namespace {

class COpenCommand : public CCommand {
 public:
  void AddOptions(CLI::App& app) override {
    app.add_option("FILE", request_.file, "the table; without it the window asks for one");
    app.add_option_function<CTallyscope::eAnalysisMode>(
           "--mode", [this](const auto& mode) { request_.mode = mode; }, "what to start with: univariate")
        ->type_name("MODE")
        ->transform(CLI::CheckedTransformer(
            std::map<CString, CTallyscope::eAnalysisMode>{{"univariate", CTallyscope::eUnivariate}}));
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

std::unique_ptr<CCommand> MakeOpenCommand() { return std::make_unique<COpenCommand>(); }

}  // namespace tallyscope
