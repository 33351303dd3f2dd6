// SPDX-License-Identifier: MIT
#pragma once

#include "platform/core/String.h"

namespace tallyscope {

class CModelVariogram;
class CStats_ModelVariogram;
class CUTextFile;

// The text file of a model variogram; its grammar stands in docs/formats/mvf.md. Totals, transforms and dimension are
// not stored: Update brings them back.

CString FormatModel(const CStats_ModelVariogram& model);         // the whole file
void WriteModel(const CModelVariogram& nest, CUTextFile& file);  // the lines of one nest

// Writes the file whole or not at all. False when it can't be written: `error` then says why in full sentences.
bool SaveToFile(const CStats_ModelVariogram& model, const CString& path, CString& error);

// Fills the model from an open file. There is no bad file: lines that say nothing are skipped, and a file without any
// gives an empty model. The model is brought up to date in the dimension that it had.
void ReadModel(CUTextFile& file, CStats_ModelVariogram& model);

// The same by path. False when the file doesn't open: `error` then says why in full sentences, and the model is as it
// was.
bool LoadFromFile(CStats_ModelVariogram& model, const CString& path, CString& error);

}  // namespace tallyscope
