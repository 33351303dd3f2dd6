// SPDX-License-Identifier: MIT
#include <numeric>
#include <ostream>

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include "conditioning/ConditioningFile.h"
#include "host/ColumnConditioning.h"
#include "host/Command.h"
#include "host/CommandTable.h"
#include "host/OperatorArgument.h"
#include "host/OutputTargets.h"
#include "host/ReaderFlags.h"
#include "host/Sentences.h"
#include "host/Summary.h"
#include "host/SummaryJson.h"
#include "host/TextGrid.h"

namespace tallyscope {

namespace {

using Json = nlohmann::ordered_json;

// What was done to the column, and its figures on both sides.
struct Conditioned {
  ColumnSummary before;
  ColumnSummary after;
  RuleCounts counts;
};

class CConditionCommand : public CCommand {
 public:
  void AddOptions(CLI::App& app) override;
  CString CheckOptions() const override;
  int Run(std::ostream& out, std::ostream& err) override;

 private:
  bool LoadFile(CStats_Conditioning& rules, std::ostream& err) const;
  bool LoadRules(CStats_Conditioning& rules, std::ostream& err) const;
  // Whether rules and column are both of numbers or both of texts. False when the sentence has been said.
  bool Suits(const CHostColumn& column, CStats_Conditioning& rules, std::ostream& err) const;
  bool Write(CHostTable& table, const CStats_Conditioning& rules, std::ostream& out, std::ostream& err) const;
  void PrintText(const CStats_Conditioning& rules, const Conditioned& done, std::ostream& out) const;
  void PrintReport(const CStats_Conditioning& rules, const Conditioned& done, std::ostream& out) const;

