// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "conditioning/Stats_ConditioningRange.h"
#include "conditioning/Stats_Operator.h"
#include "platform/core/String.h"

namespace tallyscope {

class CArchive;
class bvector;
class XMLElement;

// What the rules of a conditioning did to one value.
struct ConditioningOutcome {
  enum eMatch { eNone, eDeclared, eListed, eInRange };
  eMatch match = eNone;  // the first rule of nulls that took the value
  bool isNull = false;   // it stays null
  bool toBackground = false;
  bool cappedBelow = false;  // raised to the minimum
  bool cappedAbove = false;  // lowered to the maximum
};

// The rules of one field: what counts as null, what takes its place, which caps hold; and a chain of band operators. A
// host keeps one for each field and calls it while it reads values; nothing here changes a table.
//   CStats_Conditioning rules;
//   rules.SetNULL(-999);
//   rules.AddNULLRange(-1, 0);
//   rules.CapMaximum(1, 500);
//   bool valid = rules.ProcessValue(value);
//
// Rules work value by value, the chain on a whole band; neither calls the other.
//
// A number matches another when they differ by no more than a millionth of the larger; an infinity then matches every
// finite number, and NaN nothing. The kind says what a dialog edits and a file keeps: the rules don't ask it.
class CStats_Conditioning {
 public:
  enum eKind : int { eEmpty = 0, eNumeric = 1, eString = 2 };

  static constexpr int GetSchemaVersion() { return 2; }

  int kind = eNumeric;  // a file may hold another number
  bool caseSensitive = false;
  bool nullDeclared = true;
  double nullValue = -1e32;
  CString nullString;
  std::vector<double> nullValues;  // further nulls
  std::vector<CString> nullStrings;
  std::vector<CStats_ConditioningRange> nullRanges;
  bool convertToBackground = false;
  double backgroundValue = 0;
  CString backgroundString;
  bool capMinimumOn = false;
  double capMinimum = 0;
  bool capMaximumOn = false;
  double capMaximum = 100;
  bool operatorsUsed = false;
  std::vector<CStats_Operator> operators;

  void DefineEmpty() { kind = eEmpty; }
  void DefineNumeric() { kind = eNumeric; }
  void DefineString(int sensitive);
  void DefineOperators(int use) { operatorsUsed = use != 0; }

  void DeclareNULL(int declared) { nullDeclared = declared != 0; }  // the flag alone
  void SetNULL(double value);                                       // declares as well
  void SetNULL(const CString& value);
  void AddNULLValue(double value) { nullValues.push_back(value); }
  void AddNULLValue(const CString& value) { nullStrings.push_back(value); }
  void AddNULLRange(double min, double max) { nullRanges.emplace_back(min, max); }

  // Nulls become the value. Where a null is declared by now and the value equals it, this switches itself off.
  void Convert2Bkgd(int on, double value);
  void Convert2Bkgd(int on, const CString& value);

  void CapMinimum(int on, double value);
  void CapMaximum(int on, double value);

  bool IsEmpty() const { return kind == eEmpty; }
  bool IsNumeric() const { return kind == eNumeric; }
  bool IsString() const { return kind == eString; }
  bool IsCaseSensitive() const { return caseSensitive; }
  bool IsNULLDeclared() const { return nullDeclared; }
  bool IsOperatorsUsed() const { return operatorsUsed; }
  int GetOperatorCount() const { return static_cast<int>(operators.size()); }

  // Appends to the chain, for band 0 of 1.
  void AddOperator(CStats_Operator::CStats_OperatorType type, const CString& value);

  // The rules on a value in place, told step by step. The minimum cap comes first, so of crossed caps the maximum wins.
  ConditioningOutcome ApplyRules(double& value) const;
  ConditioningOutcome ApplyRules(CString& value) const;

  // By the kind: what it says of numbers and of texts, and the chain.
  bool operator==(const CStats_Conditioning& other) const;

  // Versions 0 to 2; an older one leaves what it doesn't hold as it stands, and so does an archive from where it fails.
  virtual void Serialize(CArchive& archive);

  virtual CString ConvertValue(const CString& value) const;  // the value after the rules
  virtual double ConvertValue(double value) const;
  virtual int ProcessValue(CString& value) const;  // in place; 1: valid, 0: null
  virtual int ProcessValue(double& value) const;
  // 1 for a null. Without the rules only the declared null counts; without a declared null nothing is one.
  virtual int IsNull(const CString& value, bool applyRules) const;
  virtual int IsNull(double value, bool applyRules) const;

  // The chain over a band, in place: `count` samples, a set bit in `nulls` for each null. 1 when the chain ran, 0 when
  // there is none or it is not used; nothing is touched then. A step that can't run passes the band on.
  virtual int ProcessOperations(float* values, bvector* nulls, int count) const;
  // The same over variants. Numbers become VT_R8, texts what atof reads in them, anything else is null; what comes out
  // is VT_R8 or VT_NULL.
  virtual int ProcessOperations(std::vector<COleVariant>& values) const;

  // As a child "Conditioning" of an element of a host's document: lists, ranges, background, caps and chain, with six
  // decimals. The rest has no place there. Nothing happens without a parent.
  void GetProperties(XMLElement* parent) const;
  // 1 when that changed anything.
  int SetProperties(XMLElement* parent);

 private:
  int Compare(const CString& a, const CString& b) const;
  ConditioningOutcome::eMatch MatchLists(const CString& value) const;
  void SetBackground(int on, bool equalsNull);
  void Store(CArchive& archive) const;
  void Load(CArchive& archive);
};

}  // namespace tallyscope
