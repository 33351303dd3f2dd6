// SPDX-License-Identifier: MIT
// What comes from a table, a path or an argument never acts on the terminal.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "host/Command.h"
#include "host/Sentences.h"
#include "tests/host/HostTesting.h"
#include "tests/support/Scratch.h"

namespace tallyscope {
namespace {

TEST(Sentences, WhatATerminalWouldActOnIsSpelledOut) {
  struct Row {
    const char* text;
    const char* shown;
  };
  for (const Row& row : {
           Row{"", ""}, Row{"Cu (ppm), 100 % \\x1b", "Cu (ppm), 100 % \\x1b"}, Row{"\x1b[2J\x07", "\\x1b[2J\\x07"},
           Row{"a\r\n\tb\x7f", "a\\r\\n\\tb\\x7f"},
           Row{"Gr\xC3\xB6\xC3\x9F"
               "e \xC2\xB5g \xE2\x82\xAC \xF0\x9F\xAA\xA8",
               "Gr\xC3\xB6\xC3\x9F"
               "e \xC2\xB5g \xE2\x82\xAC \xF0\x9F\xAA\xA8"},
           Row{"\xC2\x9B"
               "31m",
               "\\x9b"
               "31m"},  // C1, the one byte that stands for ESC [
           Row{"a\xE2\x80\xAE"
               "b\xE2\x81\xA6\xE2\x80\x8F\xD8\x9C",
               "a\\u202e"
               "b\\u2066\\u200f\\u061c"},
           Row{"\xE2\x80\xA8", "\\u2028"}, Row{"\x9B\xE9x\xC3", "\\x9b\\xe9x\\xc3"},  // no UTF-8
           Row{"\xC0\x9B\xED\xA0\x80", "\\xc0\\x9b\\xed\\xa0\\x80"},                  // overlong, half a pair
       }) {
    EXPECT_EQ(Shown(row.text), row.shown);
    EXPECT_EQ(Shown(Shown(row.text)), row.shown);
  }
  EXPECT_EQ(Shortened(CString(39, 'a') + "\xC3\xB6"
                                         "b"),
            CString(39, 'a') + "\xC3\xB6...");
  EXPECT_EQ(Quoted("a\x1b"), "'a\\x1b'");
}

bool IsPlain(const std::string& text) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    const auto next = i + 1 < text.size() ? static_cast<unsigned char>(text[i + 1]) : 0;
    if ((byte < 0x20 && byte != '\n') || byte == 0x7F || (byte == 0xC2 && next < 0xA0)) return false;
  }
  return text.find("\xE2\x80\xAE") == std::string::npos;
}

// Headings, labels and names with an escape sequence, a control character of the second set, an override and a line
// end.
TEST(Sentences, NoCommandLetsATableActOnTheTerminal) {
  const std::string evil =
      "\x1b]0;x\x07\xC2\x9B"
      "2J\xE2\x80\xAE";
  const CScratch scratch;
  const std::string v = "v" + evil;
  const std::string w = "w\n" + evil;
  const std::string table =
      scratch.Write("t" + evil + "\n.csv", "x,y,\"" + v + "\",\"" + w + "\",\"" + v + "\",\"r" + evil +
                                               "\"\n1,0,1,2,<3,a" + evil + "\n2,0,3,5,>6,b\n4,4,6,8,q" + evil + ",c\n");
  const std::string text = "r" + evil;
  const std::string no = scratch.Path("no" + evil + "/t.csv");
  for (const auto& arguments : std::vector<std::vector<CString>>{
           {"summary", table},
           {"summary", table, "--field", v, "--field", w},
           {"summary", table, "--field", evil},
           {"summary", table, "--json"},
           {"summary", table, "--x", v, "--y", evil},
           {"summary", table, "--x", v, "--y", w},
           {"summary", table, "--" + evil},
           {"summary", table, evil},
           {"summary", table, "--delimiter", evil},
           {"summary", table, "--censored", evil},
           {"summary", no},
           {evil},
           {"bivariate", table, v, w},
           {"bivariate", table, v, evil},
           {"select", table, "--where", w + " in 1..", "--summary"},
           {"select", table, "--where", evil + " in 1..", "--summary"},
           {"select", table, "--where", evil, "--summary"},
           {"select", table, "--rows", "7", "--summary"},
           {"select", table, "--inside", table, "--summary"},
           {"select", table, "--inside", no, "--summary"},
           {"select", table, "--invert", "-o", no},
           {"select", table, "--invert", "-o", table},
           {"render", table, "--page", "map", "--colour", evil, "-o", "x.png"},
           {"render", table, "--page", "map", "--no-axes", "-o", "x.png"},
           {"condition", table, "--field", v},
           {"condition", table, "--field", text, "--operator", "Detrend"},
           {"condition", table, "--field", v, "--operator", evil},
           {"condition", table, "--field", v, "--rules", no},
           {"condition", table, "--field", v, "--rules", table},
           {"condition", table, "--field", v, "-o", no},
           {"variogram", table, "--field", v, "--range", "9"},
           {"variogram", table, "--field", v, "--range", "9", "--model", no},
           {"variogram", table, "--field", v, "--range", "9", "--fit", "-o", no},
           {"variogram", table, "--field", v, "--range", "9", "--direction", "5", "--dip", "5"},
           {"model", no},
           {"model", table},
       }) {
    const Answer answer = RunProgram(arguments);
    const bool isJson = arguments.back() == "--json";  // which stays JSON
    EXPECT_TRUE(isJson || IsPlain(answer.out)) << testing::PrintToString(arguments) << answer.out;
    EXPECT_TRUE(IsPlain(answer.err)) << testing::PrintToString(arguments) << answer.err;
    EXPECT_NE(answer.out + answer.err, "");
  }
}

}  // namespace
}  // namespace tallyscope
