// SPDX-License-Identifier: MIT
// The chain of operators over a band of samples.
#include "bands/DSPProcess.h"
#include "conditioning/OperatorCatalogue.h"
#include "conditioning/Stats_Conditioning.h"
#include "platform/core/NumberText.h"
#include "statistics/bvector.h"

namespace tallyscope {

namespace {

// False for what holds no number.
bool TakeSample(COleVariant& value, float& sample) {
  if (value.IsNumber()) {
    value.SetReal(value.GetReal());
    sample = static_cast<float>(value.GetReal());
    return true;
  }
  if (!value.IsText()) return false;
  sample = static_cast<float>(ParseLeadingNumber(value.GetText()));
  return true;
}

// One line of samples, whose memory stays the caller's.
std::unique_ptr<CDSPData> MakeLine(float* values, bvector* nulls, int count) {
  auto line = std::make_unique<CDSPData>();
  line->SetDimensions(count, 1, 1);
  auto& band = line->AddBand();
  band.SetFloatData(values, false);
  band.SetMask(nulls, false, CDSPDataBand::kDefaultNull);
  return line;
}

}  // namespace

// Each step brings its result back to the caller's band before the next begins. A process of them all would keep one
// more band between a filter and what follows.
int CStats_Conditioning::ProcessOperations(float* values, bvector* nulls, int count) const {
  if (!operatorsUsed || operators.empty()) return 0;
  if (count < 1) return 1;
  bvector none(nulls == nullptr ? count : 0);
  const auto line = MakeLine(values, nulls == nullptr ? &none : nulls, count);
  for (const auto& step : operators) {
    const auto* row = FindOperatorRow(step.GetType());
    if (row == nullptr) continue;
    const auto operation = row->make(step);
    CDSPProcess process;
    process.Storage().AddInput(line.get(), false);
    process.Storage().AddOutput(line.get(), false);
    process.Append(*operation);
    process.Run(nullptr);  // a step that fails has passed its data on
  }
  return 1;
}

int CStats_Conditioning::ProcessOperations(std::vector<COleVariant>& values) const {
  if (!operatorsUsed || operators.empty()) return 0;
  const int count = static_cast<int>(values.size());
  std::vector<float> samples(values.size());
  bvector nulls(count);
  for (int i = 0; i < count; ++i) {
    float& sample = samples[static_cast<std::size_t>(i)];
    if (TakeSample(values[static_cast<std::size_t>(i)], sample)) continue;
    sample = static_cast<float>(nullValue);
    nulls.Set(i, true);
  }
  if (ProcessOperations(samples.data(), &nulls, count) == 0) return 0;
  for (int i = 0; i < count; ++i) {
    auto& value = values[static_cast<std::size_t>(i)];
    value = nulls.Get(i) ? COleVariant::Null() : COleVariant(static_cast<double>(samples[static_cast<std::size_t>(i)]));
  }
  return 1;
}

}  // namespace tallyscope
