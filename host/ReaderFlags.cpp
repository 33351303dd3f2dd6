// SPDX-License-Identifier: MIT
#include "host/ReaderFlags.h"

#include <map>

#include <CLI/CLI.hpp>

#include "host/Choice.h"

namespace tallyscope {

namespace {

char ParseDelimiter(const CString& text) {
  static const std::map<CString, char> names = {{"comma", ','}, {"semicolon", ';'}, {"tab", '\t'},
                                                {"\\t", '\t'},  {"bar", '|'},       {"pipe", '|'},
                                                {"blank", ' '}, {"blanks", ' '},    {"space", ' '}};
  const auto named = names.find(text);
  if (named != names.end()) return named->second;
  const auto byte = text.size() == 1 ? static_cast<unsigned char>(text[0]) : 'x';
  const bool allowed = byte < 0x7F && std::isalnum(byte) == 0 && (byte >= ' ' || byte == '\t') &&
                       CString("\"'.+-*<>").find(static_cast<char>(byte)) == CString::npos;
  if (allowed) return static_cast<char>(byte);
  throw CLI::ValidationError("--delimiter",
                             "'" + text + "' is none of comma, semicolon, tab, bar, blanks, and no sign");
}

}  // namespace

void AddReaderFlags(CLI::App& app, ReaderOptions& options) {
  const CString group = "How the table is read";
  app.add_option("--x", options.x, "field of the X axis; without it the axes are guessed from the headings")
      ->group(group)
      ->type_name("NAME");
  app.add_option("--y", options.y, "field of the Y axis")->group(group)->type_name("NAME");
  app.add_option("--z", options.z, "field of the Z axis")->group(group)->type_name("NAME");
  app.add_flag("--no-axes", options.noAxes, "all columns are ordinary fields")->group(group);
  app.add_option("--null", options.nulls, "a further null; may be given several times")
      ->group(group)
      ->type_name("VALUE")
      ->allow_extra_args(false);
  app.add_option_function<CString>(
         "--delimiter", [&options](const CString& text) { options.delimiter = ParseDelimiter(text); },
         "comma, semicolon, tab, bar, blanks or the sign itself; told from the file")
      ->group(group)
      ->type_name("SIGN");
  const Choices<char> decimals = {{"point", '.'}, {"comma", ','}, {".", '.'}, {",", ','}};
  AddChoice<char>(app, "--decimal", decimals, "decimal sign; told from the file", [&options](char sign) {
    options.decimal = sign;
  })->group(group);
  AddChoice<bool>(app, "--headings", {{"yes", true}, {"no", false}},
                  "whether the first line holds names; told from the file",
                  [&options](bool headings) { options.headings = headings; })
      ->group(group);
  const Choices<Censored> censored = {
      {"null", Censored::kNull}, {"half", Censored::kHalf}, {"limit", Censored::kLimit}};
  AddChoice<Censored>(app, "--censored", censored,
                      "what '<0.01' stands for: a null (so without this), half the limit, or it",
                      [&options](Censored kind) { options.censored = kind; })
      ->group(group);
}

CString CheckReaderFlags(const ReaderOptions& options) {
  if (options.noAxes && !(options.x + options.y + options.z).empty()) return "--no-axes excludes --x, --y and --z.";
  if (options.x.empty() != options.y.empty()) return "--x and --y go together.";
  if (options.decimal && options.decimal == options.delimiter && *options.decimal == '.')
    return "The point can't be both.";
  return {};
}

}  // namespace tallyscope
