// SPDX-License-Identifier: MIT
#pragma once

#include "conditioning/Stats_Conditioning.h"
#include "platform/core/Archive.h"

namespace tallyscope {

// Every setting away from its default.
inline CStats_Conditioning FullRules(int kind) {
  CStats_Conditioning rules;
  rules.kind = kind;
  rules.caseSensitive = kind == CStats_Conditioning::eString;
  rules.SetNULL(-999);
  rules.SetNULL("na");
  rules.AddNULLValue(7.5);
  rules.AddNULLValue(-1e-5);
  rules.AddNULLValue("none");
  rules.AddNULLValue("a, b | c = d # e");
  rules.AddNULLRange(10, 20);
  rules.AddNULLRange(-3.25, -1);
  rules.Convert2Bkgd(1, 0.5);
  rules.Convert2Bkgd(1, "it's blank");
  rules.CapMinimum(1, -4);
  rules.CapMaximum(1, 1234.5678);
  rules.DefineOperators(1);
  rules.AddOperator(CStats_Operator::kFillNull, "");
  rules.AddOperator(CStats_Operator::kMovingAverage, "11");
  rules.AddOperator(CStats_Operator::kProgressiveTranslateReverse, "2.5");
  return rules;
}

inline std::vector<std::uint8_t> StoredBytes(CStats_Conditioning rules) {
  CArchive archive;
  rules.Serialize(archive);
  return archive.GetBytes();
}

// Whether all of it is the same, to the bit; but for the bands, which are compared by the caller.
inline bool IsIdentical(const CStats_Conditioning& a, const CStats_Conditioning& b) {
  return StoredBytes(a) == StoredBytes(b);
}

}  // namespace tallyscope
