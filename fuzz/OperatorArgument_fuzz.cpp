// SPDX-License-Identifier: MIT
// Any lines as the operators of a chain: an operator that is taken reads again as the same when it is written out, one
// that isn't comes with a sentence, and the chain runs.
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "fuzz/Demand.h"
#include "fuzz/Lines.h"
#include "host/OperatorArgument.h"
#include "statistics/bvector.h"

namespace tallyscope {
namespace {

constexpr int kSamples = 24;
constexpr int kWidest = 1001;  // a run with more takes no other way, but the fuzzer's time

// Ten digits are what a chain shows of a number: final after one round.
void CheckRoundTrip(const CStats_Operator& step) {
  CStats_Conditioning once;
  const CString text = FormatOperatorArgument(step);
  Demand(AddOperatorArgument(text, once).empty(), "what is written can be read");
  Demand(once.operators.size() == 1 && once.operators.front().GetType() == step.GetType(), "it is the same operator");
  CStats_Conditioning twice;
  Demand(AddOperatorArgument(FormatOperatorArgument(once.operators.front()), twice).empty(), "and so once more");
  Demand(once.operators == twice.operators, "with the same value");
}

void Run(CStats_Conditioning& rules) {
  std::array<float, kSamples> samples{};
  bvector nulls(kSamples);
  for (int i = 0; i < kSamples; ++i) samples[static_cast<std::size_t>(i)] = static_cast<float>(i * i % 17 - 5);
  for (const int gap : {0, 7, 8, 15}) nulls.Set(gap, true);
  rules.operatorsUsed = true;
  Demand(rules.ProcessOperations(samples.data(), &nulls, kSamples) == 1, "the chain runs");
}

}  // namespace
}  // namespace tallyscope

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tallyscope;
  std::string_view text(reinterpret_cast<const char*>(data), size);
  CStats_Conditioning rules;
  bool isNarrow = true;
  while (!text.empty() && rules.operators.size() < 10) {
    const auto before = rules.operators.size();
    const CString sentence = AddOperatorArgument(CString(TakeLine(text)), rules);
    Demand(sentence.empty() == (rules.operators.size() > before), "an operator or a sentence");
    if (!sentence.empty()) continue;
    const auto& step = rules.operators.back();
    CheckRoundTrip(step);
    if (CStats_Operator::IsOperatorParamOddValueOnly(step.GetType()) != 0) {
      isNarrow &= std::atoi(step.GetValueS().c_str()) <= kWidest;
    }
  }
  Demand(CheckOperators(rules).empty(), "what was taken can run");
  if (isNarrow && !rules.operators.empty()) Run(rules);
  return 0;
}
