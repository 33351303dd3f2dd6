// SPDX-License-Identifier: MIT
#include "spatial/ModelVariogramFile.h"

#include <algorithm>
#include <array>

#include "files/NumberText.h"
#include "files/UTextFile.h"
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

void ReadType(CUTextFile& line, CModelVariogram& nest) {
  const auto types = GetNestTypes();
  const auto found =
      std::find_if(types.begin(), types.end(), [&](const NestType& type) { return line.IsToken(1, type.name); });
  if (found != types.end()) nest.type = static_cast<int>(found - types.begin());
}

// A line counts for the last nest that was begun; before the first one only the isotropic nugget counts.
void ReadModelLine(CUTextFile& line, CStats_ModelVariogram& model) {
  const bool hasNumber = line.IsWord(1, "");  // in quotes it is none
  if (line.IsToken(0, "IsotropicNugget")) {
    if (hasNumber) model.SetIsotropicNugget(ParseLeadingNumber(line.GetToken(1)));
  } else if (line.IsToken(0, "Nest")) {
    if (line.IsToken(1, "Begin")) model.AddNest();
  } else if (model.nests.empty()) {
    return;
  } else if (line.IsToken(0, "Type")) {
    ReadType(line, model.nests.back());
  } else if (hasNumber) {
    const auto member = FindMember(line);
    if (member != nullptr) model.nests.back().*member = ParseLeadingNumber(line.GetToken(1));
  }
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

bool SaveToFile(const CStats_ModelVariogram& model, const CString& path, CString& error) {
  CUTextFile file;
  if (file.Open(path, 0, 1, 0) && file.WriteString(FormatModel(model)) && file.Close()) return true;
  error = file.GetErrorText();
  return false;
}

void ReadModel(CUTextFile& file, CStats_ModelVariogram& model) {
  model.Reset();
  while (file.ReadLine()) ReadModelLine(file, model);
  model.Update(model.dimension);
}

bool LoadFromFile(CStats_ModelVariogram& model, const CString& path, CString& error) {
  CUTextFile file;
  if (!file.Open(path, 1, 0, 0)) {
    error = file.GetErrorText();
    return false;
  }
  ReadModel(file, model);
  return true;
}

}  // namespace tallyscope
