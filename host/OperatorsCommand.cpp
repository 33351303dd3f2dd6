// SPDX-License-Identifier: MIT
#include <ostream>

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include "conditioning/OperatorCatalogue.h"
#include "host/Command.h"
#include "host/SummaryJson.h"
#include "host/TextGrid.h"
#include "platform/core/NumberText.h"
#include "platform/core/StringTable.h"

namespace tallyscope {

namespace {

using Json = nlohmann::ordered_json;

class COperatorsCommand : public CCommand {
 public:
  void AddOptions(CLI::App& app) override { app.add_flag("--json", json_, "print JSON"); }
  int Run(std::ostream& out, std::ostream& err) override;

 private:
  bool json_ = false;
};

CString DescribeValue(const OperatorRow& row) {
  if (row.parameterType == VT_NULL) return {};
  return row.parameterType == VT_R8 ? "number" : row.oddOnly ? "odd number from 1" : "whole number";
}

Json DescribeParameter(const OperatorRow& row) {
  if (row.parameterType == VT_NULL) return nullptr;
  const bool whole = row.parameterType == VT_I4;
  return {{"name", CStats_Operator::GetOperatorParamName(row.type)},
          {"type", whole ? "integer" : "number"},
          {"odd", row.oddOnly},
          {"default", whole ? Json(ParseLeadingInteger(row.preset)) : Json(ParseLeadingNumber(row.preset))}};
}

void PrintText(std::ostream& out) {
  CTextGrid grid;
  grid.AddRow({"operator", "parameter", "value", "default"});
  for (const auto& row : GetOperatorRows()) {
    grid.AddRow(
        {LoadString(row.name), CStats_Operator::GetOperatorParamName(row.type), DescribeValue(row), row.preset});
  }
  grid.Print(out, "");
}

int COperatorsCommand::Run(std::ostream& out, std::ostream&) {
  if (!json_) {
    PrintText(out);
    return kExitDone;
  }
  Json operators = Json::array();
  for (const auto& row : GetOperatorRows()) {
    operators.push_back({{"type", static_cast<int>(row.type)},
                         {"name", LoadString(row.name)},
                         {"progressive", row.progressive},
                         {"parameter", DescribeParameter(row)}});
  }
  PrintJsonText({{"operators", operators}}, out);
  return kExitDone;
}

}  // namespace

std::unique_ptr<CCommand> MakeOperatorsCommand() {
  return std::make_unique<COperatorsCommand>();
}

}  // namespace tallyscope
