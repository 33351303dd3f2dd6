// SPDX-License-Identifier: MIT
#include "files/UTokeniser.h"

#include <gtest/gtest.h>

namespace tallyscope {

namespace {

// Words as they are, quoted texts in brackets, comments in braces.
CString Cut(CUTokeniser& tokeniser, const CString& line) {
  tokeniser.SetLine(line);
  CString said;
  for (const auto& token : tokeniser.GetTokens()) {
    if (!said.empty()) said += " ; ";
    said += token.type == CUTokeniser::kQuoted    ? "[" + token.text + "]"
            : token.type == CUTokeniser::kComment ? "{" + token.text + "}"
                                                  : "<" + token.text + ">";
    EXPECT_EQ(line.substr(token.start, token.length), token.text) << line;
  }
  return said;
}

TEST(Tokeniser, CutsLines) {
  const struct {
    const char* line;
    const char* tokens;
  } rows[] = {
      {"", ""},
      {"  \t= ", ""},
      {"a,,b", "<a> ; <> ; <b>"},
      {"a,", "<a> ; <>"},
      {"a, ", "<a> ; <>"},
      {",a", "<> ; <a>"},
      {" ,a", "<> ; <a>"},
      {"a , b|c", "<a> ; <b> ; <c>"},
      {"Key=Value", "<Key> ; <Value>"},
      {"Key Value", "<Key> ; <Value>"},
      {"Name = 'two words' ! note", "<Name> ; [two words] ; {! note}"},
      {"a \"it's\" b", "<a> ; [it's] ; <b>"},
      {"a 'never closed, x ", "<a> ; [never closed, x ]"},
      {"a'b'c", "<a> ; [b] ; <c>"},
      {"'a','b'", "[a] ; [b]"},
      {"'a' ,, 'b'", "[a] ; <> ; [b]"},
      {"''", "[]"},
      {"a '", "<a> ; []"},
      {"a/b", "<a> ; {/b}"},
      {"! whole, line", "{! whole, line}"},
      {"  # after blanks", "{# after blanks}"},
      {"a,!b", "<a> ; <> ; {!b}"},
      {"a, !b", "<a> ; <> ; {!b}"},
      {"-1.5e3,+2", "<-1.5e3> ; <+2>"},
  };
  CUTokeniser tokeniser;
  for (const auto& row : rows) EXPECT_EQ(Cut(tokeniser, row.line), row.tokens) << row.line;
}

TEST(Tokeniser, OtherCharacterSetsCutAlike) {
  CUTokeniser tokeniser;
  tokeniser.SetSeparators(";");
  tokeniser.SetBlanks(" ");
  tokeniser.SetQuotes("`");
  tokeniser.SetCommentStarters("%");
  EXPECT_EQ(Cut(tokeniser, "a,b=c;`x y` % 'z'"), "<a,b=c> ; [x y] ; {% 'z'}");
  EXPECT_EQ(Cut(tokeniser, "a!b"), "<a!b>") << "the derived sets follow";
}

}  // namespace

}  // namespace tallyscope
