// SPDX-License-Identifier: MIT
#include "bands/DSPOperationStorage.h"

#include <utility>

namespace tallyscope {

namespace {

std::unique_ptr<CDSPOperationData> MakeEntry(CDSPData* data, bool own) {
  auto entry = std::make_unique<CDSPOperationData>(data);
  entry->SetData(data, own);
  return entry;
}

}  // namespace

CDSPOperationData& CDSPOperationStorage::AddInput(std::unique_ptr<CDSPOperationData> entry) {
  return *inputs.emplace_back(std::move(entry));
}

CDSPOperationData& CDSPOperationStorage::AddOutput(std::unique_ptr<CDSPOperationData> entry) {
  return *outputs.emplace_back(std::move(entry));
}

CDSPOperationData& CDSPOperationStorage::AddInput(CDSPData* data, bool own) {
  return AddInput(MakeEntry(data, own));
}

CDSPOperationData& CDSPOperationStorage::AddOutput(CDSPData* data, bool own) {
  return AddOutput(MakeEntry(data, own));
}

void CDSPOperationStorage::Copy(Entries& from, Entries& to, bool moveOwnership) {
  Entries copies;
  for (const auto& entry : from) {
    copies.push_back(entry->Clone(false));
    if (moveOwnership) copies.back()->MoveOwnership(*entry);
  }
  to = std::move(copies);
}

}  // namespace tallyscope
