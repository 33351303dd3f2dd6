// SPDX-License-Identifier: MIT
#include "files/XMLElement.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "files/XMLText.h"
#include "tests/support/Scratch.h"

namespace tallyscope {

namespace {

TEST(XMLText, EscapesAndReadsBack) {
  const struct {
    const char* text;
    const char* escaped;
    const char* decoded;
  } rows[] = {{"a<b", "a&lt;b", "a<b"},
              {"&", "&amp;", "&"},
              {"\"'<>&", "&quot;&apos;&lt;&gt;&amp;", "\"'<>&"},
              {"&#65;", "&#65;", "A"},
              {"&#x41;&#X42;", "&#x41;&#X42;", "AB"},
              {"&#xe9;", "&#xe9;", "\xc3\xa9"},
              {"&#8364;", "&#8364;", "\xe2\x82\xac"},
              {"&#65", "&#65", "A"},
              {"&#0;", "&#0;", "\xef\xbf\xbd"},
              {"&#xd800;", "&#xd800;", "\xef\xbf\xbd"}};
  for (const auto& row : rows) {
    EXPECT_EQ(EncodeXml(row.text), row.escaped);
    EXPECT_EQ(DecodeXml(row.escaped), row.decoded);
  }
  EXPECT_EQ(DecodeXml("a & b &nbsp; &#; &#x; &"), "a & b &nbsp; &#; &#x; &") << "what is no reference is copied";
  EXPECT_EQ(DecodeXml("&#" + CString(500, '9') + ";."), "\xef\xbf\xbd.");
  EXPECT_EQ(DecodeXml("&#" + CString(500, '0') + "65;."), "A.");
}

TEST(XMLElement, ParsesOpeningTags) {
  const struct {
    const char* tag;
    const char* read;
  } rows[] = {{"Conditioning", "Conditioning"},
              {"<Operator Type=\"Scale\" Band=\"2\"/>", "Operator;Type=Scale;Band=2"},
              {"<a\tb = \"1\">", "a;b=1"},
              {"<a b=\"x&lt;y\" c=\"", "a;b=x<y"},
              {"<a b c", "a"},
              {"<a b=1 c=\"2\">", "a;b=2"},
              {"", ""},
              {"<", ""},
              {"<a/ b=\"1\">", "a"},
              {"a\"b", "a"}};
  for (const auto& row : rows) {
    XMLElement element(nullptr, row.tag, 0);
    CString read = element.GetName();
    for (const char* name : {"Type", "Band", "b", "c"}) {
      const XMLAttribute* attribute = element.FindAttribute(name, false);
      if (attribute != nullptr) read += ";" + attribute->GetName() + "=" + attribute->GetValue();
    }
    EXPECT_EQ(read, row.read) << row.tag;
  }
}

TEST(XMLAttribute, ConvertsValues) {
  XMLAttribute attribute("Band  ", "x  ", false);
  EXPECT_EQ(attribute.GetName(), "Band");
  EXPECT_EQ(attribute.GetValue(), "x  ");
  attribute.SetValueFloat(0.1234567);
  EXPECT_EQ(attribute.GetValue(), "0.123457");
  EXPECT_EQ(attribute.GetValueFloat(), 0.123457);
  attribute.SetValueInt(-7);
  EXPECT_EQ(attribute.GetValueInt(), -7);
  attribute.SetValue("99999999999", false);
  EXPECT_EQ(attribute.GetValueInt(), 2147483647);
  attribute.SetValue("&&", false);
  char buffer[32];
  EXPECT_EQ(attribute.GetValue(static_cast<char*>(nullptr)), 10) << "room for the escaped text";
  EXPECT_EQ(attribute.GetValue(buffer), 2);
  EXPECT_STREQ(buffer, "&&");
}

TEST(XMLElement, KeepsATreeInOrder) {
  XMLElement root(nullptr, "root", 0);
  for (int i = 0; i < 45; ++i) {
    auto* child = new XMLElement(&root, ("c" + std::to_string(i)).c_str(), 0);
    EXPECT_EQ(root.GetElementCount(), i) << "a child doesn't add itself";
    EXPECT_EQ(root.AddElement(child), i + 1);
  }
  EXPECT_EQ(root.GetElement(21)->GetName(), "c21");
  EXPECT_EQ(root.GetChildIndex(root.FindElement("c44")), 44);
  EXPECT_EQ(root.GetChildIndex(&root), -1);
  EXPECT_EQ(root.FindElement("C1"), nullptr) << "the case counts";
  auto* grandchild = new XMLElement(nullptr, "g", 0);
  root.GetElement(3)->AddElement(grandchild);
  EXPECT_EQ(grandchild->GetDepth(), 2);
  EXPECT_EQ(grandchild->GetTemporaryName(5), "3-0-5.xmltmp");
  EXPECT_EQ(root.GetTemporaryName(5), "5.xmltmp");

  EXPECT_EQ(root.FindAttribute("Value", false), nullptr);
  XMLAttribute* made = root.FindAttribute("Value", true);
  ASSERT_NE(made, nullptr);
  EXPECT_EQ(made->GetValue(), "");
  EXPECT_EQ(made->GetOwner(), &root);
  EXPECT_EQ(root.FindAttribute("Value", true), made);
  EXPECT_EQ(root.GetAttributeCount(), 1);
}

TEST(XMLElement, NoDepthIsTooMuch) {
  XMLElement root(nullptr, "root", 0);
  XMLElement* deepest = &root;
  for (int i = 0; i < 200000; ++i) {
    auto* child = new XMLElement(deepest, "a", 0);
    deepest->AddElement(child);
    deepest = child;
  }
  EXPECT_EQ(deepest->GetDepth(), 200000);
}

TEST(XMLElement, RemovesFilesOfChildrenThatWereSwappedOutAndNoChildThatIsKept) {
  const CScratch scratch;
  const auto before = std::filesystem::current_path();
  std::filesystem::current_path(scratch.folder);
  XMLElement* kept = nullptr;
  for (const char* name : {"0-1.xmltmp", "1.xmltmp", "9.xmltmp"}) std::ofstream(name) << "x";
  {
    XMLElement root(nullptr, "root", 0);
    auto* first = new XMLElement(&root, "first", 0);
    root.AddElement(first);
    root.AddElement(nullptr);
    kept = new XMLElement(first, "kept", 0);
    first->AddElement(kept);
    first->KeepElement(kept);
    first->AddElement(nullptr);
    EXPECT_EQ(root.FindElement("none"), nullptr);
  }
  EXPECT_FALSE(std::filesystem::exists("0-1.xmltmp"));
  EXPECT_FALSE(std::filesystem::exists("1.xmltmp"));
  EXPECT_TRUE(std::filesystem::exists("9.xmltmp"));
  EXPECT_EQ(kept->GetName(), "kept");
  EXPECT_EQ(kept->GetParent(), nullptr);
  delete kept;
  std::filesystem::current_path(before);
}

}  // namespace

}  // namespace tallyscope
