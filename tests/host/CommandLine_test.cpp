// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <unistd.h>

#include <algorithm>
#include <bit>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

#include "host/Command.h"
#include "host/CommandLine.h"
#include "host/OpenTable.h"
#include "host/TerminalProgress.h"
#include "statistics/Stats_Univariate.h"
#include "tests/host/HostTesting.h"
#include "tests/support/Scratch.h"

namespace tallyscope {

namespace {
OpenRequest lastRequest;
}

int RunWindow(const OpenRequest& request) {
  lastRequest = request;
  return 0;
}

namespace {

bool IsOneSentence(const std::string& text) {
  return text.size() > 2 && text.find('\n') == text.size() - 1 &&
         std::string(".?").find(text[text.size() - 2]) != std::string::npos;
}

TEST(CommandLine, WrongCallsShowTheUsage) {
  const std::string file = Example("meuse.csv");
  for (const auto& arguments : std::vector<std::vector<CString>>{{"summary"},
                                                                 {"summary", file, "--quantiles", "best"},
                                                                 {"summary", file, "--colour"},
                                                                 {"summary", file, "another.csv"},
                                                                 {"summary", file, "--field"},
                                                                 {"summary", file, "--x", "x"},
                                                                 {"summary", file, "--no-axes", "--z", "elev"},
                                                                 {"summary", file, "--censored", "often"},
                                                                 {"summary", file, "--delimiter", "7"},
                                                                 {"summary", file, "--delimiter", "and"},
                                                                 {"summary", file, "--decimal", ";"},
                                                                 {file, "--mode", "magic"},
                                                                 {file, "another.csv"}}) {
    const Answer answer = RunProgram(arguments);
    EXPECT_EQ(answer.code, 2) << arguments.back();
    EXPECT_NE(answer.err.find("Usage: tallyscope "), std::string::npos) << answer.err;
    EXPECT_LE(std::count(answer.err.begin(), answer.err.end(), '\n'), 3) << answer.err;
    EXPECT_TRUE(IsOneSentence(answer.err.substr(answer.err.rfind('\n', answer.err.size() - 2) + 1))) << answer.err;
    EXPECT_EQ(answer.out, "");
  }
}

TEST(CommandLine, SlipsOfThePenAreTold) {
  const CScratch scratch;
  const std::string file = Example("meuse.csv");
  struct Row {
    std::vector<CString> arguments;
    const char* sentence;
  };
  for (const Row& row : {
           Row{{"summry", file}, "There is no command summry; did you mean summary?"},
           Row{{"biv"}, "There is no command biv; did you mean bivariate?"},
           Row{{"meuse"}, "There is no command meuse, and no such file; 'tallyscope --help' lists the commands."},
           Row{{"summary", file, "--feld", "zinc"}, "There is no option --feld; did you mean --field?"},
           Row{{"summary", file, "--feld=zinc"}, "There is no option --feld; did you mean --field?"},
           Row{{"render", file, "--pge", "map", "-o", "x.png"}, "There is no option --pge; did you mean --page?"},
           Row{{file, "--zzzzzz"}, "There is no option --zzzzzz."},
           Row{{"summary", file, "another.csv"}, "'another.csv' is one argument too many."},
           Row{{"summary"}, "FILE is required."},
       }) {
    const Answer answer = RunProgram(row.arguments);
    EXPECT_EQ(answer.code, kExitWrongCall);
    EXPECT_TRUE(answer.err.ends_with("\n" + std::string(row.sentence) + "\n")) << row.sentence << answer.err;
  }
  const auto before = std::filesystem::current_path();
  scratch.Write("summry", "a\n1\n");
  std::filesystem::current_path(scratch.folder);
  EXPECT_EQ(RunProgram({"summry"}).code, kExitDone) << "a file of that name is opened";
  std::filesystem::current_path(before);
}

TEST(CommandLine, BadInputsAreOneSentence) {
  const std::string file = Example("meuse.csv");
  for (const auto& arguments : std::vector<std::vector<CString>>{{"summary", "no-such-file.csv"},
                                                                 {"summary", "/"},
                                                                 {"summary", file, "--field", "zink"},
                                                                 {"summary", file, "--x", "x", "--y", "why"},
                                                                 {"summary", file, "--x", "x", "--y", "landuse"}}) {
    const Answer answer = RunProgram(arguments);
    EXPECT_EQ(answer.code, 1) << arguments.back();
    EXPECT_TRUE(IsOneSentence(answer.err)) << answer.err;
    EXPECT_EQ(answer.out, "");
  }
}

TEST(CommandLine, HelpAndVersion) {
  const Answer help = RunProgram({"--help"});
  EXPECT_EQ(help.code, 0);
  for (const auto& row : GetCommands()) {
    EXPECT_NE(help.out.find(row.name), std::string::npos);
    const Answer own = RunProgram({row.name, "--help"});
    EXPECT_EQ(own.code, 0);
    const std::string_view name = row.name;
    const bool readsTable = name != "model" && name != "operators";
    EXPECT_EQ(own.out.find("--censored") != std::string::npos, readsTable) << row.name;
  }
  EXPECT_EQ(RunProgram({"--version"}).out.rfind("tallyscope ", 0), 0u);
}

TEST(CommandLine, TheWindowIsAskedToOpen) {
  EXPECT_EQ(RunProgram({}).code, 0);
  EXPECT_EQ(lastRequest.file, "");
  EXPECT_EQ(RunProgram(
                {"table.csv", "--null", "-999", "--null=n.d.", "--delimiter", "tab", "--decimal", ",", "--field", "Cu"})
                .code,
            0);
  EXPECT_EQ(lastRequest.file, "table.csv");
  EXPECT_EQ(lastRequest.reader.nulls, (std::vector<CString>{"-999", "n.d."}));
  EXPECT_EQ(lastRequest.reader.delimiter, '\t');
  EXPECT_EQ(lastRequest.reader.decimal, ',');
  EXPECT_EQ(lastRequest.field, "Cu");
  EXPECT_FALSE(lastRequest.mode);
  EXPECT_EQ(RunProgram({"open", "summary", "--mode", "univariate", "--censored", "half", "--x", "E", "--y", "N"}).code,
            0);
  EXPECT_EQ(lastRequest.file, "summary") << "a file that is called like a command";
  EXPECT_EQ(lastRequest.mode, CTallyscope::eUnivariate);
  EXPECT_EQ(lastRequest.reader.censored, Censored::kHalf);
  EXPECT_EQ(RunProgram({"--field", "Cu", "./open"}).code, 0);
  EXPECT_EQ(lastRequest.file, "./open");
  EXPECT_EQ(RunProgram({"table.csv", "--mode", "bivariate"}).code, 0);
  EXPECT_EQ(lastRequest.mode, CTallyscope::eBivariate);
  EXPECT_EQ(RunProgram({"table.csv", "--mode", "spatial"}).code, 0);
  EXPECT_EQ(lastRequest.mode, CTallyscope::eSpatial);
}

// Every figure of the JSON reads back to the double that the calculator holds.
TEST(Summary, JsonHoldsTheFiguresToTheLastBit) {
  const std::string file = Example("walker.csv");
  for (const bool sorted : {false, true}) {
    const Answer answer = RunProgram({"summary", file, "--json", "--quantiles", sorted ? "sorted" : "binned"});
    ASSERT_EQ(answer.code, 0);
    const auto json = nlohmann::ordered_json::parse(answer.out);
    EXPECT_EQ(json["file"], file);
    EXPECT_EQ(json["stations"], 470);
    EXPECT_EQ(json["axes"], (nlohmann::ordered_json{"X", "Y"}));
    const auto opened = OpenTable(file, {}, nullptr);
    ASSERT_EQ(json["fields"].size(), 6u);
    const int dims[] = {-1, -2, 0, 1, 2, 3};
    for (std::size_t i = 0; i < 6; ++i) {
      const auto& field = json["fields"][i];
      CStats_Univariate figures;
      figures.Add(opened.table.get(), dims[i]);
      figures.Calculate(sorted ? 7 : 11, nullptr);
      SCOPED_TRACE(field["name"]);
      EXPECT_EQ(field["name"], opened.table->GetValueName(dims[i]));
      EXPECT_EQ(field["dim"], dims[i]);
      EXPECT_EQ(field["total"], figures.total);
      EXPECT_EQ(field["valid"], figures.valid);
      EXPECT_EQ(field["invalid"], figures.invalid);
      const std::pair<const char*, double> expected[] = {{"minimum", figures.minimum},
                                                         {"maximum", figures.maximum},
                                                         {"mean", figures.mean},
                                                         {"variance", figures.variance},
                                                         {"standardDeviation", figures.standardDeviation},
                                                         {"ratio", figures.ratio},
                                                         {"skewness", figures.skewness},
                                                         {"median", figures.median},
                                                         {"mode", figures.mode},
                                                         {"lowerQuartile", figures.lowerQuartile},
                                                         {"upperQuartile", figures.upperQuartile},
                                                         {"interquartileRange", figures.interquartileRange}};
      EXPECT_EQ(field.size(), 5 + std::size(expected));
      for (const auto& [key, value] : expected) {
        EXPECT_EQ(std::bit_cast<std::uint64_t>(field[key].get<double>()), std::bit_cast<std::uint64_t>(value)) << key;
      }
    }
  }
}

TEST(Summary, JsonIsValidWhateverTheTableHolds) {
  const CScratch scratch;
  const std::string table =
      scratch.Write("odd \xFF name.csv", "\"a \"\"q\"\"\",b\xE9,c\n1e308,,x\n-1e308,,y\n1,,\xFC\n");
  const Answer answer = RunProgram({"summary", table, "--json"});
  ASSERT_EQ(answer.code, 0) << answer.err;
  const auto json = nlohmann::json::parse(answer.out);
  EXPECT_EQ(json["fields"][0]["name"], "a \"q\"");
  EXPECT_TRUE(json["fields"][0]["variance"].is_null()) << "beyond the range of doubles";
  EXPECT_EQ(json["fields"][1]["name"], "b\xC3\xA9");
  EXPECT_EQ(json["fields"][1]["valid"], 0);
  EXPECT_EQ(json["fields"][2]["maximum"], 3.0);
}

TEST(Summary, TheTableTellsWhatWasFound) {
  const CScratch scratch;
  const std::string table = scratch.Write(
      "found.csv", "East,North,Au,rock\n1,2,<0.01,clay\n2,3,0.5,sand\n3,4,<0.01,clay\n4,5,x,\n5,6,>9,clay\n");
  const Answer answer = RunProgram({"summary", table});
  ASSERT_EQ(answer.code, 0) << answer.err;
  for (const char* line :
       {"found.csv: 5 stations, 4 columns, comma-separated text\n", "Axes: East and North, guessed from the headings\n",
        "Au: 2 values below detection, 1 value above detection\n", "rock: text, 2 labels: 1 clay (3), 2 sand (1)\n",
        "Column Au: 1 cell is no number, 'x' at line 5; read as a null.\n", "\nAu         1     4 "}) {
    EXPECT_NE(answer.out.find(line), std::string::npos) << line << "\n" << answer.out;
  }
  EXPECT_EQ(answer.err, "");
  const Answer figures = RunProgram({"summary", table, "--field", "Au", "--censored", "half"});
  EXPECT_NE(figures.out.find("\nMinimum                          0.005\n"), std::string::npos) << figures.out;
}

TEST(TerminalProgress, ShowsLongWorkOnATerminalAlone) {
  using std::chrono::milliseconds;
  const auto show = [](bool isTerminal, milliseconds patience) {
    std::ostringstream err;
    {
      CTerminalProgress progress(err, isTerminal, patience);
      progress.SetTask("Reading", 0);
      EXPECT_TRUE(progress.OnProgress(50));
    }
    return err.str();
  };
  EXPECT_EQ(show(true, milliseconds(0)), "\r\033[KReading [" + CString(15, '#') + CString(15, '.') + "] 50 %\r\033[K");
  EXPECT_EQ(show(false, milliseconds(0)), "");
  EXPECT_EQ(show(true, milliseconds(1'000'000)), "");
}

}  // namespace
}  // namespace tallyscope
