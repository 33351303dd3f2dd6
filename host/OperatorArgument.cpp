// SPDX-License-Identifier: MIT
#include "host/OperatorArgument.h"

#include <charconv>
#include <string_view>

#include "host/NumberScan.h"
#include "host/Sentences.h"
#include "platform/core/Blanks.h"

namespace tallyscope {

namespace {

using Op = CStats_Operator;

bool IsWholeNumber(std::string_view text) {
  int value = 0;
  const auto [end, fault] = std::from_chars(text.data(), text.data() + text.size(), value);
  return fault == std::errc() && end == text.data() + text.size();
}

CString DescribeUnknown(const CString& name) {
  std::vector<CString> names;
  std::vector<Op::CStats_OperatorType> types;
  Op::GetOperatorList(names, types, 0, 1);
  const CString near = SuggestNames(name, names);
  const bool isNear = near.starts_with("; did you mean");
  return Quoted(name) + " is no operator" + (isNear ? near : "; 'tallyscope operators' lists them.");
}

CString CheckValue(Op::CStats_OperatorType type, const CString& value) {
  double number = 0;
  const CString name = Op::GetOperatorName(type);
  if (Op::GetOperatorParamType(type) == VT_I4) {
    if (!IsWholeNumber(value)) return name + " takes a whole number, not " + Quoted(value) + ".";
  } else if (!ParseNumber(value, '.', number)) {
    return name + " takes a number, not " + Quoted(value) + ".";
  }
  return {};
}

CString CheckOperator(const CStats_Operator& step) {
  const auto type = step.GetType();
  const int width = step.GetValue().GetInteger();
  if (Op::IsOperatorParamOddValueOnly(type) == 0 || (width >= 1 && width % 2 == 1)) return {};
  return Op::GetOperatorName(type) + " can't have the width " + step.GetValueS() + ": take an odd one of at least 1.";
}

}  // namespace

CString AddOperatorArgument(const CString& text, CStats_Conditioning& rules) {
  const auto sign = text.find('=');
  const CString name(TrimBlanks(std::string_view(text).substr(0, sign)));
  const auto type = Op::GetOperatorTypeFromName(name);
  if (type == Op::kNone) return DescribeUnknown(name);
  CString value;
  Op::GetOperatorParamDefaultValue(type, value);
  if (sign != CString::npos) {
    if (Op::GetOperatorHasParam(type) == 0) return Op::GetOperatorName(type) + " takes no value.";
    value = TrimBlanks(std::string_view(text).substr(sign + 1));
    const CString sentence = CheckValue(type, value);
    if (!sentence.empty()) return sentence;
  }
  CStats_Operator step;
  Op::CreateOperator(type, value, step);
  const CString sentence = CheckOperator(step);
  if (sentence.empty()) rules.operators.push_back(step);
  return sentence;
}

CString CheckOperators(const CStats_Conditioning& rules) {
  for (const auto& step : rules.operators) {
    const CString sentence = CheckOperator(step);
    if (!sentence.empty()) return sentence;
  }
  return {};
}

CString FormatOperatorArgument(const CStats_Operator& step) {
  const CString name = Op::GetOperatorName(step.GetType());
  return Op::GetOperatorHasParam(step.GetType()) != 0 ? name + "=" + step.GetValueS() : name;
}

}  // namespace tallyscope
