// SPDX-License-Identifier: MIT
#include "conditioning/OperatorCatalogue.h"

#include "bands/DSPAGC.h"
#include "bands/DSPConvolution.h"
#include "bands/DSPFillNull.h"
#include "bands/DSPHistogram.h"
#include "bands/DSPLog.h"
#include "bands/DSPPower.h"
#include "bands/DSPTransform.h"
#include "bands/DSPTrend.h"
#include "platform/core/StringTable.h"

namespace tallyscope {

namespace {

using Op = CStats_Operator;
using Operation = std::unique_ptr<CDSPOperation>;

Operation MakeFillNull(const Op&) {
  auto fill = std::make_unique<CDSPFillNull>();
  fill->dimension = 1;
  fill->rememberNulls = false;
  return fill;
}

Operation MakeDetrend(const Op&) {
  auto trend = std::make_unique<CDSPTrend>();
  trend->method = CDSPTrend::kLinear;
  return trend;
}

Operation MakeHistogramEqualize(const Op&) {
  return std::make_unique<CDSPHistogram>();
}

Operation MakePower(const Op& settings) {
  auto power = std::make_unique<CDSPPower>();
  power->exponent = settings.GetValue().GetReal();
  return power;
}

// A cutoff that isn't above 0 has no meaning there; the operation's own stands then.
Operation MakeLog(const Op& settings) {
  auto log = std::make_unique<CDSPLog>();
  const double cutoff = settings.GetValue().GetReal();
  if (cutoff > 0) log->cutoff = cutoff;
  return log;
}

Operation MakeAgc(const Op& settings) {
  auto gain = std::make_unique<CDSPAGC>();
  gain->dimension = 1;
  gain->width = settings.GetValue().GetInteger();
  return gain;
}

Operation MakeGaussian(const Op& settings) {
  auto filter = std::make_unique<CDSPConvolution>();
  filter->SetGaussianKernel(1, settings.GetValue().GetInteger(), 1, 1);
  filter->edgeMode = CDSPConvolution::kCentred;
  return filter;
}

Operation MakeMovingAverage(const Op& settings) {
  auto filter = std::make_unique<CDSPConvolution>();
  filter->SetBoxKernel(1, settings.GetValue().GetInteger(), 1, 1);
  filter->edgeMode = CDSPConvolution::kCentred;
  return filter;
}

Operation MakeDifference(const Op& settings) {
  auto filter = std::make_unique<CDSPConvolution>();
  filter->SetDifferenceKernel(settings.GetValue().GetInteger());
  return filter;
}

Operation MakeTransform(double scale, double offset) {
  auto transform = std::make_unique<CDSPTransform>();
  transform->scale = scale;
  transform->offset = offset;
  return transform;
}

Operation MakeScale(const Op& settings) {
  return MakeTransform(settings.GetValue().GetReal(), 0);
}

Operation MakeTranslate(const Op& settings) {
  return MakeTransform(1, settings.GetValue().GetReal());
}

Operation MakeProgressive(const Op& settings) {
  return MakeTransform(1, settings.GetBand() * settings.GetValue().GetReal());
}

// In doubles: bands from outside may be any number.
Operation MakeProgressiveReverse(const Op& settings) {
  const double behind = static_cast<double>(settings.GetBandCount()) - settings.GetBand() - 1;
  return MakeTransform(1, behind * settings.GetValue().GetReal());
}

// type, name, parameter, its type, preset; odd only, in the short list, by the band; maker
constexpr OperatorRow kRows[] = {
    {Op::kFillNull, kStringFillNull, 0, "", VT_NULL, "", false, true, false, MakeFillNull},
    {Op::kDetrend, kStringDetrend, 0, "", VT_NULL, "", false, true, false, MakeDetrend},
    {Op::kHistogramEqualize, kStringHistogramEqualize, 0, "", VT_NULL, "", false, true, false, MakeHistogramEqualize},
    {Op::kPowerFunction, kStringPowerFunction, 0, "", VT_R8, "1", false, false, false, MakePower},
    {Op::kLogFunction, kStringLogFunction, kStringLinearCutoff, "", VT_R8, "1", false, false, false, MakeLog},
    {Op::kAgc, kStringAgc, kStringWidth, "", VT_I4, "1", true, true, false, MakeAgc},
    {Op::kGaussian, kStringGaussian, kStringWidth, "", VT_I4, "1", true, true, false, MakeGaussian},
    {Op::kMovingAverage, kStringMovingAverage, kStringWidth, "", VT_I4, "1", true, true, false, MakeMovingAverage},
    {Op::kScale, kStringScale, 0, "", VT_R8, "1", false, false, false, MakeScale},
    {Op::kTranslate, kStringTranslate, 0, "", VT_R8, "1", false, false, false, MakeTranslate},
    {Op::kProgressiveTranslate, kStringProgressiveTranslate, 0, "", VT_R8, "1", false, false, true, MakeProgressive},
    {Op::kProgressiveTranslateReverse, kStringProgressiveTranslateReverse, 0, "", VT_R8, "1", false, false, true,
     MakeProgressiveReverse},
    {Op::kHorizontalDifference, kStringHorizontalDifference, 0, "Order", VT_I4, "4", false, true, false,
     MakeDifference},
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
