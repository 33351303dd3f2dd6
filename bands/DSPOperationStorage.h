// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <vector>

#include "bands/DSPOperationData.h"

namespace tallyscope {

// What an operation reads and what it writes, input i going to output i. It owns the entries; whether an entry owns its
// data is the entry's matter.
class CDSPOperationStorage {
 public:
  using Entries = std::vector<std::unique_ptr<CDSPOperationData>>;

  // What is added comes last; the reference is good until its side is cleared.
  CDSPOperationData& AddInput(std::unique_ptr<CDSPOperationData> entry);
  CDSPOperationData& AddOutput(std::unique_ptr<CDSPOperationData> entry);
  // The whole of a data set; with `own` it goes with the entry, else it must outlive the storage.
  CDSPOperationData& AddInput(CDSPData* data, bool own);
  CDSPOperationData& AddOutput(CDSPData* data, bool own);

  // Replaces `to` by copies of `from`'s entries. Move ownership: data that `from` owned is `to`'s afterwards, and
  // `from` goes on sharing it.
  static void Copy(Entries& from, Entries& to, bool moveOwnership);
  void ClearInputs() { inputs.clear(); }
  void ClearOutputs() { outputs.clear(); }

  Entries inputs;
  Entries outputs;
};

}  // namespace tallyscope
