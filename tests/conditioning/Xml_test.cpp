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

// A document with a "Conditioning" of these attributes and children.
class CDocument {
 public:
  CDocument(const CString& attributes, const std::vector<CString>& children) : root(nullptr, "Document", 0) {
    auto* element = new XMLElement(&root, ("<Conditioning " + attributes + ">").c_str(), 0);
    root.AddElement(element);
    for (const auto& child : children) element->AddElement(new XMLElement(element, child.c_str(), 0));
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
  using Check = std::function<bool(const CStats_Conditioning&)>;
  const auto full = [] {
    CStats_Conditioning rules;
    rules.AddNULLValue(7);
    rules.AddNULLRange(1, 2);
    rules.AddOperator(Op::kScale, "2");
    return rules;
  };
  const CString value = "<NullValue Value=\"7\">";
  const CString range = "<NullRange Min=\"1\" Max=\"2\">";
  const CString scale = "<Operator Type=\"Scale\" Param=\"2\">";
  struct Case {
    const char* name;
    CString attributes;
    std::vector<CString> children;
    int changed;
    Check holds;
  };
  for (const Case& c : {
           Case{"the same", "", {value, range, scale}, 0, [](const auto&) { return true; }},
           Case{"on in lower case",
                "CapAbove=\"on\"",
                {value, range, scale},
                1,
                [](const auto& r) { return r.capMaximumOn; }},
           Case{"any other word",
                "CapAbove=\"yes\"",
                {value, range, scale},
                0,
                [](const auto& r) { return !r.capMaximumOn; }},
           Case{"near enough",
                "CapAboveValue=\"100.000000001\"",
                {value, range, scale},
                0,
                [](const auto& r) { return r.capMaximum == 100; }},
           Case{"one setting",
                "BkgndValue=\"2.5 m\"",
                {value, range, scale},
                1,
                [](const auto& r) { return r.backgroundValue == 2.5 && r.capMaximum == 100; }},
           Case{"a background that is the null",
                "ConvertNullToBkgnd=\"ON\" BkgndValue=\"-1e32\"",
                {value, range, scale},
                1,
                [](const auto& r) { return r.convertToBackground; }},
           Case{"no children",
                "",
                {},
                1,
                [](const auto& r) { return r.nullValues.empty() && r.nullRanges.empty() && r.operators.empty(); }},
           Case{"names in any case",
                "",
                {"<NULLVALUE Value=\"7\">", "<nullrange Min=\"1\" Max=\"2\">", scale},
                0,
                [](const auto&) { return true; }},
           Case{"half a range",
                "",
                {value, range, scale, "<NullRange Min=\"5\">", "<NullValue>"},
                0,
                [](const auto& r) { return r.nullRanges.size() == 1; }},
           Case{"another value",
                "",
                {"<NullValue Value=\"8\">", range, scale},
                1,
                [](const auto& r) { return r.nullValues == std::vector<double>{8}; }},
           Case{"another range",
                "",
                {value, "<NullRange Min=\"1\" Max=\"3\">", scale},
                1,
                [](const auto& r) { return r.nullRanges[0].maximum == 3; }},
           Case{"another band",
                "",
                {value, range, "<Operator Type=\"Scale\" Param=\"2\" Band=\"1\">"},
                1,
                [](const auto& r) { return r.operators[0].GetBand() == 1; }},
           Case{"the preset",
                "",
                {value, range, "<Operator Type=\"horizontal difference\">"},
                1,
                [](const auto& r) { return r.operators[0].GetValueS() == "4"; }},
           Case{"no parameter to take",
                "",
                {value, range, "<Operator Type=\"Detrend\" Param=\"3\">"},
                1,
                [](const auto& r) { return r.operators[0].GetValue().GetType() == VT_NULL; }},
           Case{"no type",
                "",
                {value, range, "<Operator Param=\"2\">"},
                1,
                [](const auto& r) { return r.operators[0].GetType() == Op::kNone; }},
       }) {
    SCOPED_TRACE(c.name);
    auto rules = full();
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