  CString file_;
  CString field_;
  CString rules_;
  CsvTarget target_;
  CString savedRules_;
  std::vector<CString> operators_;
  bool json_ = false;
  bool force_ = false;
  ReaderOptions reader_;
};

void CConditionCommand::AddOptions(CLI::App& app) {
  app.add_option("FILE", file_, "the table; '-' is standard input")->required();
  app.add_option("--field", field_, "the field or axis to condition")->required()->type_name("NAME");
  app.add_option("--rules", rules_, "nulls, background, caps and operators from a file")->type_name("FILE.dcf");
  app.add_option("--operator", operators_,
                 "a further operator, behind those of the rules; may be given several times. 'tallyscope operators' "
                 "lists them")
      ->type_name("NAME[=VALUE]")
      ->allow_extra_args(false);
  app.add_option("-o,--output", target_.file,
                 "the file that gets the table with the conditioned column; '-' is standard output")
      ->type_name("OUT.csv");
  app.add_option("--save-rules", savedRules_, "the file that gets the rules and operators")->type_name("FILE.dcf");
  app.add_flag("--json", json_, "print JSON, with all digits");
  AddFormulaFlag(app, target_);
  AddForceFlag(app, force_);
  AddReaderFlags(app, reader_);
}

CString CConditionCommand::CheckOptions() const {
  if (json_ && target_.file == "-") return "-o - and --json both write to standard output";
  CStats_Conditioning chain;
  for (const auto& text : operators_) {
    const CString sentence = AddOperatorArgument(text, chain);
    if (!sentence.empty()) return sentence;
  }
  return CheckReaderFlags(reader_);
}

// A file without a line of rules is refused; a line that says nothing in a file of rules is told.
bool CConditionCommand::LoadFile(CStats_Conditioning& rules, std::ostream& err) const {
  ConditioningFileLines lines;
  CString error;
  if (!LoadConditioning(rules_, rules, lines, error)) {
    Say(err, OnOneLine(error));
    return false;
  }
  if (lines.firstOdd == 0) return true;
  const CString oddLine = rules_ + ", line " + std::to_string(lines.firstOdd) + ": " + Quoted(lines.oddText);
  if (lines.good > 0) {
    Say(err, oddLine + " says nothing to rules and is skipped.");
    return true;
  }
  Say(err, oddLine + " is no line of rules; 'DataType = NUMERIC' or another keyword with its value was expected.");
  return false;
}

bool CConditionCommand::LoadRules(CStats_Conditioning& rules, std::ostream& err) const {
  if (!rules_.empty() && !LoadFile(rules, err)) return false;
  if (!operators_.empty()) {
    if (!rules.IsOperatorsUsed()) rules.operators.clear();  // those of a file that doesn't allow them stay out
    rules.DefineOperators(1);
  }
  for (const auto& text : operators_) AddOperatorArgument(text, rules);
  const CString sentence = rules.IsOperatorsUsed() ? CheckOperators(rules) : CString();
  if (!sentence.empty()) Say(err, rules_ + ": " + sentence);
  return sentence.empty();
}

bool CConditionCommand::Suits(const CHostColumn& column, CStats_Conditioning& rules, std::ostream& err) const {
  const CString holds = column.name + " holds " + (column.IsText() ? "texts" : "numbers");
  if (rules_.empty() && column.IsText()) rules.DefineString(0);
  if (rules.IsString() != column.IsText()) {
    Say(err, holds + ", but " + rules_ + " is for " + (column.IsText() ? "numbers" : "texts") + ".");
    return false;
  }
  if (column.IsText() && rules.IsOperatorsUsed() && rules.GetOperatorCount() > 0) {
    Say(err, holds + ": operators work on numbers.");
    return false;
  }
  return true;
}

int CConditionCommand::Run(std::ostream& out, std::ostream& err) {
  if (!MayWrite({{file_, rules_}, {target_.file, savedRules_}}, force_, err)) return kExitBadInput;
  CStats_Conditioning rules;
  if (!LoadRules(rules, err)) return kExitBadInput;
  OpenedTable opened = OpenForCommand(file_, reader_, err);
  if (!opened.table) return kExitBadInput;
  auto& table = *opened.table;
  const int dim = FindDimForCommand(table, file_, field_, err);
  if (dim == CHostTable::kNoDim || !Suits(table.GetColumn(dim), rules, err)) return kExitBadInput;
  for (const auto& warning : opened.warnings) Say(err, warning);
  Conditioned done;
  done.before = Summarise(table, dim, Quantiles::kBinned);
  table.ChangeColumn(dim, [&](CHostColumn& column) { done.counts = ConditionColumn(rules, table.GetSize(), column); });
  done.after = Summarise(table, dim, Quantiles::kBinned);
  if (!Write(table, rules, out, err)) return kExitBadInput;
  if (target_.file != "-") PrintReport(rules, done, out);
  return kExitDone;
}

bool CConditionCommand::Write(CHostTable& table, const CStats_Conditioning& rules, std::ostream& out,
                              std::ostream& err) const {
  const Status saved = savedRules_.empty() ? Status::Good() : SaveConditioning(savedRules_, rules);
  if (!saved.IsGood()) {
    Say(err, OnOneLine(saved.GetError()));
    return false;
  }
  if (target_.file.empty()) return true;
  std::vector<int> stations(static_cast<std::size_t>(table.GetSize()));
  std::iota(stations.begin(), stations.end(), 0);
  return WriteForCommand(table, stations, target_, out, err);
}

void CConditionCommand::PrintReport(const CStats_Conditioning& rules, const Conditioned& done,
                                    std::ostream& out) const {
  if (!json_) {
    PrintText(rules, done, out);
    return;
  }
  Json counts;
  for (const auto& row : GetRuleCountRows()) counts[row.key] = done.counts.*row.count;
  Json chain = Json::array();
  if (rules.IsOperatorsUsed()) {
    for (const auto& step : rules.operators) {
      const auto type = CStats_Operator::GetOperatorParamType(step.GetType());
      Json value;
      if (type == VT_I4) value = step.GetValue().GetInteger();
      if (type == VT_R8) value = step.GetValue().GetReal();
      chain.push_back({{"name", CStats_Operator::GetOperatorName(step.GetType())}, {"value", value}});
    }
  }
  PrintJsonText({{"file", file_},
                 {"field", field_},
                 {"stations", done.before.total},
                 {"rules", counts},
                 {"operators", chain},
                 {"nonFinite", done.counts.nonFinite},
                 {"before", ToJson(done.before)},
                 {"after", ToJson(done.after)}},
                out);
}

void CConditionCommand::PrintText(const CStats_Conditioning& rules, const Conditioned& done, std::ostream& out) const {
  out << Shown(file_) << ": " << Shown(field_) << ", " << Counted(done.before.total, "station", "stations") << "\n\n";
  CTextGrid grid;
  for (const auto& row : GetRuleCountRows()) grid.AddRow({row.caption, std::to_string(done.counts.*row.count)});
  grid.Print(out, "");
  CString chain;
  if (rules.IsOperatorsUsed()) {
    for (const auto& step : rules.operators) chain += (chain.empty() ? "" : ", ") + FormatOperatorArgument(step);
  }
  if (!chain.empty()) out << "\nOperators: " << chain << "\n";
  if (done.counts.nonFinite > 0) {
    out << (chain.empty() ? "\n" : "") << Counted(done.counts.nonFinite, "value", "values")
        << " no number in the end, and so null\n";
  }
  out << "\n";
  auto figures = std::vector{done.before, done.after};
  figures[0].name = "before";
  figures[1].name = "after";
  PrintFigures(figures, out);
}

}  // namespace

std::unique_ptr<CCommand> MakeConditionCommand() {
  return std::make_unique<CConditionCommand>();
}

}  // namespace tallyscope
