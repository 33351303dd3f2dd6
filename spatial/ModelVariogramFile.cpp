// SPDX-License-Identifier: MIT
#include "spatial/ModelVariogramFile.h"

#include <algorithm>
#include <array>
#include <utility>

#include "files/UTextFile.h"
#include "platform/core/NumberText.h"
#include "spatial/NestType.h"
#include "spatial/Stats_ModelVariogram.h"

namespace tallyscope {

namespace {

constexpr int kDigits = 10;

constexpr NestParameter kNugget = {"Nugget", &CModelVariogram::nugget};

// The lines that end every nest.
constexpr NestParameter kAnisotropy[] = {{"PrimaryRange", &CModelVariogram::primaryRange},
                                         {"MinorRange", &CModelVariogram::minorRange},
                                         {"DepthRange", &CModelVariogram::depthRange},
                                         {"Strike", &CModelVariogram::strike},
                                         {"Plunge", &CModelVariogram::plunge},
                                         {"Dip", &CModelVariogram::dip}};

// Azimuth is read, never written.
constexpr NestParameter kAzimuth = {"Azimuth", &CModelVariogram::strike};

// The member that a line's key names, whatever the type of the nest; null for any other key.
double CModelVariogram::*FindMember(CUTextFile& line) {
  double CModelVariogram::*found = nullptr;
  const auto match = [&](const NestParameter& parameter) {
    if (found == nullptr && line.IsToken(0, parameter.name)) found = parameter.value;
  };
  match(kNugget);
  match(kAzimuth);
  NestType::ForEach(kAnisotropy, match);
  for (const auto& type : GetNestTypes()) NestType::ForEach(type.stored, match);
  return found;
}

bool ReadType(CUTextFile& line, CModelVariogram& nest) {
  const auto types = GetNestTypes();
  const auto found =
      std::find_if(types.begin(), types.end(), [&](const NestType& type) { return line.IsToken(1, type.name); });
  if (found == types.end()) return false;
  nest.type = static_cast<int>(found - types.begin());
  return true;
}

// A line counts for the last nest that was begun; before the first one only the isotropic nugget counts. False if it
// says nothing.
bool ReadModelLine(CUTextFile& line, CStats_ModelVariogram& model) {
  const bool hasNumber = line.IsWord(1, "");  // in quotes it is none
  const bool begins = line.IsToken(1, "Begin");
  const bool ends = line.IsToken(1, "End");
  if (line.IsToken(0, "IsotropicNugget")) {
    if (hasNumber) model.SetIsotropicNugget(ParseLeadingNumber(line.GetToken(1)));
    return hasNumber;
  }
  if (line.IsToken(0, "Nest")) {
    if (begins) model.AddNest();
    return begins || ends;
  }
  if (line.IsToken(0, "Model")) return begins || ends;
  if (model.nests.empty()) return false;
  if (line.IsToken(0, "Type")) return ReadType(line, model.nests.back());
  const auto member = FindMember(line);
  if (!hasNumber || member == nullptr) return false;
  model.nests.back().*member = ParseLeadingNumber(line.GetToken(1));
  return true;
}

CString FormatNest(const CModelVariogram& nest) {
  CString text = "\tNest Begin\n\t\tType = \"" + CModelVariogram::GetTypeName(nest.type) + "\"\n";
  const auto add = [&](const NestParameter& parameter) {
    text += CString("\t\t") + parameter.name + " = " + FormatGeneral(nest.*parameter.value, kDigits) + "\n";
  };
  add(kNugget);
  const NestType* type = FindNestType(nest.type);
  if (type != nullptr) NestType::ForEach(type->stored, add);
  NestType::ForEach(kAnisotropy, add);
  return text + "\tNest End\n";
}

}  // namespace

void WriteModel(const CModelVariogram& nest, CUTextFile& file) {
  file.WriteString(FormatNest(nest));
}

CString FormatModel(const CStats_ModelVariogram& model) {
  CString text = "! Qorvane Tallyscope - Model Variogram\n\nModel Begin\n\tIsotropicNugget = " +
                 FormatGeneral(model.isotropicNugget.nugget, kDigits) + "\n";
  for (const auto& nest : model.nests) text += FormatNest(nest);
  return text + "Model End\n";
}

Status SaveToFile(const CStats_ModelVariogram& model, const CString& path) {
  CUTextFile file;
  const bool saved = file.Open(path, 0, 1, 0) && file.WriteString(FormatModel(model)) && file.Close();
  return saved ? Status::Good() : Status::Bad(file.GetErrorText());
}

bool ReadModel(CUTextFile& file, CStats_ModelVariogram& model, ModelFileLines& lines) {
  CStats_ModelVariogram read;
  lines = {};
  for (int number = 1; file.ReadLine(); ++number) {
    const bool isBlank = file.GetTokenCount() == 0 || file.GetTokenType(0) == CUTokeniser::kComment;
    if (isBlank) continue;
    if (ReadModelLine(file, read)) {
      ++lines.good;
    } else if (lines.firstOdd == 0) {
      lines.firstOdd = number;
      lines.oddText = file.GetTokeniser().GetLine();
    }
  }
  if (file.IsFailed()) return false;
  read.Update(model.dimension);
  model = std::move(read);
  return true;
}

bool LoadFromFile(CStats_ModelVariogram& model, const CString& path, ModelFileLines& lines, CString& error) {
  CUTextFile file;
  if (file.Open(path, 1, 0, 0) && ReadModel(file, model, lines)) return true;
  error = file.GetErrorText();
  return false;
}

bool LoadFromFile(CStats_ModelVariogram& model, const CString& path, CString& error) {
  ModelFileLines lines;
  return LoadFromFile(model, path, lines, error);
}

}  // namespace tallyscope
