// SPDX-License-Identifier: MIT
#include "host/AxisGuess.h"

#include <algorithm>
#include <string_view>

#include "host/Sentences.h"

namespace tallyscope {

namespace {

using Names = std::vector<std::string_view>;

// Headings that go together. The first family wins whose x and y are both there; z comes from the same family, so that
// a height measured beside a plane pair of coordinates stays a field.
struct AxisFamily {
  Names x;
  Names y;
  Names z;
};

const std::vector<AxisFamily>& GetFamilies() {
  static const std::vector<AxisFamily> families = {
      {{"x"}, {"y"}, {"z"}},
      {{"east", "easting", "eastings"},
       {"north", "northing", "northings"},
       {"elev", "elevation", "rl", "z", "height", "altitude"}},
      {{"xcoo", "xcoord", "xcoordinate", "coordx"},
       {"ycoo", "ycoord", "ycoordinate", "coordy"},
       {"zcoo", "zcoord", "zcoordinate", "coordz"}},
      {{"xloc", "xlocation", "locx"}, {"yloc", "ylocation", "locy"}, {"zloc", "zlocation", "locz"}},
      {{"utme", "utmx", "utmeast", "utmeasting", "xutm", "eutm"},
       {"utmn", "utmy", "utmnorth", "utmnorthing", "yutm", "nutm"},
       {"elev", "elevation", "utmz", "z", "rl"}},
      {{"xmid", "midx", "xcentre", "xcenter"},
       {"ymid", "midy", "ycentre", "ycenter"},
       {"zmid", "midz", "zcentre", "zcenter"}},
      {{"lon", "long", "longitude"}, {"lat", "latitude"}, {"depth", "elev", "elevation", "altitude", "z"}},
  };
  return families;
}

// What makes no difference: case, blanks, signs between the letters, and a unit in brackets behind.
CString Normalise(std::string_view name) {
  CString plain;
  for (const char c : name) {
    if (!plain.empty() && (c == '(' || c == '[')) break;
    if (c >= 'A' && c <= 'Z') plain += static_cast<char>(c + ('a' - 'A'));
    if ((c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || static_cast<unsigned char>(c) >= 0x80) plain += c;
  }
  return plain;
}

// The first column of numbers whose heading is one of the names, in the order of the names; -1 when there is none.
int FindColumn(const CHostTable& table, const std::vector<CString>& headings, const Names& names) {
  for (const auto name : names) {
    for (std::size_t i = 0; i < headings.size(); ++i) {
      const auto& column = table.GetFileColumns()[i];
      if (headings[i] == name && !column.IsText() && column.CountValid() > 0) return static_cast<int>(i);
    }
  }
  return -1;
}

CString GetName(const CHostTable& table, int column) {
  return table.GetFileColumns()[static_cast<std::size_t>(column)].name;
}

CString JoinAxes(const CHostTable& table, const std::vector<int>& columns) {
  CString joined;
  for (std::size_t i = 0; i < columns.size(); ++i) {
    joined += (i == 0 ? "" : i + 1 == columns.size() ? " and " : ", ") + GetName(table, columns[i]);
  }
  return joined;
}

// A third axis that one might miss, of any family.
CString SuggestZ(const CHostTable& table, const std::vector<CString>& headings) {
  const int z = FindColumn(table, headings, {"z", "elev", "elevation", "depth"});
  if (z < 0) return {};
  const CString name = GetName(table, z);
  return "; --z '" + name + "' would make " + name + " the third";
}

AxisChoice Guess(const CHostTable& table, bool suggest) {
  std::vector<CString> headings;
  for (const auto& column : table.GetFileColumns()) headings.push_back(Normalise(column.name));
  AxisChoice choice;
  for (const auto& family : GetFamilies()) {
    const int x = FindColumn(table, headings, family.x);
    const int y = FindColumn(table, headings, family.y);
    if (x < 0 || y < 0) continue;
    choice.columns = {x, y};
    const int z = FindColumn(table, headings, family.z);
    if (z >= 0) choice.columns.push_back(z);
    choice.description = JoinAxes(table, choice.columns) + ", guessed from the headings";
    if (z < 0 && suggest) choice.description += SuggestZ(table, headings);
    return choice;
  }
  choice.description = "none found in the headings";
  return choice;
}

// Adds the column of that name, or says why it can't be an axis.
bool AddAxis(const CHostTable& table, const CString& file, const CString& name, AxisChoice& choice) {
  const auto& columns = table.GetFileColumns();
  const auto found =
      std::find_if(columns.begin(), columns.end(), [&](const auto& column) { return column.name == name; });
  if (found == columns.end()) {
    choice.error = file + " has no field " + name + SuggestNames(name, table.GetColumnNames());
    return false;
  }
  const auto index = static_cast<int>(found - columns.begin());
  if (found->IsText()) {
    choice.error = "The field " + name + " of " + file + " holds texts and can't be an axis.";
  } else if (std::find(choice.columns.begin(), choice.columns.end(), index) != choice.columns.end()) {
    choice.error = "The field " + name + " of " + file + " can't be two axes at once.";
  }
  choice.columns.push_back(index);
  return choice.error.empty();
}

}  // namespace

AxisChoice ChooseAxes(const CHostTable& table, const CString& file, const ReaderOptions& options) {
  if (options.noAxes) return {{}, "none, as asked", {}};
  const bool pair = !options.x.empty() || !options.y.empty();
  if (!pair && options.z.empty()) return Guess(table, true);
  AxisChoice choice;
  if (!pair) {
    choice = Guess(table, false);
    if (choice.columns.empty()) {
      choice.error =
          "No x and y were found in the headings of " + file + " that " + options.z + " could go with: name them too.";
      return choice;
    }
    choice.columns.resize(2);
  } else if (!AddAxis(table, file, options.x, choice) || !AddAxis(table, file, options.y, choice)) {
    return choice;
  }
  if (!options.z.empty() && !AddAxis(table, file, options.z, choice)) return choice;
  choice.description = JoinAxes(table, choice.columns) + ", as asked";
  return choice;
}

}  // namespace tallyscope
