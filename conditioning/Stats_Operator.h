// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "platform/core/OleVariant.h"

namespace tallyscope {

class CArchive;

// One step of a chain of band operators: what it does, its parameter, and which band of how many it works on. Kept by
// value, so nothing derives from it.
//   CStats_Operator smooth;
//   CStats_Operator::CreateOperator(CStats_Operator::kMovingAverage, "11", smooth);
// The types stand in one table, conditioning/OperatorCatalogue.h, which everything here asks.
class CStats_Operator final {
 public:
  // Files may hold any number; one that is not in the catalogue does nothing.
  enum CStats_OperatorType : int {
    kNone = -1,
    kFillNull = 0,
    kDetrend = 1,
    kHistogramEqualize = 2,
    kPowerFunction = 3,
    kLogFunction = 4,
    kAgc = 5,
    kGaussian = 6,
    kMovingAverage = 7,
    kScale = 8,
    kTranslate = 9,
    kProgressiveTranslate = 10,
    kProgressiveTranslateReverse = 11,
    kHorizontalDifference = 12,
  };

  static constexpr int GetSchemaVersion() { return 0; }

  static CString GetOperatorName(CStats_OperatorType type);  // empty for an unknown type, as are the other texts
  static CStats_OperatorType GetOperatorTypeFromName(const CString& name);  // in any case; kNone for an unknown name
  static CString GetOperatorParamName(CStats_OperatorType type);
  static int GetOperatorHasParam(CStats_OperatorType type);
  static VARTYPE GetOperatorParamType(CStats_OperatorType type);  // VT_NULL, VT_R8 or VT_I4
  static int IsOperatorParamOddValueOnly(CStats_OperatorType type);
  static void GetOperatorParamDefaultValue(CStats_OperatorType type, CString& out);  // unknown type: left alone

  // Names and types in catalogue order. Scope 0: all, those of progressive translation only if asked for. Scope 1: all
  // but those that compute each sample from a number that the user gives. Any other scope: none.
  static void GetOperatorList(std::vector<CString>& names, std::vector<CStats_OperatorType>& types, int scope,
                              int progressive);

  // The type, and its parameter from a text: what atof or atoi make of it. An unknown type leaves the parameter alone.
  static void CreateOperator(CStats_OperatorType type, const CString& value, CStats_Operator& out);

  CStats_OperatorType GetType() const { return type_; }
  COleVariant GetValue() const { return value_; }
  CString GetValueS() const;  // "%.10g" or "%d", by the catalogue; empty without a parameter
  int GetBand() const { return band_; }
  void SetBand(int band) { band_ = band; }
  int GetBandCount() const { return bandCount_; }
  void SetBandCount(int count) { bandCount_ = count; }

  bool operator==(const CStats_Operator& other) const;  // type and parameter; the bands don't count

  // The version, which a reader skips, the type and the parameter. The bands are not kept there.
  virtual void Serialize(CArchive& archive);

 private:
  CStats_OperatorType type_ = kNone;
  COleVariant value_;
  int band_ = 0;       // this field among the bands of its data set
  int bandCount_ = 1;  // bands of that data set
};

}  // namespace tallyscope
