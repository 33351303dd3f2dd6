// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <functional>
#include <sstream>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "host/Command.h"
#include "host/CommandLine.h"
#include "host/OpenTable.h"
#include "host/SelectionPlan.h"
#include "tests/host/HostTesting.h"
#include "tests/support/Scratch.h"
#include "tests/support/TableText.h"

namespace tallyscope {
namespace {

Answer Select(std::vector<CString> arguments) {
  return RunProgram("select", std::move(arguments));
}

// Ten stations on a line, numbered from 1; v is ten times the number, with a null at 4.
const char* const kTen =
    "x,y,v,id\n1,0,10,1\n2,0,20,2\n3,0,30,3\n4,0,,4\n5,0,50,5\n6,0,60,6\n7,0,70,7\n8,0,80,8\n9,0,90,9\n10,0,100,10\n";

// The numbers of the stations that a selection leaves.
std::string SelectIds(const std::string& file, std::vector<CString> arguments) {
  arguments.insert(arguments.begin(), file);
  arguments.insert(arguments.end(), {"-o", "-"});
  const Answer answer = Select(arguments);
  EXPECT_EQ(answer.code, kExitDone) << answer.err;
  std::istringstream lines(answer.out);
  std::string line;
  std::getline(lines, line);
  EXPECT_EQ(line, "x,y,v,id");
  std::string ids;
  while (std::getline(lines, line)) ids += (ids.empty() ? "" : " ") + line.substr(line.rfind(',') + 1);
  return ids;
}

TEST(SelectCommand, StepsWorkInTheOrderOfTheCommandLine) {
  const CScratch scratch;
  const std::string file = scratch.Write("ten.csv", kTen);
  const std::string square = scratch.Write("square.csv", "x,y\n3,-1\n6,-1\n6,1\n3,1\n");
  struct Case {
    std::vector<CString> arguments;
    const char* ids;
  };
  for (const Case& c : {
           Case{{"--where", "v in 20..50"}, "2 3 5"},
           Case{{"--where", "v in 80.."}, "8 9 10"},
           Case{{"--where", "v in ..30"}, "1 2 3"},
           Case{{"--where", "v in .."}, "1 2 3 5 6 7 8 9 10"},
           Case{{"--where", "x in 2.5..4"}, "3 4"},
           Case{{"--rows", "3..5"}, "3 4 5"},
           Case{{"--rows", "9..99"}, "9 10"},
           Case{{"--rows", "8.."}, "8 9 10"},
           Case{{"--rows", "3"}, "3"},
           Case{{"--rows", "1, 5..6 ,9.."}, "1 5 6 9 10"},
           Case{{"--exclude-rows", "2..8,10"}, "1 9"},
           Case{{"--rows", "1..2", "--rows", "9..10"}, "1 2 9 10"},
           Case{{"--invert"}, "1 2 3 4 5 6 7 8 9 10"},
           Case{{"--rows", "2..9", "--invert"}, "1 10"},
           Case{{"--invert", "--rows", "2..9"}, "1 2 3 4 5 6 7 8 9 10"},
           Case{{"--rows", "1..5", "--exclude-where", "v in 20..30"}, "1 4 5"},
           Case{{"--exclude-where", "v in 20..30"}, "1 4 5 6 7 8 9 10"},
           Case{{"--exclude-where", "v in 20..30", "--rows", "1..5"}, "1 2 3 4 5 6 7 8 9 10"},
           Case{{"--exclude", "--where", "v in 20..30", "--rows", "6..9"}, "1 4 5 10"},
           Case{{"--rows", "1..8", "--exclude", "--rows", "2..6", "--include", "--rows", "4..4"}, "1 4 7 8"},
           Case{{"--exclude", "--invert", "--exclude-rows", "1..8"}, "9 10"},
           Case{{"--exclude-rows", "1..8", "--invert"}, "1 2 3 4 5 6 7 8"},
           Case{{"--inside", square}, "3 4 5 6"},
           Case{{"--rows", "1..10", "--exclude-inside", square}, "1 2 3 6 7 8 9 10"},
           Case{{"--where", "v in 1000..2000"}, ""},
       }) {
    EXPECT_EQ(SelectIds(file, c.arguments), c.ids) << testing::PrintToString(c.arguments);
  }
}

// The stations 3 and 6 stand on upright edges. The ray runs towards low x: right of an edge doesn't count, so only an
// edge within 1e-10 takes its station as on it, and taking out leaves those alone.
TEST(SelectCommand, PolygonOfAnyTwoColumnsOfNumbers) {
  const CScratch scratch;
  const std::string file = scratch.Write("ten.csv", kTen);
  for (const char* text : {"east,north\n3,-1\n6,-1\n6,1\n3,1\n", "name,a,b\np,3,-1\nq,6,-1\nr,6,1\ns,3,1\n",
                           "3,-1\n6,-1\n6,1\n3,1\n", "y,x\n-1,3\n-1,6\n1,6\n1,3\n"}) {
    EXPECT_EQ(SelectIds(file, {"--inside", scratch.Write("polygon.csv", text)}), "3 4 5 6") << text;
  }
}

TEST(SelectCommand, RangesAreReadWhole) {
  struct Case {
    const char* text;
    bool good;
    double low;
    double high;
  };
  for (const Case& c :
       {Case{"1..2", true, 1, 2}, Case{" -1.5 .. 2e3 ", true, -1.5, 2000}, Case{"1.5...5e1", true, 1.5, 5},
        Case{"+1..+2", true, 1, 2}, Case{"-2..-1", true, -2, -1}, Case{"5..5", true, 5, 5}, Case{"2..1", false, 0, 0},
        Case{"1", false, 0, 0}, Case{"1.2", false, 0, 0}, Case{"a..2", false, 0, 0}, Case{"1..2x", false, 0, 0},
        Case{"1..nan", false, 0, 0}, Case{"inf..", false, 0, 0}, Case{"", false, 0, 0}, Case{"1,5..2", false, 0, 0}}) {
    double low = 0;
    double high = 0;
    ASSERT_EQ(ParseRange(c.text, low, high), c.good) << c.text;
    if (!c.good) continue;
    EXPECT_EQ(low, c.low) << c.text;
    EXPECT_EQ(high, c.high) << c.text;
  }
}

// Everything that a cell can be, read back from what was written.
TEST(SelectCommand, OutputReadsBackToTheSameTable) {
  const CScratch scratch;
  const std::string odd = scratch.Write("odd.csv",
                                        "x,y,\"a, b\",\"say \"\"so\"\"\",number,v in g\n"
                                        "0.1,1e-300,\"p, q\",  ,1.7976931348623157e308,1\n"
                                        "0.30000000000000004,2,\"two\nlines\",z,-0.1,2\n"
                                        "3,4,NA,\"\"\"\",5e-324,3\n"
                                        "4,4,12,-,,4\n");
  for (const auto& file : {odd, Example("meuse.csv"), Example("walker.csv"), Example("jura.csv")}) {
    const std::string written = scratch.folder + "/out.csv";
    const Answer answer = Select({file, "--invert", "-o", written});
    ASSERT_EQ(answer.code, kExitDone) << answer.err;
    auto before = OpenTable(file, {}, nullptr);
    auto after = OpenTable(written, {}, nullptr);
    ASSERT_TRUE(before.table && after.table) << after.error;
    EXPECT_EQ(WriteCsv(*after.table, after.table->GetSize()), WriteCsv(*before.table, before.table->GetSize()));
    EXPECT_EQ(after.axes, before.axes);
  }
  EXPECT_EQ(Select({odd, "--where", "v in g in 2..3", "-o", "-"}).out,
            "x,y,\"a, b\",\"say \"\"so\"\"\",number,v in g\n0.30000000000000004,2,\"two\nlines\",z,-0.1,2\n"
            "3,4,,\"\"\"\",5e-324,3\n");
}

TEST(SelectCommand, OneColumnKeepsItsNulls) {
  const CScratch scratch;
  const std::string file = scratch.Write("one.csv", "v\n1.5\nNA\n3\n");
  EXPECT_EQ(Select({file, "--rows", "1..3", "-o", "-"}).out, "v\n1.5\n\"\"\n3\n");
}

// In examples/: Rscript -e 'm <- read.csv("meuse.csv"); s <- m[m$zinc >= 200 & m$zinc <= 500, ];
//   print(nrow(s)); print(mean(s$lead), digits = 15); print(min(s$x))'
TEST(SelectCommand, SummaryIsThatOfTheSelectedStations) {
  const Answer text = Select({Example("meuse.csv"), "--where", "zinc in 200..500", "--summary"});
  EXPECT_EQ(text.code, kExitDone);
  EXPECT_NE(text.out.find(": 56 of 155 stations selected\n"), std::string::npos) << text.out;

  // The same figures as those of the written table.
  const CScratch scratch;
  const std::string written = scratch.folder + "/out.csv";
  const Answer json =
      Select({Example("meuse.csv"), "--where", "zinc in 200..500", "--summary", "--json", "-o", written});
  ASSERT_EQ(json.code, kExitDone) << json.err;
  std::ostringstream out, err;
  ASSERT_EQ(RunCommandLine({"summary", written, "--json"}, out, err), kExitDone);
  auto selected = nlohmann::json::parse(json.out);
  auto whole = nlohmann::json::parse(out.str());
  EXPECT_EQ(selected["stations"], 56);
  EXPECT_EQ(selected["fields"][0]["minimum"], 178803) << "x";
  EXPECT_NEAR(selected["fields"][4]["mean"], 110.589285714286, 1e-11) << "lead";
  EXPECT_EQ(selected["stations"], whole["stations"]);
  ASSERT_EQ(selected["fields"].size(), whole["fields"].size());
  for (std::size_t i = 0; i < whole["fields"].size(); ++i) {
    if (whole["fields"][i]["name"] == "landuse") continue;  // its codes count from the first label that is left
    EXPECT_EQ(selected["fields"][i], whole["fields"][i]);
  }
}

TEST(SelectCommand, RefusalsSayWhatIsWrong) {
  const CScratch scratch;
  const std::string file = scratch.Write("ten.csv", kTen);
  const std::string noAxes = scratch.Write("plain.csv", "a,b\n1,2\n3,4\n");
  const std::string two = scratch.Write("two.csv", "x,y\n1,2\n3,4\n");
  const std::string hole = scratch.Write("hole.csv", "x,y\n1,2\n3,\n5,6\n");
  const std::string texts = scratch.Write("texts.csv", "p,v\na,1\nb,2\nc,3\n");
  struct Case {
    std::vector<CString> arguments;
    int code;
    const char* words;
  };
  for (const Case& c : {
           Case{{file, "-o", "-"}, kExitWrongCall, "what to select"},
           Case{{file, "--exclude", "-o", "-"}, kExitWrongCall, "what to select"},
           Case{{file, "--invert"}, kExitWrongCall, "what to do"},
           Case{{file, "--invert", "--summary", "-o", "-"}, kExitWrongCall, "standard output"},
           Case{{file, "--where", "v 1..2", "--summary"}, kExitWrongCall, "'v 1..2' is no condition"},
           Case{{file, "--where", "v in 2..1", "--summary"}, kExitWrongCall, "lower end first"},
           Case{{file, "--rows", "0..2", "--summary"}, kExitWrongCall, "the first row being 1"},
           Case{{file, "--rows", "5..2", "--summary"}, kExitWrongCall, "no range of rows"},
           Case{{file, "--rows", "0", "--summary"}, kExitWrongCall, "'0' is no row"},
           Case{{file, "--rows", "1,", "--summary"}, kExitWrongCall, "'' is no row"},
           Case{{file, "--rows", "1.5", "--summary"}, kExitWrongCall, "'1.5' is no row"},
           Case{{file, "--rows", "11..12", "--summary"}, kExitBadInput, "has only 10 rows"},
           Case{{file, "--where", "w in 1..2", "--summary"}, kExitBadInput, "no field w"},
           Case{{file, "--inside", scratch.folder + "/none.csv", "--summary"}, kExitBadInput, "none.csv"},
           Case{{file, "--inside", two, "--summary"}, kExitBadInput, "three are needed"},
           Case{{file, "--inside", hole, "--summary"}, kExitBadInput, "corner 2 has no place"},
           Case{{file, "--inside", texts, "--summary"}, kExitBadInput, "two columns of numbers"},
           Case{{noAxes, "--inside", file, "--no-axes", "--summary"}, kExitBadInput, "no two axes"},
           Case{{scratch.folder + "/none.csv", "--invert", "--summary"}, kExitBadInput, "none.csv"},
           Case{{file, "--invert", "-o", scratch.folder}, kExitBadInput, "can't be written: "},
           Case{{file, "--invert", "-o", scratch.folder + "/no/out.csv"}, kExitBadInput, "can't be written: "},
       }) {
    const Answer answer = Select(c.arguments);
    EXPECT_EQ(answer.code, c.code) << testing::PrintToString(c.arguments);
    EXPECT_EQ(answer.out, "");
    EXPECT_NE(answer.err.find(c.words), std::string::npos) << answer.err;
    if (c.code == kExitBadInput) {
      EXPECT_EQ(answer.err.find('\n') + 1, answer.err.size()) << answer.err;
    }
  }
}

// Spreadsheets run such cells. Without the option they stay, so that what is read back is the same.
TEST(SelectCommand, FormulasAreGuardedWhenAskedFor) {
  const CScratch scratch;
  const std::string text = "=a,-b,x\n=1+1,@now,-1\n+cmd|' /C x'!A1,-5 %,2\n-2+3,\"-5\",-3e-05\nx,plain,4\n";
  const std::string file = scratch.Write("t.csv", text);
  EXPECT_EQ(Select({file, "--invert", "-o", "-", "--delimiter", "comma"}).out, text);
  const Answer guarded = Select({file, "--invert", "-o", "-", "--delimiter", "comma", "--spreadsheet-safe"});
  EXPECT_EQ(guarded.out, "'=a,'-b,x\n'=1+1,'@now,-1\n'+cmd|' /C x'!A1,'-5 %,2\n'-2+3,\"-5\",-3e-05\nx,plain,4\n");
}

TEST(SelectCommand, WritesOverItsOwnTableAndThroughLinks) {
  const CScratch scratch;
  const std::string file = scratch.Write("ten.csv", kTen);
  const std::string link = scratch.folder + "/link.csv";
  std::filesystem::create_symlink("ten.csv", link);
  std::filesystem::permissions(file, std::filesystem::perms(0640));
  EXPECT_EQ(Select({file, "--rows", "2..2", "-o", link, "--force"}).code, kExitDone);
  EXPECT_TRUE(std::filesystem::is_symlink(link));
  EXPECT_EQ(ReadAll(file), "x,y,v,id\n2,0,20,2\n");
  EXPECT_EQ(std::filesystem::status(file).permissions(), std::filesystem::perms(0640));
}

}  // namespace
}  // namespace tallyscope
