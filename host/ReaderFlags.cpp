// SPDX-License-Identifier: MIT
#include "host/ReaderFlags.h"

#include <map>

#include <CLI/CLI.hpp>

namespace tallyscope {

namespace {

char ParseDelimiter(const CString& text) {
  static const std::map<CString, char> names = {{"comma", ','}, {"semicolon", ';'}, {"tab", '\t'}, {"\\t", '\t'},
                                                {"bar", '|'},   {"pipe", '|'},      {"blank", ' '}, {"blanks", ' '},
                                                {"space", ' '}};
  const auto named = names.find(text);
  if (named != names.end()) return named->second;
  const auto byte = text.size() == 1 ? static_cast<unsigned char>(text[0]) : 'x';
  const bool allowed = byte < 0x7F && std::isalnum(byte) == 0 && (byte >= ' ' || byte == '\t') &&
                       CString("\"'.+-*<>").find(static_cast<char>(byte)) == CString::npos;
  if (allowed) return static_cast<char>(byte);
  throw CLI::ValidationError("--delimiter", "'" + text + "' is none of comma, semicolon, tab, bar, blanks, and no sign");
}

char ParseDecimal(const CString& text) {
  if (text == "." || text == "point") return '.';
  if (text == "," || text == "comma") return ',';
  throw CLI::ValidationError("--decimal", "'" + text + "' is neither point nor comma");
}

}  // namespace

void AddReaderFlags(CLI::App& app, ReaderOptions& options) {
  const CString group = "How the table is read";
  app.add_option("--x", options.x, "field of the X axis; without it the axes are guessed from the headings")
      ->group(group)->type_name("NAME");
  app.add_option("--y", options.y, "field of the Y axis")->group(group)->type_name("NAME");
  app.add_option("--z", options.z, "field of the Z axis")->group(group)->type_name("NAME");
  app.add_flag("--no-axes", options.noAxes, "all columns are ordinary fields")->group(group);
  app.add_option("--null", options.nulls, "a further null; may be given several times")
      ->group(group)->type_name("VALUE")->allow_extra_args(false);
  app.add_option_function<CString>(
         "--delimiter", [&options](const CString& text) { options.delimiter = ParseDelimiter(text); },
         "comma, semicolon, tab, bar, blanks or the sign itself; told from the file")
      ->group(group)->type_name("SIGN");
  app.add_option_function<CString>(
         "--decimal", [&options](const CString& text) { options.decimal = ParseDecimal(text); },
         "point or comma; told from the file")
      ->group(group)->type_name("SIGN");
  app.add_option_function<CString>(
         "--headings", [&options](const CString& text) { options.headings = text == "yes"; },
         "whether the first line holds names: yes or no; told from the file")
      ->group(group)->type_name("yes|no")->check(CLI::IsMember({"yes", "no"}));
  app.add_option("--censored", options.censored, "what '<0.01' stands for: null, half the limit, or the limit; null")
      ->group(group)->type_name("null|half|limit")
      ->transform(CLI::Transformer(std::map<CString, Censored>{
          {"null", Censored::kNull}, {"half", Censored::kHalf}, {"limit", Censored::kLimit}}))
      ->check(CLI::Validator());
}

CString CheckReaderFlags(const ReaderOptions& options) {
  if (options.noAxes && !(options.x + options.y + options.z).empty()) return "--no-axes excludes --x, --y and --z.";
  if (options.x.empty() != options.y.empty()) return "--x and --y go together.";
  if (options.decimal && options.decimal == options.delimiter && *options.decimal == '.') return "The point can't be both.";
  return {};
}

}  // namespace tallyscope
