// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "bands/DSPOperation.h"

namespace tallyscope {

// A pipeline of operations. Makes the data between the steps, and takes care of a step whose output is its input's
// memory but may not be.
//   CDSPProcess process;
//   process.Storage().AddInput(&data, false);
//   process.Storage().AddOutput(&data, false);   // in place
//   process.Append(power);
//   process.Append(smooth);
//   process.Run(nullptr);
// A step that fails doesn't keep the later ones from running.
class CDSPProcess : public CDSPOperation {
 public:
  CDSPProcess() { storage = &own_; }
  CDSPProcess(const CDSPProcess&) = delete;
  CDSPProcess& operator=(const CDSPProcess&) = delete;

  // Runs the operations in order and empties the list. Without operations it is a plain one itself. False when a step
  // failed or there is no storage.
  bool Run(CDSPProgress* progress) override;
  virtual bool RunOperation(CDSPOperation& operation, CDSPOperationStorage& intermediate, bool first, bool last,
                            CDSPProgress* progress);

  CDSPOperationStorage& Storage() { return own_; }
  void Append(CDSPOperation& operation) { operations.push_back(&operation); }

  // For an operation that is made of steps: takes its enabled inputs with their outputs, then each step in turn. The
  // steps get its choice of bands, and what lies between them has every band in its place.
  void WorkFor(const CDSPOperation& whole);
  void AppendPart(CDSPOperation& step);

  std::vector<CDSPOperation*> operations;  // not owned
  bool keepInputs = true;                  // a step may not write over the process's inputs; its outputs may lie there

 private:
  void Bind(CDSPOperation& operation, CDSPOperationStorage& intermediate, bool first, bool last);
  bool RunPass(CDSPOperation& operation, CDSPProgress* progress);
  bool RunAside(CDSPOperation& operation, CDSPProgress* progress);

  CDSPOperationStorage own_;
  std::vector<bvector> partBands_;  // of the inputs that WorkFor took
};

}  // namespace tallyscope
