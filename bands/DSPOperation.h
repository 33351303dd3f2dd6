// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <memory>
#include <vector>

#include "bands/DSPOperationStorage.h"
#include "bands/DSPProgress.h"

namespace tallyscope {

class CDSPProcess;

// The base of every step over bands: it reads the inputs of its storage and writes the outputs. As it stands it copies,
// and so does any operation with `dispatch` 0.
//
// A step over samples walks the overlap of input i and output i, for every i that both have, and in it the active bands
// (BandWalk.h). A null of the input gives the output band's null value and a set bit, unless a class says otherwise.
class CDSPOperation {
 public:
  // Bits of inputFlags.
  static constexpr int kExactInputs = 1;            // takes just the required count of inputs
  static constexpr int kInputsHaveRequired = 2;     // every input must have the required count of bands
  static constexpr int kFollowersHaveRequired = 4;  // every input but the first must
  // Bits of outputFlags.
  static constexpr int kExactOutputs = 1;        // makes just the required count of outputs
  static constexpr int kOutputHasRequired = 2;   // an output has the required count of bands, not the input's
  static constexpr int kSeparateOutput = 8;      // an output may not be the input's memory
  static constexpr int kOutputsAreInputs = 16;   // never makes outputs
  static constexpr int kOutputHasAllBands = 32;  // those of the input that are switched off as well

  CDSPOperation() = default;
  virtual ~CDSPOperation() = default;

  virtual void BindInputs(CDSPOperationStorage& previous);  // takes over those outputs that are enabled and fit
  virtual void BindOutputs();                               // the inputs themselves, or new ones
  virtual void OnInputBound(CDSPOperationData&) {}
  virtual bool SameShape(const CDSPOperationStorage::Entries& side, const CDSPOperationStorage::Entries& other);
  virtual bool InputsOverlapOutputs();  // some band's array serves an input and an output
  virtual void ShiftOutputOrigins();    // by where in the inputs' grids the outputs' samples began
  virtual std::unique_ptr<CDSPData> NewData() { return std::make_unique<CDSPData>(); }
  virtual std::unique_ptr<CDSPOperationData> MakeRegion(int x0, int y0, int z0, int x1, int y1, int z1, int step);
  virtual std::array<int, 3> GetOutputOrigin(int index);  // before the shift: input `index`'s
  // Appends an output for that input's region: null everywhere, one band for each enabled one.
  virtual void CreateOutput(int inputIndex);
  virtual bool CheckAxes();  // picks the axes if they are 0; false when they don't suit the dimension
  // By the dimension. False without a storage, when the sink stops it, or when an output's OnProcessed says so; what
  // has been written by then stays. The sink may be null.
  virtual bool Run(CDSPProgress* progress);
  virtual bool ProcessAny(CDSPProgress* progress);
  virtual bool Process1D(CDSPProgress*) { return true; }
  virtual bool Process2D(CDSPProgress*) { return true; }
  virtual bool Process3D(CDSPProgress*) { return true; }
  virtual bool ShowDialog() { return false; }
  virtual bool IsRepeating() { return false; }

  void TakeInputs(CDSPOperationStorage::Entries& inputs);  // all of them, as they are

  // Of an input in the storage, and of a band of it.
  bool IsInputEnabled(int input) const;
  bool IsBandEnabled(int input, int band) const;
  // For each band of output `output` that is worked on, the band of the input that it comes from, -1 for none.
  std::vector<int> GetBandSources(int inputBands, int outputBands, int input) const;

  int dimension = 1;  // 0 any, else the Process operation for lines, planes or cubes
  int passes = 1;     // of an operation that repeats
  CDSPProcess* owner = nullptr;
  CDSPOperationStorage* storage = nullptr;  // not owned
  int dispatch = 1;                         // 0: the base's ProcessAny, whatever the class
  int inputFlags = 0;
  int outputFlags = 0;
  int requiredInputs = 1;
  int requiredBands = 1;
  int requiredOutputs = 1;
  int axes = 0;                     // bits 0, 1, 2: x, y, z, to work along; 0: picked from the first input
  std::vector<bool> inputEnable;    // beyond its end an input is on
  std::vector<bvector> bandEnable;  // for each input; beyond its end a band is on

 private:
  int GetSetting(int input) const;  // the entry of the enable vectors that speaks of this input
  bool Fits(const CDSPOperationData& entry, int taken) const;
  bool KeepsInputs() const;

  std::vector<int> boundFrom_;  // for each input, which of the previous outputs it was
};

}  // namespace tallyscope
