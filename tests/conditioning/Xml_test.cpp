// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <functional>

#include "files/XMLElement.h"
#include "tests/conditioning/ConditioningTesting.h"

namespace tallyscope {

namespace {

using Op = CStats_Operator;

// An element's tag and its children, one a line.
CString Text(XMLElement& element) {
  CString text = element.GetName();
  for (const char* name : {"ConvertNullToBkgnd", "BkgndValue", "CapBelow", "CapBelowValue", "CapAbove", "CapAboveValue",
                           "Value", "Min", "Max", "Type", "Band", "BandCount", "Param"}) {
    if (const auto* attribute = element.FindAttribute(name, false)) {
      text += CString(" ") + name + "=" + attribute->GetValue();
    }
  }
  for (int i = 0; i < element.GetElementCount(); ++i) text += "\n" + Text(*element.GetElement(i));
  return text;
}

// A document with a "Conditioning" of these attributes and child elements, a text of "<...>" each.
class CDocument {
 public:
  CDocument(const CString& attributes, const CString& children) : root(nullptr, "Document", 0) {
    auto* element = new XMLElement(&root, ("<Conditioning " + attributes + ">").c_str(), 0);
    root.AddElement(element);
    for (std::size_t at = 0; at < children.size();) {
      const auto end = children.find('>', at) + 1;
      element->AddElement(new XMLElement(element, children.substr(at, end - at).c_str(), 0));
      at = end;
    }
  }
  XMLElement root;
};

TEST(ConditioningXml, WritesOneElement) {
  auto rules = FullRules(1);
  rules.CapMinimum(0, -4);
  rules.operators[2].SetBand(2);
  rules.operators[2].SetBandCount(5);
  XMLElement root(nullptr, "Document", 0);
  rules.GetProperties(&root);
  EXPECT_EQ(Text(root),
            "Document\n"
            "Conditioning ConvertNullToBkgnd=On BkgndValue=0.500000 CapBelow=Off CapBelowValue=-4.000000 CapAbove=On "
            "CapAboveValue=1234.567800\n"
            "NullValue Value=7.500000\n"
            "NullValue Value=-0.000010\n"
            "NullRange Min=10.000000 Max=20.000000\n"
            "NullRange Min=-3.250000 Max=-1.000000\n"
            "Operator Type=Fill Null Band=0 BandCount=1\n"
            "Operator Type=Moving Average Band=0 BandCount=1 Param=11\n"
            "Operator Type=Progressive Translate (Reverse) Band=2 BandCount=5 Param=2.5");
}

TEST(ConditioningXml, WhatIsWrittenIsReadBackWithoutAChange) {
  auto rules = FullRules(1);
  rules.operators[2].SetBand(2);
  rules.operators[2].SetBandCount(5);
  XMLElement root(nullptr, "Document", 0);
  rules.GetProperties(&root);
  EXPECT_EQ(rules.SetProperties(&root), 0);
  CStats_Conditioning fresh;
  fresh.SetNULL(-999);
  EXPECT_EQ(fresh.SetProperties(&root), 1);
  EXPECT_EQ(fresh.operators[2].GetBand(), 2);
  EXPECT_EQ(fresh.operators[2].GetBandCount(), 5);
  EXPECT_FALSE(fresh.IsOperatorsUsed()) << "has no place there";
  fresh.DefineOperators(1);
  EXPECT_TRUE(fresh == rules);
  EXPECT_TRUE(fresh.nullStrings.empty());
  EXPECT_EQ(fresh.SetProperties(&root), 0);
  EXPECT_EQ(rules.SetProperties(nullptr), 0);
  rules.GetProperties(nullptr);
}

TEST(ConditioningXml, SixDecimalsAreAChangeForWhatHasMore) {
  CStats_Conditioning rules;
  rules.CapMaximum(1, 0.1234567);
  XMLElement root(nullptr, "Document", 0);
  rules.GetProperties(&root);
  EXPECT_EQ(rules.SetProperties(&root), 1);
  EXPECT_EQ(rules.capMaximum, 0.123457);
}

TEST(ConditioningXml, ReadsWhatIsThere) {
  using Rules = const CStats_Conditioning&;
  const CString lists = "<NullValue Value=\"7\"><NullRange Min=\"1\" Max=\"2\">";
  const CString scale = "<Operator Type=\"Scale\" Param=\"2\">";
  const CString same = lists + scale;
  const struct {
    CString attributes, children;
    int changed;
    std::function<bool(Rules)> holds;
  } cases[] = {
      {"", same, 0, [](Rules) { return true; }},
      {"CapAbove=\"on\"", same, 1, [](Rules r) { return r.capMaximumOn; }},
      {"CapAbove=\"yes\"", same, 0, [](Rules r) { return !r.capMaximumOn; }},
      {"CapAboveValue=\"100.000000001\"", same, 0, [](Rules r) { return r.capMaximum == 100; }},
      {"BkgndValue=\"2.5 m\"", same, 1, [](Rules r) { return r.backgroundValue == 2.5 && r.capMaximum == 100; }},
      {"ConvertNullToBkgnd=\"ON\" BkgndValue=\"-1e32\"", same, 1, [](Rules r) { return r.convertToBackground; }},
      {"", "", 1, [](Rules r) { return r.nullValues.empty() && r.nullRanges.empty() && r.operators.empty(); }},
      {"", "<NULLVALUE Value=\"7\"><nullrange Min=\"1\" Max=\"2\">" + scale, 0, [](Rules) { return true; }},
      {"", same + "<NullRange Min=\"5\"><NullValue>", 0, [](Rules r) { return r.nullRanges.size() == 1; }},
      {"", "<NullValue Value=\"8\">" + scale, 1,
       [](Rules r) { return r.nullValues == std::vector<double>{8} && r.nullRanges.empty(); }},
      {"", "<NullRange Min=\"1\" Max=\"3\">", 1, [](Rules r) { return r.nullRanges[0].maximum == 3; }},
      {"", lists + "<Operator Type=\"Scale\" Param=\"2\" Band=\"1\">", 1,
       [](Rules r) { return r.operators[0].GetBand() == 1; }},
      {"", lists + "<Operator Type=\"horizontal difference\">", 1,
       [](Rules r) { return r.operators[0].GetValueS() == "4"; }},
      {"", lists + "<Operator Type=\"Detrend\" Param=\"3\">", 1,
       [](Rules r) { return r.operators[0].GetValue().GetType() == VT_NULL; }},
      {"", lists + "<Operator Param=\"2\">", 1, [](Rules r) { return r.operators[0].GetType() == Op::kNone; }},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.attributes + c.children);
    CStats_Conditioning rules;
    rules.AddNULLValue(7);
    rules.AddNULLRange(1, 2);
    rules.AddOperator(Op::kScale, "2");
    CDocument document(c.attributes, c.children);
    EXPECT_EQ(rules.SetProperties(&document.root), c.changed);
    EXPECT_TRUE(c.holds(rules));
    EXPECT_EQ(rules.SetProperties(&document.root), 0) << "and then it is the same";
  }
}

TEST(ConditioningXml, OnlyAnElementOfExactlyThatNameCounts) {
  XMLElement root(nullptr, "Document", 0);
  root.AddElement(new XMLElement(&root, "<conditioning CapAbove=\"On\">", 0));
  CStats_Conditioning rules;
  EXPECT_EQ(rules.SetProperties(&root), 0);
  root.AddElement(new XMLElement(&root, "<Conditioning CapAbove=\"On\">", 0));
  root.AddElement(new XMLElement(&root, "<Conditioning CapAbove=\"Off\">", 0));
  EXPECT_EQ(rules.SetProperties(&root), 1);
  EXPECT_TRUE(rules.capMaximumOn) << "the first one";
}

}  // namespace

}  // namespace tallyscope
