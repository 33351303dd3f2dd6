// SPDX-License-Identifier: MIT
#include "conditioning/OperatorCatalogue.h"

#include "platform/core/StringTable.h"

namespace tallyscope {

namespace {

using Op = CStats_Operator;

// type, name, parameter, its type, preset; odd only, in the short list, by the band
constexpr OperatorRow kRows[] = {
    {Op::kFillNull, kStringFillNull, 0, "", VT_NULL, "", false, true, false},
    {Op::kDetrend, kStringDetrend, 0, "", VT_NULL, "", false, true, false},
    {Op::kHistogramEqualize, kStringHistogramEqualize, 0, "", VT_NULL, "", false, true, false},
    {Op::kPowerFunction, kStringPowerFunction, 0, "", VT_R8, "1", false, false, false},
    {Op::kLogFunction, kStringLogFunction, kStringLinearCutoff, "", VT_R8, "1", false, false, false},
    {Op::kAgc, kStringAgc, kStringWidth, "", VT_I4, "1", true, true, false},
    {Op::kGaussian, kStringGaussian, kStringWidth, "", VT_I4, "1", true, true, false},
    {Op::kMovingAverage, kStringMovingAverage, kStringWidth, "", VT_I4, "1", true, true, false},
    {Op::kScale, kStringScale, 0, "", VT_R8, "1", false, false, false},
    {Op::kTranslate, kStringTranslate, 0, "", VT_R8, "1", false, false, false},
    {Op::kProgressiveTranslate, kStringProgressiveTranslate, 0, "", VT_R8, "1", false, false, true},
    {Op::kProgressiveTranslateReverse, kStringProgressiveTranslateReverse, 0, "", VT_R8, "1", false, false, true},
    {Op::kHorizontalDifference, kStringHorizontalDifference, 0, "Order", VT_I4, "4", false, true, false},
};

}  // namespace

std::span<const OperatorRow> GetOperatorRows() {
  return kRows;
}

const OperatorRow* FindOperatorRow(CStats_Operator::CStats_OperatorType type) {
  const auto rows = GetOperatorRows();
  const int index = type;
  return index >= 0 && static_cast<std::size_t>(index) < rows.size() ? &rows[static_cast<std::size_t>(index)] : nullptr;
}

}  // namespace tallyscope
