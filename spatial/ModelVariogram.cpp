// SPDX-License-Identifier: MIT
#include "spatial/ModelVariogram.h"

#include <cmath>

#include "platform/core/NumberText.h"
#include "spatial/NestType.h"

namespace tallyscope {

namespace {

bool IsWithin(double a, double b) {
  constexpr double kTolerance = 1e-10;
  return a >= b - kTolerance && a < b + kTolerance;
}

}  // namespace

CModelVariogram CModelVariogram::PowerLaw(const NestShape& shape, double power) {
  CModelVariogram nest(5, shape);
  nest.power = power;
  return nest;
}

CModelVariogram CModelVariogram::DampedHoleEffect(const NestShape& shape, double dampedRange) {
  CModelVariogram nest(7, shape);
  nest.dampedRange = dampedRange;
  return nest;
}

CString CModelVariogram::GetTypeName(int type) {
  const NestType* row = FindNestType(type);
  return row != nullptr ? row->name : "";
}

double CModelVariogram::Evaluate(double distance) const {
  const NestType* row = FindNestType(type);
  return row != nullptr ? row->evaluate(*this, std::fabs(distance)) : 0.0;
}

CString CModelVariogram::GetDescription() const {
  constexpr int kDigits = 8;
  CString text;
  const NestType* row = FindNestType(type);
  if (row == nullptr) return text;
  NestType::ForEach(row->parameters, [&](const NestParameter& parameter) {
    if (parameter.listed == nullptr) return;
    text +=
        CString(text.empty() ? "" : ", ") + parameter.listed + " = " + FormatGeneral(this->*parameter.value, kDigits);
  });
  return text;
}

bool CModelVariogram::IsIsotropic(int dimension) const {
  if (type == 0) return true;
  if (dimension == 2) return IsWithin(primaryRange, minorRange);
  if (dimension == 3) return IsWithin(primaryRange, minorRange) && IsWithin(primaryRange, depthRange);
  return true;
}

}  // namespace tallyscope
