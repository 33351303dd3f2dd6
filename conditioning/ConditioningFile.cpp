// SPDX-License-Identifier: MIT
#include "conditioning/ConditioningFile.h"

#include <utility>
#include <vector>

#include "files/UTextFile.h"
#include "platform/core/NumberText.h"
#include "platform/core/TextCase.h"

namespace tallyscope {

namespace {

using Fields = std::vector<CString>;

CString Number(double value) {
  return FormatGeneral(value, 10);
}

CString Quoted(const CString& text) {
  return "\"" + text + "\"";
}

CString Truth(bool value) {
  return value ? "TRUE" : "FALSE";
}

bool IsTrue(const CString& text) {
  return CompareNoCase(text, "TRUE") == 0;
}

// Lines of "keyword = field,field".
class CLines {
 public:
  void AddNote(const CString& note) { text_ += "! " + note + "\n"; }
  void Add(const CString& keyword, const CString& fields) { text_ += keyword + " = " + fields + "\n"; }
  const CString& GetText() const { return text_; }

 private:
  CString text_;
};

void FormatNulls(const CStats_Conditioning& rules, CLines& lines) {
  if (rules.IsNULLDeclared()) {
    lines.AddNote("NULL Value");
    lines.Add("NullValue", rules.IsNumeric() ? Number(rules.nullValue) : Quoted(rules.nullString));
  }
  lines.AddNote("Values to NULL");
  if (rules.IsNumeric()) {
    for (const double value : rules.nullValues) lines.Add("ConvertValue2Null", Number(value));
    lines.AddNote("Value ranges to NULL");
    for (const auto& range : rules.nullRanges) {
      lines.Add("ConvertValueRange2Null", Number(range.minimum) + "," + Number(range.maximum));
    }
  } else if (rules.IsString()) {
    for (const auto& text : rules.nullStrings) lines.Add("ConvertValue2Null", Quoted(text));
  }
}

void FormatBackgroundAndCaps(const CStats_Conditioning& rules, CLines& lines) {
  const CString background = Truth(rules.convertToBackground) + ",";
  lines.AddNote("NULL to background");
  if (rules.IsString()) lines.Add("Convert2Background", background + Quoted(rules.backgroundString));
  if (!rules.IsNumeric()) return;
  lines.Add("Convert2Background", background + Number(rules.backgroundValue));
  lines.AddNote("Capping");
  lines.Add("CapMinimum", Truth(rules.capMinimumOn) + "," + Number(rules.capMinimum));
  lines.Add("CapMaximum", Truth(rules.capMaximumOn) + "," + Number(rules.capMaximum));
}

void FormatOperators(const CStats_Conditioning& rules, CLines& lines) {
  lines.AddNote("Operators");
  lines.Add("Allow_Operators", Truth(rules.IsOperatorsUsed()));
  if (!rules.IsOperatorsUsed()) return;
  for (const auto& step : rules.operators) {
    const CString name = Quoted(CStats_Operator::GetOperatorName(step.GetType()));
    const bool hasValue = CStats_Operator::GetOperatorHasParam(step.GetType()) != 0;
    lines.Add("Operator", hasValue ? name + "," + Quoted(step.GetValueS()) : name);
  }
}

bool HasText(const Fields& fields, std::size_t i) {
  return i < fields.size() && !fields[i].empty();
}

// Each of these takes a line in; false if it says nothing.

bool ReadDataType(const Fields& fields, CStats_Conditioning& rules) {
  if (CompareNoCase(fields[1], "NUMERIC") == 0) {
    rules.DefineNumeric();
  } else {
    rules.DefineString(0);
  }
  return true;
}

bool ReadCaseSensitive(const Fields& fields, CStats_Conditioning& rules) {
  rules.DefineString(IsTrue(fields[1]) ? 1 : 0);
  return true;
}

bool ReadNull(const Fields& fields, CStats_Conditioning& rules) {
  if (rules.IsNumeric()) {
    rules.SetNULL(ParseLeadingNumber(fields[1]));
  } else {
    rules.SetNULL(fields[1]);
  }
  return true;
}

bool ReadNullValue(const Fields& fields, CStats_Conditioning& rules) {
  if (rules.IsNumeric()) {
    rules.AddNULLValue(ParseLeadingNumber(fields[1]));
  } else {
    rules.AddNULLValue(fields[1]);
  }
  return true;
}

bool ReadNullRange(const Fields& fields, CStats_Conditioning& rules) {
  if (!HasText(fields, 1) || !HasText(fields, 2)) return false;
  rules.AddNULLRange(ParseLeadingNumber(fields[1]), ParseLeadingNumber(fields[2]));
  return true;
}

// The flag is set as it stands: a background that equals the null doesn't switch itself off here.
bool ReadBackground(const Fields& fields, CStats_Conditioning& rules) {
  rules.convertToBackground = IsTrue(fields[1]);
  if (fields.size() < 3) return true;
  if (rules.IsNumeric()) {
    rules.backgroundValue = ParseLeadingNumber(fields[2]);
  } else {
    rules.backgroundString = fields[2];
  }
  return true;
}

bool ReadCap(const Fields& fields, bool& on, double& cap) {
  on = IsTrue(fields[1]);
  if (HasText(fields, 2)) cap = ParseLeadingNumber(fields[2]);
  return true;
}

bool ReadCapMinimum(const Fields& fields, CStats_Conditioning& rules) {
  return ReadCap(fields, rules.capMinimumOn, rules.capMinimum);
}

bool ReadCapMaximum(const Fields& fields, CStats_Conditioning& rules) {
  return ReadCap(fields, rules.capMaximumOn, rules.capMaximum);
}

bool ReadOperatorsUsed(const Fields& fields, CStats_Conditioning& rules) {
  rules.DefineOperators(IsTrue(fields[1]) ? 1 : 0);
  rules.operators.clear();
  return true;
}

bool ReadOperator(const Fields& fields, CStats_Conditioning& rules) {
  const auto type = CStats_Operator::GetOperatorTypeFromName(fields[1]);
  if (type == CStats_Operator::kNone) return false;
  rules.AddOperator(type, fields.size() > 2 ? fields[2] : CString());
  return true;
}

struct KeywordRow {
  const char* keyword;
  bool (*read)(const Fields& fields, CStats_Conditioning& rules);  // REQUIRES: a field behind the keyword
};

constexpr KeywordRow kKeywords[] = {
    {"DataType", ReadDataType},
    {"CaseSensitive", ReadCaseSensitive},
    {"NullValue", ReadNull},
    {"ConvertValue2Null", ReadNullValue},
    {"ConvertValueRange2Null", ReadNullRange},
    {"Convert2Background", ReadBackground},
    {"CapMinimum", ReadCapMinimum},
    {"CapMaximum", ReadCapMaximum},
    {"Allow_Operators", ReadOperatorsUsed},
    {"Operator", ReadOperator},
};

bool ReadLine(const Fields& fields, CStats_Conditioning& rules) {
  if (fields.size() < 2) return false;
  for (const auto& row : kKeywords) {
    if (CompareNoCase(fields[0], row.keyword) == 0) return row.read(fields, rules);
  }
  return false;
}

// False when reading fails.
bool ReadRules(CUTextFile& file, CStats_Conditioning& rules, ConditioningFileLines& lines) {
  for (int number = 1; file.ReadLine(); ++number) {
    Fields fields;
    for (const auto& token : file.GetTokeniser().GetTokens()) {
      if (token.type != CUTokeniser::kComment) fields.push_back(token.text);
    }
    if (fields.empty()) continue;
    if (ReadLine(fields, rules)) {
      ++lines.good;
    } else if (lines.firstOdd == 0) {
      lines.firstOdd = number;
      lines.oddText = file.GetTokeniser().GetLine();
    }
  }
  return !file.IsFailed();
}

}  // namespace

CString FormatConditioning(const CStats_Conditioning& rules) {
  CLines lines;
  lines.AddNote("Qorvane Technology - Data conditioning parameters record");
  lines.Add("DataType", rules.IsNumeric() ? "NUMERIC" : rules.IsString() ? "STRING" : "UNDEFINED");
  if (rules.IsString()) lines.Add("CaseSensitive", Truth(rules.IsCaseSensitive()));
  FormatNulls(rules, lines);
  FormatBackgroundAndCaps(rules, lines);
  FormatOperators(rules, lines);
  return lines.GetText();
}

CStats_Conditioning ParseConditioning(std::string_view text) {
  CUTextFile file;
  CStats_Conditioning rules;
  ConditioningFileLines lines;
  if (file.OpenText(text)) ReadRules(file, rules, lines);
  return rules;
}

Status SaveConditioning(const CString& path, const CStats_Conditioning& rules) {
  CUTextFile file;
  const bool saved = file.Open(path, 0, 1, 0) && file.WriteString(FormatConditioning(rules)) && file.Close();
  return saved ? Status::Good() : Status::Bad(file.GetErrorText());
}

bool LoadConditioning(const CString& path, CStats_Conditioning& rules, ConditioningFileLines& lines, CString& error) {
  CUTextFile file;
  CStats_Conditioning loaded;
  lines = {};
  const bool read = file.Open(path, 1, 0, 0) && ReadRules(file, loaded, lines);
  error = file.GetErrorText();
  if (read) rules = std::move(loaded);
  return read;
}

bool LoadConditioning(const CString& path, CStats_Conditioning& rules, CString& error) {
  ConditioningFileLines lines;
  return LoadConditioning(path, rules, lines, error);
}

}  // namespace tallyscope
