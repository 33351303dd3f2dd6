// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <span>

#include "conditioning/Stats_Operator.h"

namespace tallyscope {

class CDSPOperation;

// One operator. Everything that is asked of a type, by a list, a reader, a writer or a chain, is asked of its row.
struct OperatorRow {
  CStats_Operator::CStats_OperatorType type;
  int name;           // in the string table
  int parameterName;  // in the string table; 0: `parameterText`
  const char* parameterText;
  VARTYPE parameterType;  // VT_NULL: takes none
  const char* preset;
  bool oddOnly;                                                             // a width
  bool inShortList;                                                         // of scope 1
  bool progressive;                                                         // depends on the band
  std::unique_ptr<CDSPOperation> (*make)(const CStats_Operator& settings);  // ready to run along a line
};

// In order of type, which is also the index.
std::span<const OperatorRow> GetOperatorRows();
const OperatorRow* FindOperatorRow(CStats_Operator::CStats_OperatorType type);  // null: not in the catalogue

}  // namespace tallyscope
