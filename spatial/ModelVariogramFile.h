// SPDX-License-Identifier: MIT
#pragma once

#include "platform/core/Status.h"

namespace tallyscope {

class CModelVariogram;
class CStats_ModelVariogram;
class CUTextFile;

// The text file of a model variogram; its grammar stands in docs/formats/mvf.md. Totals, transforms and dimension are
// not stored: Update brings them back.

CString FormatModel(const CStats_ModelVariogram& model);         // the whole file
void WriteModel(const CModelVariogram& nest, CUTextFile& file);  // the lines of one nest

// Writes the file whole or not at all. Full sentences when it can't be written.
Status SaveToFile(const CStats_ModelVariogram& model, const CString& path);

// What the lines of a file said to the reader.
struct ModelFileLines {
  int good = 0;      // lines that say something; a file without any is no model's
  int firstOdd = 0;  // number of the first other line that isn't blank or a comment, from 1; 0 without one
  CString oddText;
};

// Fills the model from an open file, in the dimension that it had. There is no bad file: lines that say nothing are
// skipped, and a file without any gives an empty model. False when reading fails, which the file's error text tells;
// the model is then as it was.
[[nodiscard]] bool ReadModel(CUTextFile& file, CStats_ModelVariogram& model, ModelFileLines& lines);

// The same by path. False when the file doesn't open or can't be read to its end: `error` then says why in full
// sentences, and the model is as it was.
bool LoadFromFile(CStats_ModelVariogram& model, const CString& path, CString& error);
bool LoadFromFile(CStats_ModelVariogram& model, const CString& path, ModelFileLines& lines, CString& error);

}  // namespace tallyscope
