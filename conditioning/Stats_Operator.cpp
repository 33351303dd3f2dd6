// SPDX-License-Identifier: MIT
#include "conditioning/Stats_Operator.h"

#include "conditioning/OperatorCatalogue.h"
#include "platform/core/Archive.h"
#include "platform/core/NumberText.h"
#include "platform/core/StringTable.h"
#include "platform/core/TextCase.h"

namespace tallyscope {

CString CStats_Operator::GetOperatorName(CStats_OperatorType type) {
  const auto* row = FindOperatorRow(type);
  return row != nullptr ? LoadString(row->name) : CString();
}

CStats_Operator::CStats_OperatorType CStats_Operator::GetOperatorTypeFromName(const CString& name) {
  for (const auto& row : GetOperatorRows()) {
    if (CompareNoCase(LoadString(row.name), name) == 0) return row.type;
  }
  return kNone;
}

CString CStats_Operator::GetOperatorParamName(CStats_OperatorType type) {
  const auto* row = FindOperatorRow(type);
  if (row == nullptr) return {};
  return row->parameterName != 0 ? LoadString(row->parameterName) : CString(row->parameterText);
}

int CStats_Operator::GetOperatorHasParam(CStats_OperatorType type) {
  return GetOperatorParamType(type) != VT_NULL ? 1 : 0;
}

VARTYPE CStats_Operator::GetOperatorParamType(CStats_OperatorType type) {
  const auto* row = FindOperatorRow(type);
  return row != nullptr ? row->parameterType : VT_NULL;
}

int CStats_Operator::IsOperatorParamOddValueOnly(CStats_OperatorType type) {
  const auto* row = FindOperatorRow(type);
  return row != nullptr && row->oddOnly ? 1 : 0;
}

void CStats_Operator::GetOperatorParamDefaultValue(CStats_OperatorType type, CString& out) {
  if (const auto* row = FindOperatorRow(type)) out = row->preset;
}

void CStats_Operator::GetOperatorList(std::vector<CString>& names, std::vector<CStats_OperatorType>& types, int scope,
                                      int progressive) {
  names.clear();
  types.clear();
  for (const auto& row : GetOperatorRows()) {
    const bool listed = scope == 0 ? progressive != 0 || !row.progressive : scope == 1 && row.inShortList;
    if (!listed) continue;
    names.push_back(LoadString(row.name));
    types.push_back(row.type);
  }
}

void CStats_Operator::CreateOperator(CStats_OperatorType type, const CString& value, CStats_Operator& out) {
  out.type_ = type;
  const auto* row = FindOperatorRow(type);
  if (row == nullptr) return;
  switch (row->parameterType) {
    case VT_R8:
      out.value_ = COleVariant(ParseLeadingNumber(value));
      break;
    case VT_I4:
      out.value_ = COleVariant(ParseLeadingInteger(value));
      break;
    default:
      out.value_ = COleVariant::Null();
  }
}

CString CStats_Operator::GetValueS() const {
  switch (GetOperatorParamType(type_)) {
    case VT_R8:
      return FormatGeneral(value_.GetReal(), 10);
    case VT_I4:
      return std::to_string(value_.GetInteger());
    default:
      return {};
  }
}

bool CStats_Operator::operator==(const CStats_Operator& other) const {
  return this == &other || (type_ == other.type_ && value_ == other.value_);
}

void CStats_Operator::Serialize(CArchive& archive) {
  if (archive.IsStoring()) {
    archive << GetSchemaVersion() << static_cast<std::int32_t>(type_);
  } else {
    std::int32_t version = 0;
    std::int32_t type = kNone;
    archive >> version >> type;
    type_ = static_cast<CStats_OperatorType>(type);
  }
  value_.Serialize(archive);
}

}  // namespace tallyscope
