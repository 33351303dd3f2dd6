// SPDX-License-Identifier: MIT
#pragma once

#include "conditioning/Stats_Conditioning.h"
#include "host/HostColumn.h"

namespace tallyscope {

// How many values of a column each rule touched. A value counts for the one rule of nulls that took it, the first of
// declared, listed, in a range; and besides for what happened to it afterwards.
struct RuleCounts {
  int tableNulls = 0;  // null in the table already
  int declaredNulls = 0;
  int listed = 0;
  int inRange = 0;
  int toBackground = 0;  // of all these
  int cappedBelow = 0;
  int cappedAbove = 0;
  int nonFinite = 0;  // no number or an infinite one in the end, as the square root of -1: null in the column
};

struct RuleCountRow {
  const char* key;  // in JSON
  const char* caption;
  int RuleCounts::*count;
};
const std::vector<RuleCountRow>& GetRuleCountRows();  // without the last one, which is no rule's

// Applies the rules to each value, then the chain, where it is used, to the whole column in the order of its rows. A
// null of the table enters as the declared null, so that it becomes the background where nulls do; without a declared
// null it stays. Values are doubles until a chain runs, and then have the precision of a float.
// REQUIRES: without a chain for a column of texts, whose labels are what the rules see.
RuleCounts ConditionColumn(const CStats_Conditioning& rules, int rows, CHostColumn& column);

}  // namespace tallyscope
