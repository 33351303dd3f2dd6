// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "conditioning/ConditioningFile.h"
#include "host/Command.h"
#include "host/CommandLine.h"
#include "tests/host/HostTesting.h"
#include "tests/support/Scratch.h"

namespace tallyscope {
namespace {

using Json = nlohmann::json;

// v has a null of the table, a declared one, a listed one, one in a range and values beyond both caps.
const char* const kTable = "x,y,v,w\n1,0,,a\n2,0,-999,b\n3,0,7,c\n4,0,15,d\n5,0,0.1,e\n6,0,3,f\n7,0,400,g\n";
const char* const kRules =
    "DataType = NUMERIC\nNullValue = -999\nConvertValue2Null = 7\nConvertValueRange2Null = 10,20\n"
    "CapMinimum = TRUE,1\nCapMaximum = TRUE,100\n";

// The cells of one column of a written table.
std::string Column(const std::string& csv, std::size_t column) {
  std::istringstream lines(csv);
  std::string line, cells;
  std::getline(lines, line);
  while (std::getline(lines, line)) {
    std::istringstream fields(line);
    std::string cell;
    for (std::size_t i = 0; i <= column; ++i) cell.clear(), std::getline(fields, cell, ',');
    cells += (cells.empty() ? "" : " ") + (cell.empty() ? "-" : cell);
  }
  return cells;
}

std::string Conditioned(const std::string& file, std::vector<CString> arguments, std::size_t column = 2) {
  arguments.insert(arguments.begin(), {"condition", file, "-o", "-"});
  const Answer answer = RunProgram(arguments);
  EXPECT_EQ(answer.code, kExitDone) << answer.err;
  return Column(answer.out, column);
}

TEST(ConditionCommand, RulesActValueByValue) {
  const CScratch scratch;
  const auto file = scratch.Write("table.csv", kTable);
  const auto rules = scratch.Write("rules.dcf", kRules);
  EXPECT_EQ(Conditioned(file, {"--field", "v", "--rules", rules}), "- - - - 1 3 100");
  const auto background = scratch.Write("background.dcf", std::string(kRules) + "Convert2Background = TRUE,0.1\n");
  EXPECT_EQ(Conditioned(file, {"--field", "v", "--rules", background}), "1 1 1 1 1 3 100");
  EXPECT_EQ(Conditioned(file, {"--field", "v"}), "- -999 7 15 0.1 3 400") << "untouched, to the last digit";
}

TEST(ConditionCommand, OtherColumnsStayAsTheyAre) {
  const CScratch scratch;
  const auto file = scratch.Write("table.csv", kTable);
  for (const std::size_t column : {0, 1, 3}) {
    EXPECT_EQ(Conditioned(file, {"--field", "v", "--operator", "Scale=2"}, column), Column(kTable, column));
  }
  EXPECT_EQ(Conditioned(file, {"--field", "x", "--operator", "Scale=2"}, 0), "2 4 6 8 10 12 14") << "an axis";
}

TEST(ConditionCommand, CountsTellEachRuleApart) {
  const CScratch scratch;
  const auto file = scratch.Write("table.csv", kTable);
  const auto rules = scratch.Write("rules.dcf", std::string(kRules) + "Convert2Background = TRUE,500\n");
  const Answer answer = RunProgram({"condition", file, "--field", "v", "--rules", rules, "--json"});
  ASSERT_EQ(answer.code, kExitDone) << answer.err;
  const auto report = Json::parse(answer.out);
  EXPECT_EQ(report["rules"], Json::parse(R"({"tableNull": 1, "declaredNull": 1, "listed": 1, "inRange": 1,
      "toBackground": 4, "cappedBelow": 1, "cappedAbove": 5})"));
  EXPECT_EQ(report["stations"], 7);
  EXPECT_EQ(report["before"]["valid"], 6);
  EXPECT_EQ(report["after"]["valid"], 7);
  EXPECT_EQ(report["after"]["maximum"], 100);
  EXPECT_EQ(report["operators"], Json::array());
}

TEST(ConditionCommand, OperatorsRunInOrderBehindThoseOfTheRules) {
  const CScratch scratch;
  const auto file = scratch.Write("table.csv", kTable);
  const auto used = scratch.Write("used.dcf", "Allow_Operators = TRUE\nOperator = Scale,2\n");
  const auto unused = scratch.Write("unused.dcf", "Allow_Operators = FALSE\nOperator = Scale,2\n");
  EXPECT_EQ(Conditioned(file, {"--field", "v", "--rules", used}), "- -1998 14 30 0.20000000298023224 6 800");
  EXPECT_EQ(Conditioned(file, {"--field", "v", "--rules", unused}), "- -999 7 15 0.1 3 400");
  EXPECT_EQ(Conditioned(file, {"--field", "v", "--rules", used, "--operator", " translate = 1 "}),
            "- -1997 15 31 1.2000000476837158 7 801");
  EXPECT_EQ(
      Conditioned(file, {"--field", "v", "--rules", unused, "--operator", "Translate=1", "--operator", "Scale=2"}),
      "- -1996 16 32 2.200000047683716 8 802")
      << "operators that aren't allowed stay out";
}

// A square root of what is below 0, and what a float can't hold.
TEST(ConditionCommand, WhatIsNoNumberInTheEndIsNull) {
  const CScratch scratch;
  const auto file = scratch.Write("table.csv", "v\n-4\n9\n1e300\nNA\n");
  EXPECT_EQ(Conditioned(file, {"--field", "v", "--operator", "Power Function=0.5"}, 0), "\"\" 3 \"\" \"\"");
  const Answer answer = RunProgram({"condition", file, "--field", "v", "--operator", "power function=0.5", "--json"});
  const auto report = Json::parse(answer.out);
  EXPECT_EQ(report["nonFinite"], 2);
  EXPECT_EQ(report["after"]["invalid"], 3);
  EXPECT_EQ(report["operators"], Json::parse(R"([{"name": "Power Function", "value": 0.5}])"));
  const auto infinite = scratch.Write("infinite.dcf", "Convert2Background = TRUE,inf\n");
  EXPECT_EQ(Conditioned(file, {"--field", "v", "--rules", infinite}, 0), "-4 9 1e+300 \"\"");
}

TEST(ConditionCommand, TextsHaveRulesOfTheirOwn) {
  const CScratch scratch;
  const auto file = scratch.Write("table.csv", "x,y,rock\n1,0,None\n2,0,Gneiss\n3,0,\n4,0,GNEISS\n5,0,tuff\n");
  const auto rules =
      scratch.Write("texts.dcf", "DataType = STRING\nConvertValue2Null = none\nConvertValue2Null = tuff\n");
  EXPECT_EQ(Conditioned(file, {"--field", "rock", "--rules", rules}), "- Gneiss - GNEISS -");
  const auto background = scratch.Write(
      "background.dcf", "CaseSensitive = TRUE\nConvertValue2Null = tuff\nConvert2Background = TRUE,Gneiss\n");
  EXPECT_EQ(Conditioned(file, {"--field", "rock", "--rules", background}), "None Gneiss Gneiss GNEISS Gneiss");
  const Answer answer = RunProgram({"condition", file, "--field", "rock", "--rules", background, "--json"});
  EXPECT_EQ(Json::parse(answer.out)["rules"]["toBackground"], 2);
  EXPECT_EQ(Json::parse(answer.out)["after"]["maximum"], 3) << "three labels are left";
}

TEST(ConditionCommand, SavedRulesDoTheSame) {
  const CScratch scratch;
  const auto file = scratch.Write("table.csv", kTable);
  const auto rules = scratch.Write("rules.dcf", kRules);
  const auto saved = scratch.Path("saved.dcf");
  const auto first = Conditioned(
      file, {"--field", "v", "--rules", rules, "--operator", "Horizontal Difference=1", "--save-rules", saved});
  EXPECT_EQ(Conditioned(file, {"--field", "v", "--rules", saved}), first);
  EXPECT_NE(ReadAll(scratch.Path("saved.dcf")).find("Operator = \"Horizontal Difference\",\"1\"\n"), std::string::npos);
}

TEST(ConditionCommand, TheReportShowsBothSides) {
  const CScratch scratch;
  const auto file = scratch.Write("table.csv", kTable);
  const auto rules = scratch.Write("rules.dcf", kRules);
  const Answer answer = RunProgram({"condition", file, "--field", "v", "--rules", rules, "--operator",
                                    "Power Function=-0.5", "-o", scratch.Path("out.csv")});
  ASSERT_EQ(answer.code, kExitDone) << answer.err;
  EXPECT_EQ(answer.out.substr(answer.out.find('\n') + 1, answer.out.find("Mean") - answer.out.find('\n') - 1),
            "\n"
            "Null in the table    1\n"
            "Declared null        1\n"
            "Listed as null       1\n"
            "In a range of nulls  1\n"
            "To background        0\n"
            "Capped below         1\n"
            "Capped above         1\n"
            "\n"
            "Operators: Power Function=-0.5\n"
            "\n"
            "                                 before                after\n"
            "Total                                 7                    7\n"
            "Valid                                 6                    3\n"
            "Null                                  1                    4\n"
            "Minimum                            -999    0.100000001490116\n"
            "Maximum                             400                    1\n");
  EXPECT_EQ(Column(ReadAll(scratch.Path("out.csv")), 2), "- - - - 1 0.5773502588272095 0.10000000149011612");
}

TEST(ConditionCommand, RefusalsSayWhatIsWrong) {
  const CScratch scratch;
  const auto file = scratch.Write("table.csv", kTable);
  const auto rules = scratch.Write("rules.dcf", kRules);
  const auto texts = scratch.Write("texts.dcf", "DataType = STRING\n");
  const auto wide = scratch.Write("wide.dcf", "Allow_Operators = TRUE\nOperator = Gaussian,10\n");
  const auto broad = scratch.Write("broad.dcf", std::string(2 << 20, ','));
  const auto none = scratch.Path("none");
  struct Case {
    std::vector<CString> arguments;
    int code;
    const char* words;
  };
  for (const Case& c : {
           Case{{"--operator", "Movin Average=3"}, kExitWrongCall, "did you mean Moving Average?"},
           Case{{"--operator", "Blur"}, kExitWrongCall, "'Blur' is no operator; 'tallyscope operators' lists them."},
           Case{{"--operator", ""}, kExitWrongCall, "'' is no operator"},
           Case{{"--operator", "Moving Average=4"}, kExitWrongCall, "Moving Average can't have the width 4"},
           Case{{"--operator", "AGC=-3"}, kExitWrongCall, "AGC can't have the width -3"},
           Case{{"--operator", "agc=3.5"}, kExitWrongCall, "AGC takes a whole number, not '3.5'."},
           Case{{"--operator", "AGC=99999999999"}, kExitWrongCall, "AGC takes a whole number"},
           Case{{"--operator", "Scale=1,5"}, kExitWrongCall, "Scale takes a number, not '1,5'."},
           Case{{"--operator", "Scale="}, kExitWrongCall, "Scale takes a number, not ''."},
           Case{{"--operator", "Detrend=1"}, kExitWrongCall, "Detrend takes no value."},
           Case{{"--json", "-o", "-"}, kExitWrongCall, "standard output"},
           Case{{"--rules", none}, kExitBadInput, "The file does not exist."},
           Case{{"--rules", wide}, kExitBadInput, "wide.dcf: Gaussian can't have the width 10"},
           Case{{"--rules", broad}, kExitBadInput, "A line of it is longer than 1 MB."},
           Case{{"--rules", file}, kExitBadInput, "table.csv, line 1: 'x,y,v,w' is no line of rules; 'DataType = "},
           Case{{"--rules", texts}, kExitBadInput, "v holds numbers, but "},
           Case{{"--save-rules", none + "/x.dcf"}, kExitBadInput, "An error occurred writing to the file"},
           Case{{"-o", none + "/x.csv"}, kExitBadInput, "can't be written"},
       }) {
    auto arguments = c.arguments;
    arguments.insert(arguments.begin(), {"condition", file, "--field", "v"});
    const Answer answer = RunProgram(arguments);
    EXPECT_EQ(answer.code, c.code) << testing::PrintToString(c.arguments);
    EXPECT_NE(answer.err.find(c.words), std::string::npos) << answer.err;
    EXPECT_EQ(answer.out, "");
  }
  const Answer text = RunProgram({"condition", file, "--field", "w", "--operator", "Scale=2"});
  EXPECT_NE(text.err.find("w holds texts: operators work on numbers."), std::string::npos) << text.err;
  const Answer mixed = RunProgram({"condition", file, "--field", "w", "--rules", rules});
  EXPECT_NE(mixed.err.find("w holds texts, but "), std::string::npos) << mixed.err;
}

TEST(ConditionCommand, ALineThatSaysNothingIsTold) {
  const CScratch scratch;
  const auto file = scratch.Write("table.csv", kTable);
  const auto rules = scratch.Write("rules.dcf", std::string(kRules) + "\nCapMaximun = TRUE,5\n");
  const Answer answer = RunProgram({"condition", file, "--field", "v", "--rules", rules});
  EXPECT_EQ(answer.code, kExitDone);
  EXPECT_NE(answer.err.find("rules.dcf, line 8: 'CapMaximun = TRUE,5' says nothing to rules and is skipped.\n"),
            std::string::npos)
      << answer.err;
  EXPECT_EQ(RunProgram({"condition", file, "--field", "v", "--rules", scratch.Write("none.dcf", "! none\n")}).err, "");
}

TEST(OperatorsCommand, ListsTheCatalogue) {
  const Answer text = RunProgram({"operators"});
  EXPECT_EQ(text.code, kExitDone);
  EXPECT_NE(text.out.find("\nFill Null\n"), std::string::npos) << text.out;
  const auto listed = Json::parse(RunProgram({"operators", "--json"}).out)["operators"];
  ASSERT_EQ(listed.size(), 13u);
  EXPECT_EQ(listed[0], Json::parse(R"({"type": 0, "name": "Fill Null", "progressive": false, "parameter": null})"));
  EXPECT_EQ(listed[12]["parameter"],
            Json::parse(R"({"name": "Order", "type": "integer", "odd": false, "default": 4})"));
  for (const auto& row : listed) {
    EXPECT_NE(text.out.find(row["name"].get<std::string>()), std::string::npos);
  }
}

}  // namespace
}  // namespace tallyscope
