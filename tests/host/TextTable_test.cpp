// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "host/OpenTable.h"
#include "statistics/ProgressSink.h"
#include "tests/support/TableText.h"

namespace tallyscope {
namespace {

// The table as written out again without quotes around the headings, rows parted by "/"; or the refusal.
std::string Read(std::string_view text, const ReaderOptions& options = {}) {
  const OpenedTable opened = OpenTableText(text, "t", options, nullptr);
  if (!opened.table) return opened.error;
  std::string shown = WriteCsv(*opened.table, opened.table->GetSize());
  std::string plain;
  bool headings = true;
  for (const char c : shown.substr(0, shown.size() - 1)) {
    headings = headings && c != '\n';
    if (headings && c == '"') continue;
    plain += c == '\n' ? '/' : c;
  }
  return plain;
}

std::vector<std::string> Warnings(std::string_view text, const ReaderOptions& options = {}) {
  return OpenTableText(text, "t", options, nullptr).warnings;
}

struct TextCase {
  const char* name;
  std::string text;
  std::string table;
  ReaderOptions options{};
};

void ExpectTables(const std::vector<TextCase>& cases) {
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(Read(c.text, c.options), c.table);
  }
}

TEST(TextTable, DelimitersAreTold) {
  ExpectTables({
      {"comma", "a,b\n1,2\n3,4\n", "a,b/1,2/3,4"},
      {"semicolon with decimal commas", "x;y\n1,5;2,5", "x,y/1.5,2.5"},
      {"semicolon with decimal commas, no headings", "1,5;2,5\n3,5;4,25", "Column 1,Column 2/1.5,2.5/3.5,4.25"},
      {"tab", "a\tb\n1\t2\n\t4\n", "a,b/1,2/,4"},
      {"bar", "a|b\n1|2\n", "a,b/1,2"},
      {"blanks with leading ones", "   a     b\n  1.5   2\n 10     -3.25  \n", "a,b/1.5,2/10,-3.25"},
      {"blanks and tabs mixed", "a \tb\n1\t \t2\n", "a,b/1,2"},
      {"blanks with decimal commas", "x y\n1,5 2,5\n", "x,y/1.5,2.5"},
      {"blanks with quoted names", "\"a b\" c\n1 2\n", "a b,c/1,2"},
      {"comma behind which blanks stand", "a, b, c\n1, 2, 3\n", "a,b,c/1,2,3"},
      {"commas in quoted texts of a semicolon table", "n;v\n\"a, b, c\";1,5\n\"d, e\";2,5\n",
       "n,v/\"a, b, c\",1.5/\"d, e\",2.5"},
      {"semicolons in quoted texts of a comma table", "n,v\n\"a;b\",1\n\"c;d;e\",2\n", "n,v/\"a;b\",1/\"c;d;e\",2"},
      {"blanks in the texts of a comma table", "n,v\nnorth side,1\nsouth side,2\n",
       "n,v/\"north side\",1/\"south side\",2"},
      {"one column", "z\n1.5\n2.5\n", "z/1.5/2.5"},
      {"one column, no headings", "1.5\n2.5\n", "Column 1/1.5/2.5"},
      {"one column with decimal commas", "z\n1,5\n2,5\n3\n", "z/1.5/2.5/3"},
      {"two columns of whole numbers", "a,b\n1,5\n2,5\n", "a,b/1,5/2,5"},
      {"whole table in quotes", "\"a\",\"b\"\n\"1\",\"2\"\n", "a,b/1,2"},
      {"row names of a statistics program", "\"x\" \"y\"\n\"1\" 10 20\n\"2\" 11 21\n", "Column 1,x,y/1,10,20/2,11,21"},
      {"asked for", "a;b\n1,2;3\n", "a;b/1", {.delimiter = ','}},
      {"decimal comma asked for, in quotes", "a,b\n\"1,5\",2\n", "a,b/1.5,2", {.delimiter = ',', .decimal = ','}},
      {"year headings asked for", "1998,1999\n5,6\n", "1998,1999/5,6", {.headings = true}},
      {"headings forbidden", "a,b\nc,d\n", "Column 1,Column 2/\"a\",\"b\"/\"c\",\"d\"", {.headings = false}},
  });
}

TEST(TextTable, LinesAndQuotes) {
  ExpectTables({
      {"CRLF", "a,b\r\n1,2\r\n3,4\r\n", "a,b/1,2/3,4"},
      {"lone CR", "a,b\r1,2\r3,4\r", "a,b/1,2/3,4"},
      {"no line end at the end", "a,b\n1,2\n3,4", "a,b/1,2/3,4"},
      {"byte-order mark",
       "\xEF\xBB\xBF"
       "a,b\n1,2\n",
       "a,b/1,2"},
      {"blank lines", "\n\na,b\n\n1,2\n  \n3,4\n\n\n", "a,b/1,2/3,4"},
      {"blank lines of one column are nulls, but for the last", "z\n1\n\n3\n\n", "z/1//3"},
      {"doubled quotes", "n,v\n\"a \"\"b\"\" c\",1\n", "n,v/\"a \"\"b\"\" c\",1"},
      {"line break in quotes", "n,v\n\"a\nb\",1\n", "n,v/\"a/b\",1"},
      {"quote inside a text", "n,v\n5\" pipe,1\n", "n,v/\"5\"\" pipe\",1"},
      {"text behind a closing quote", "n,v\n\"a\"b,1\n", "n,v/\"ab\",1"},
      {"quoted numbers and blanks", "a,b\n\" 1.5 \",\"2\" \n", "a,b/1.5,2"},
      {"quoted heading over two lines", "\"a\nb\",c\n1,2\n", "a/b\",\"c\"/1,2"},
      {"heading kept to the letter", "\"*ID\",\" Zn (ppm) \"\n1,2\n", "*ID, Zn (ppm) /1,2"},
      {"Latin-1",
       "Gr\xF6\xDF"
       "e,Ort\n1,\xC5lesund\n",
       "Gr\xC3\xB6\xC3\x9F"
       "e,Ort/1,\"\xC3\x85lesund\""},
      {"long row of numbers beyond any fast look", "a,b\n1,2222222222222222222222222222222222\n",
       "a,b/1,2.2222222222222222e+33"},
  });
}

TEST(TextTable, NullsAndLimits) {
  ExpectTables({
      {"words of nulls", "a,b\n1,NA\nnan,2\n*,3\n-,4\n,5\nNaN,na\n7,8\n", "a,b/1,/,2/,3/,4/,5/,/7,8"},
      {"declared number, however written",
       "a,b\n-999,1\n-999.0,2\n-9.99e2,3\n5,-99\n",
       "a,b/,1/,2/,3/5,-99",
       {.nulls = {"-999"}}},
      {"declared text", "a,b\nn.d.,1\n2,3\n", "a,b/,1/2,3", {.nulls = {"n.d."}}},
      {"declared text in a column of texts", "a,b\nclay,1\nnone,2\n", "a,b/\"clay\",1/,2", {.nulls = {"none"}}},
      {"below detection", "a,b\n<0.01,1\n< 0.5,2\n3,>7\n", "a,b/,1/,2/3,"},
      {"half the limit", "a,b\n<0.5,1\n3,>7\n", "a,b/0.25,1/3,7", {.censored = Censored::kHalf}},
      {"the limit", "a,b\n<0.5,1\n3,>7\n", "a,b/0.5,1/3,7", {.censored = Censored::kLimit}},
      {"infinity is no number", "a,b\n1,Inf\n2,-infinity\n3,1e999\n4,5\n6,7\n8,9\n1,1\n",
       "a,b/1,/2,/3,/4,5/6,7/8,9/1,1"},
      {"hexadecimal and thousands are no numbers", "a;b\n1;0x10\n2;1.234.5\n3;4\n5;6\n7;8\n", "a,b/1,/2,/3,4/5,6/7,8"},
      {"signs, exponents, bare points", "a;b\n+5;-.5\n5.;1E+2\n-0;1e-3\n", "a,b/5,-0.5/5,100/-0,0.001"},
      {"number with letters behind it, between blanks",
       "a b\n12abc 3 \n1e5x 1.00000000000000001 \n7 8 \n9 1e3                                 \n",
       "a,b/,3/,1/7,8/9,1000"},
      {"too small for a double", "a;b\n1e-400;4.9e-324\n", "a,b/0,5e-324"},
  });
}

TEST(TextTable, TextColumnsNeedAMajority) {
  ExpectTables({
      {"texts become labels", "n,v\nb,1\na,2\nb,3\n", "n,v/\"b\",1/\"a\",2/\"b\",3"},
      {"one bad cell is a null", "n,v\n1,2\nabc,3\n4,5\n", "n,v/1,2/,3/4,5"},
      {"half of each is numbers", "n,v\n1,2\nabc,3\n", "n,v/1,2/,3"},
      {"numbers of a text column are labels as written", "n,v\n007,1\na,2\nb,3\n<5,4\nc,5\n",
       "n,v/\"007\",1/\"a\",2/\"b\",3/\"<5\",4/\"c\",5"},
      {"nulls of a text column read twice", "n,v\n7,1\n,2\nNA,3\na,4\nb,5\n", "n,v/\"7\",1/,2/,3/\"a\",4/\"b\",5"},
      {"limits speak for numbers", "n,v\n<1,1\n<1,2\ntrace,3\n", "n,v/,1/,2/,3"},
      {"one text among nulls", "n,v\n,1\na,2\n", "n,v/,1/\"a\",2"},
      {"one column of texts and numbers with blank lines", "n\na\n\n5\nb\n", "n/\"a\"//\"5\"/\"b\""},
  });
}

TEST(TextTable, RawReadsAnswerForNulls) {
  const auto opened = OpenTableText("a,b\n,1\n-999,2\n<0.01,3\nabc,4\n5,5\n6,6\n", "t", {.nulls = {"-999"}}, nullptr);
  ASSERT_TRUE(opened.table);
  double raw[6] = {};
  opened.table->ReadRawValues(0, 0, 6, raw);
  EXPECT_EQ(std::vector(raw, raw + 6), (std::vector{-1e32, -999.0, 0.01, -1e32, 5.0, 6.0}));
  const auto& counts = opened.table->GetColumn(0).counts;
  EXPECT_EQ(counts.nulls, 2);
  EXPECT_EQ(counts.declaredNulls, 1);
  EXPECT_EQ(counts.belowDetection, 1);
  EXPECT_EQ(counts.badCells, 1);
}

TEST(TextTable, WarningsNameThePlace) {
  using Sentences = std::vector<std::string>;
  EXPECT_EQ(Warnings("a,b\n1,2\n3,abc\n\n5,6\n7,8\n9,d\n1,1\n"),
            (Sentences{"Column b: 2 cells are no numbers, first 'abc' at line 3; read as nulls."}));
  EXPECT_EQ(Warnings("a,b,c\n1,2,3\n4,5\n6\n7,8,9\n1,2,3\n"),
            (Sentences{"2 rows are too short (first at line 3: 2 of 3); the missing cells are nulls."}));
  EXPECT_EQ(Warnings("n,b\n\"p\nq\",4\nr,5,6\ns,7\n"),
            (Sentences{
                "1 row is too long (line 4: 3 of 2); the cells beyond the columns are not read.",
            }));
  EXPECT_EQ(Warnings("a,b\n1,2,\n3,4,\n"), Sentences{}) << "delimiters at the ends of lines are nothing to worry about";
  EXPECT_EQ(Warnings("1,2\n"), (Sentences{"No headings: the columns are called Column 1 to Column 2."}));
  EXPECT_EQ(Warnings("Cu,Cu,Cu (2),Cu\n1,2,3,4\n"),
            (Sentences{"A second column is called Cu: column 2 goes by Cu (3).",
                       "A second column is called Cu: column 4 goes by Cu (4)."}));
  std::string same = "Cu";
  for (int i = 0; i < 5000; ++i) same += ",Cu";
  const auto many = Warnings(same + "\n1\n");
  ASSERT_EQ(many.size(), 22u);
  EXPECT_EQ(many[20], "4980 further columns are called as one before, and numbered likewise.");
  EXPECT_EQ(Read("Cu,,Cu,Column 2\n1,2,3,4\n"), "Cu,Column 2 (2),Cu (2),Column 2/1,2,3,4");
}

TEST(TextTable, RefusalsNameThePlace) {
  std::string wide;
  for (int i = 0; i < 100'001; ++i) wide += ",b";
  std::string few = std::string(50'000, ',') + "z\n";
  for (int i = 0; i < 2000; ++i) few += "1\n";
  ExpectTables({
      {"blank lines", "\n \n\t\n", "t holds nothing but blank lines."},
      {"headings only", "a,b\n\n", "t has headings but no rows."},
      {"headings without a line end", "a,b", "t has headings but no rows."},
      {"quote left open", "a,b\n1,2\n3,\"4\n5,6\n", "t, line 3, column 2: the quote that opens here is never closed."},
      {"quote left open in the headings", "a,\"b\n1,2\n",
       "t, line 1, column 2: the quote that opens here is never closed."},
      {"zero byte", std::string("a,b\n1,2\n3,x\0y\n", 14), "t is no text file: byte 12 is zero."},
      {"zero byte far behind", "a,b\n" + std::string(70'000, '\n') + "1,2\n3," + std::string(1, '\0') + "\n",
       "t, line 70003, column 2: a zero byte, which no text holds."},
      {"UTF-16",
       std::string("\xFF\xFE"
                   "a\0,\0",
                   6),
       "t is UTF-16 text, which isn't read: save it as UTF-8."},
      {"office document", "PK\x03\x04rest", "t is a ZIP archive or an office document: save the table as CSV text."},
      {"endless cell", "a,b\n1," + std::string(std::size_t{2} << 20, 'x') + "\n",
       "t, line 2, column 2: a cell that starts here is longer than 1 MB."},
      {"endless heading", std::string(std::size_t{2} << 20, 'x'),
       "t, line 1, column 1: a heading that starts here is longer than 1 MB."},
      {"endless blanks", "a b\n1 2\n" + std::string(std::size_t{3} << 20, ' ') + "3 4\n",
       "t, line 3, column 1: a cell that starts here is longer than 1 MB."},
      {"too many headings", "a" + wide + "\n1\n", "t, line 1, column 100002: there are more than 100000 headings."},
      {"too many cells", "a,b\n1,2\n3" + wide + "\n", "t, line 3 has more than 100000 cells."},
      {"cells that only headings promise", few,
       "t, line 86: nearly all rows have fewer cells than the 50001 that the table has columns."},
  });
}

// Random tables of every kind of double, written in many ways, are the same doubles when they are read.
TEST(TextTable, WhatIsWrittenIsRead) {
  std::mt19937_64 random(20250611);
  const char* const formats[] = {"%.17g", "%.15g", "%.6f", "%g", "%.0f", "%+.3e", "%.12f"};
  for (int table = 0; table < 60; ++table) {
    const std::size_t columns = 1 + random() % 7;
    const std::size_t rows = 1 + random() % 300;
    const char delimiter = ",;\t|"[random() % 4];
    std::string text;
    std::vector<double> values;
    for (std::size_t i = 0; i < columns; ++i)
      text += (i > 0 ? std::string(1, delimiter) : "") + "c" + std::to_string(i);
    for (std::size_t i = 0; i < rows * columns; ++i) {
      text += i % columns == 0 ? std::string(random() % 2 == 0 ? "\n" : "\r\n") : std::string(1, delimiter);
      const double any = random() % 2 == 0
                             ? std::bit_cast<double>(random())
                             : static_cast<double>(static_cast<std::int64_t>(random() % 2'000'001) - 1'000'000) / 128;
      if (!std::isfinite(any) || (random() % 10 == 0 && columns > 1)) {
        values.push_back(std::nan(""));
        text += columns > 1 ? "" : "NA";
        continue;
      }
      char cell[400];
      std::snprintf(cell, sizeof cell, std::abs(any) > 1e30 || std::abs(any) < 1e-30 ? "%.17g" : formats[random() % 7],
                    any);
      for (char* p = cell; *p != '\0'; ++p) *p = *p == ',' ? '.' : *p;  // in a locale with a comma
      text += cell;
      double back = 0;
      std::from_chars(cell + (*cell == '+' ? 1 : 0), cell + std::string(cell).size(), back);
      values.push_back(back);
    }
    const auto opened = OpenTableText(text + "\n", "t", {.delimiter = delimiter, .decimal = '.'}, nullptr);
    ASSERT_TRUE(opened.table) << opened.error;
    ASSERT_EQ(opened.table->GetSize(), static_cast<int>(rows));
    for (std::size_t i = 0; i < values.size(); ++i) {
      double read = std::nan("");
      opened.table->GetValue(static_cast<int>(i % columns), static_cast<int>(i / columns), read);
      ASSERT_EQ(std::isnan(read), std::isnan(values[i])) << "table " << table << ", cell " << i;
      if (!std::isnan(read)) {
        ASSERT_EQ(std::bit_cast<std::uint64_t>(read), std::bit_cast<std::uint64_t>(values[i]))
            << "table " << table << ", cell " << i;
      }
    }
  }
}

// Rows far beyond the first guess of their number, which comes from the first 64 kB.
TEST(TextTable, GrowsBeyondTheGuess) {
  std::string text = "a,b\n";
  for (int i = 0; i < 3000; ++i) text += "1000000000000,2000000000000\n";
  for (int i = 0; i < 40'000; ++i) text += i % 3 == 0 ? "7,\n" : "8,9\n";
  const auto opened = OpenTableText(text, "t", {}, nullptr);
  ASSERT_TRUE(opened.table);
  ASSERT_EQ(opened.table->GetSize(), 43'000);
  int wrong = 0;
  for (int i = 3000; i < 43'000; ++i) {
    const bool null = (i - 3000) % 3 == 0;
    wrong += opened.table->GetValue(0, i) == (null ? 7 : 8) && opened.table->IsValueValid(1, i) == !null ? 0 : 1;
  }
  EXPECT_EQ(wrong, 0);
  EXPECT_EQ(opened.table->GetValue(1, 2999), 2e12);
}

class CStoppingSink : public CProgressSink {
 public:
  explicit CStoppingSink(int calls) : left_(calls) {}
  bool OnProgress(int percent) override {
    highest = std::max(highest, percent);
    return --left_ >= 0;
  }
  void SetTask(const char*, int) override {}
  int highest = 0;

 private:
  int left_;
};

TEST(TextTable, SinkCancels) {
  CStoppingSink atOnce(0);
  const auto opened = OpenTableText("a,b\n1,2\n", "t", {}, &atOnce);
  EXPECT_FALSE(opened.table);
  EXPECT_EQ(opened.error, "");
  // Enough work for some questions on any machine: quoted cells take the slow way.
  std::string text = "a,b\n";
  while (text.size() < 64'000'000) text += "\"17.25\",\"abc\"\n";
  CStoppingSink later(4);
  EXPECT_FALSE(OpenTableText(text, "t", {}, &later).table);
  EXPECT_GT(later.highest, 0);
  EXPECT_LT(later.highest, 50);
}

}  // namespace
}  // namespace tallyscope
