// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <string>

#include "host/OpenTable.h"
#include "tests/support/TableText.h"

namespace tallyscope {
namespace {

struct HeadCase {
  const char* name;
  const char* text;
  const char* format;
  const char* table;  // or the refusal
};

TEST(GeoEas, IsToldFromDelimitedText) {
  const HeadCase cases[] = {
      {"plain", "Sample data\n3\nEast (m)\nNorth\nCu ppm\n 1.0 2.0 3.5\n2 3 1.0E+31\n", "GeoEAS",
       "\"East (m)\",\"North\",\"Cu ppm\"\n1,2,3.5\n2,3,\n"},
      {"CRLF", "t\r\n2\r\na\r\nb\r\n1 2\r\n3 4\r\n", "GeoEAS", "\"a\",\"b\"\n1,2\n3,4\n"},
      {"size of the grid behind the count", "grid\n1 2 2 1\nvalue\n1\n2\n3\n4\n", "GeoEAS", "\"value\"\n1\n2\n3\n4\n"},
      {"empty title", "\n2\na\nb\n1 2\n", "GeoEAS", "\"a\",\"b\"\n1,2\n"},
      {"commas between the values", "t\n2\na\nb\n1, 2\n3, 4\n", "GeoEAS", "\"a\",\"b\"\n1,2\n3,4\n"},
      {"cells of texts", "t\n2\nhole\nz\nA 1\nB 2\n", "GeoEAS", "\"hole\",\"z\"\n\"A\",1\n\"B\",2\n"},
      {"names that end in numbers", "t\n2\n10 m grid\nb\n1 2\n", "GeoEAS", "\"10 m grid\",\"b\"\n1,2\n"},
      {"no rows", "t\n2\na\nb\n", "GeoEAS", "t has headings but no rows."},
      {"one column of numbers, its second row a small one", "zinc\n2\n7\n8\n9\n", "text of one column",
       "\"zinc\"\n2\n7\n8\n9\n"},
      {"rows of one cell", "t\n2\na\nb\n1\n2\n", "GeoEAS", "\"a\",\"b\"\n1,\n2,\n"},
      {"one column of numbers and nulls", "zinc\n2\nNA\n-\n5\n", "text of one column", "\"zinc\"\n2\n\n\n5\n"},
      {"sodium among the variables", "t\n2\nNa\nK\n1 2\n", "GeoEAS", "\"Na\",\"K\"\n1,2\n"},
      {"one column of quoted texts", "\"n\"\n2\n\"a\"\n\"b\"\n\"c 1\"\n", "text of one column",
       "\"n\"\n\"2\"\n\"a\"\n\"b\"\n\"c 1\"\n"},
      {"whole numbers between blanks", "x y\n3 4\n5 6\n7 8\n9 9\n", "text separated by blanks",
       "\"x\",\"y\"\n3,4\n5,6\n7,8\n9,9\n"},
      {"one column of texts", "name\n2\nfoo\nbar\nbaz\n", "text of one column",
       "\"name\"\n\"2\"\n\"foo\"\n\"bar\"\n\"baz\"\n"},
      {"a count without its names", "t\n5\na\nb\n", "text of one column", "\"t\"\n\"5\"\n\"a\"\n\"b\"\n"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    const auto opened = OpenTableText(c.text, "t", {}, nullptr);
    EXPECT_EQ(opened.format, c.format);
    EXPECT_EQ(opened.table ? WriteCsv(*opened.table, opened.table->GetSize()) : opened.error, c.table);
  }
}

TEST(GeoEas, ValuesBeyondTheTrimmingLimitsAreDeclaredNulls) {
  const auto opened = OpenTableText("t\n1\nv\n1e21\n-1e21\n9.9e20\n-5\n", "t", {}, nullptr);
  ASSERT_TRUE(opened.table);
  EXPECT_EQ(opened.table->GetColumn(0).counts.declaredNulls, 2);
  EXPECT_EQ(opened.table->GetValue(0, 0), 1e21);
  EXPECT_TRUE(opened.table->IsValueValid(0, 2));
  EXPECT_TRUE(opened.table->IsValueValid(0, 3));
}

TEST(GeoEas, LinesAreCountedFromTheTitle) {
  const auto opened = OpenTableText("t\n2\na\nb\n1 2\n3\n4 5 6\n7 x\n8 9\n1 1\n", "t", {}, nullptr);
  EXPECT_EQ(opened.warnings,
            (std::vector<CString>{"1 row is too short (line 6: 1 of 2); the missing cells are nulls.",
                                  "1 row is too long (line 7: 3 of 2); the cells beyond the columns are not read.",
                                  "Column b: 1 cell is no number, 'x' at line 8; read as a null."}));
}

}  // namespace
}  // namespace tallyscope
