// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <span>

#include "spatial/ModelVariogram.h"

namespace tallyscope {

// A number of a nest: how files or people call it, and where it stands. A null name: there is none.
struct NestParameter {
  const char* name = nullptr;
  double CModelVariogram::*value = nullptr;
  const char* listed = nullptr;  // how the list of a model's parts calls it; null: not listed there
};

// A kind of curve. The one table of them is all that evaluation, files, lists and editors know of a type.
struct NestType {
  const char* name;                                           // as people see it and files store it
  double (*evaluate)(const CModelVariogram& nest, double r);  // r is not negative
  double (*sillPart)(const CModelVariogram& nest);            // what the nest adds to the total sill, its nugget aside
  std::array<NestParameter, 3> parameters;  // what people edit, the ranges and angles of anisotropy aside
  std::array<NestParameter, 2> stored;      // file keys of what stands between nugget and ranges
  bool directed;                            // whether ranges and angles count

  template <class Visit>
  static void ForEach(std::span<const NestParameter> row, const Visit& visit) {
    for (const auto& parameter : row) {
      if (parameter.name != nullptr) visit(parameter);
    }
  }
};

std::span<const NestType> GetNestTypes();  // by number, from 0
const NestType* FindNestType(int number);  // null for a number that is no type

}  // namespace tallyscope
