// SPDX-License-Identifier: MIT
#pragma once

class QWidget;

namespace tallyscope {

class CStats_ModelVariogram;

// Ask for a model's file, in the folder where the last one was, and read or write it. False when nothing was read or
// written: the user cancelled, or has been told what is wrong. A model that isn't read stays as it was.
bool LoadFromFile(CStats_ModelVariogram& model, QWidget* parent);
bool SaveToFile(const CStats_ModelVariogram& model, QWidget* parent);

}  // namespace tallyscope
