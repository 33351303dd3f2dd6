// SPDX-License-Identifier: MIT
#include "tests/tree/SourceFiles.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdlib>
#include <filesystem>
#include <regex>
#include <sstream>

#include "tests/support/Scratch.h"

namespace tallyscope {

namespace {

namespace fs = std::filesystem;

constexpr std::array kFolders = {"bands",   "bench", "conditioning", "files",   "fuzz",       "gridctrl", "host",
                                 "outside", "plots", "platform",     "spatial", "statistics", "tests",    "workbench"};

fs::path GetRoot() {
  const char* root = std::getenv("TALLYSCOPE_TREE");
  return root != nullptr ? root : ".";
}

std::vector<SourceFile> ReadSourceFiles() {
  std::vector<SourceFile> files;
  for (const char* folder : kFolders) {
    for (const auto& entry : fs::recursive_directory_iterator(GetRoot() / folder)) {
      const auto ending = entry.path().extension();
      if (ending != ".h" && ending != ".cpp") continue;
      files.push_back({entry.path().lexically_relative(GetRoot()).generic_string(), ReadAll(entry.path())});
    }
  }
  std::sort(files.begin(), files.end(), [](const auto& a, const auto& b) { return a.path < b.path; });
  return files;
}

bool IsWordPart(char c) {
  return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_';
}

// Behind the quoted text that starts at `at`, which may be raw.
std::size_t SkipQuoted(const std::string& text, std::size_t at, bool raw) {
  const char quote = text[at];
  if (raw) {
    const auto open = text.find('(', at);
    const std::string close = ")" + text.substr(at + 1, open - at - 1) + "\"";
    return text.find(close, open) + close.size();
  }
  for (++at; at < text.size() && text[at] != quote; ++at) at += text[at] == '\\' ? 1 : 0;
  return at + 1;
}

// Behind a directive, which a "\" carries over the line's end.
std::size_t SkipDirective(const std::string& text, std::size_t at) {
  while (at < text.size() && text[at] != '\n') at += text[at] == '\\' ? 2 : 1;
  return at;
}

// Walks the tokens of a source and notes what is defined between braces of named namespaces.
class NameFinder {
 public:
  explicit NameFinder(std::vector<std::string> tokens) : tokens_(std::move(tokens)) {}

  std::vector<std::string> Find() {
    while (at_ < tokens_.size()) Step();
    return names_;
  }

 private:
  const std::string& Peek(std::size_t ahead = 0) const {
    static const std::string none;
    return at_ + ahead < tokens_.size() ? tokens_[at_ + ahead] : none;
  }
  // Behind the bracket that closes the one at hand.
  void SkipBracket(const std::string& open, const std::string& close) {
    int depth = 0;
    do {
      depth += (Peek() == open) - (Peek() == close);
      ++at_;
    } while (depth > 0 && at_ < tokens_.size());
  }

  void Step() {
    if (Peek() == "}") {
      if (!spaces_.empty()) spaces_.pop_back();
      ++at_;
    } else if (Peek() == "namespace") {
      EnterNamespace();
    } else if (Peek() == "extern" && Peek(1) == "{") {
      spaces_.emplace_back();
      at_ += 2;
    } else {
      ReadDeclaration();
    }
  }

  void EnterNamespace() {
    std::string name;
    for (++at_; at_ < tokens_.size() && Peek() != "{" && Peek() != ";" && Peek() != "="; ++at_) name += Peek();
    if (Peek() == "=") SkipTo(";");
    if (Peek() == ";") {
      ++at_;
      return;
    }
    spaces_.push_back(name.empty() ? "?" : name + "::");
    ++at_;
  }

  void SkipTo(const std::string& end) {
    while (at_ < tokens_.size() && Peek() != end) ++at_;
  }

  // Up to and with its ";" or body.
  void ReadDeclaration() {
    bool isShared = false;  // a template or inline: who includes it has a copy
    bool isInline = false;
    std::string name;  // the last word before a parameter list
    std::string function;
    for (bool isFirst = true; at_ < tokens_.size(); isFirst = false) {
      const std::string& token = Peek();
      if (token == "template") {
        isShared = true;
        ++at_;
        if (Peek() == "<") SkipBracket("<", ">");
      } else if (token == "class" || token == "struct" || token == "union" || token == "enum") {
        NoteType();
      } else if (token == "(") {
        const auto from = at_;
        SkipBracket("(", ")");
        if (!function.empty()) continue;
        function = name;
        for (auto i = from; i < at_; ++i) function += tokens_[i] + (IsWordPart(tokens_[i][0]) ? " " : "");
      } else if (token == "{") {
        SkipBracket("{", "}");
        if (isShared && !function.empty()) Note(function);
        if (Peek() != ";" && Peek() != "," && Peek() != "{") return;
      } else if (token == "=") {
        if (isInline && function.empty()) Note(name);
        isInline = false;
        ++at_;
      } else if (token == ";" || token == "}") {
        if (token == ";" || isFirst) ++at_;
        return;
      } else {
        isInline = isInline || token == "inline";
        isShared = isShared || isInline;
        if (function.empty()) name = token;
        ++at_;
      }
    }
  }

  void NoteType() {
    ++at_;
    if (Peek() == "class" || Peek() == "struct") ++at_;  // of an enum
    while (Peek() == "[") SkipBracket("[", "]");
    const std::string name = Peek();
    const std::string& next = Peek(1) == "final" ? Peek(2) : Peek(1);
    if (!name.empty() && IsWordPart(name[0]) && (next == "{" || next == ":")) {
      Note(name);
      SkipTo("{");
    }
  }

  void Note(const std::string& name) {
    std::string whole;
    for (const auto& space : spaces_) whole += space;
    if (whole.find('?') == std::string::npos) names_.push_back(whole + name);
  }

  std::vector<std::string> tokens_;
  std::vector<std::string> spaces_;
  std::vector<std::string> names_;
  std::size_t at_ = 0;
};

}  // namespace

const std::vector<SourceFile>& GetSourceFiles() {
  static const auto files = ReadSourceFiles();
  return files;
}

std::string ReadTreeFile(const std::string& path) {
  return ReadAll(GetRoot() / path);
}

std::vector<IncludeLine> FindIncludes(const SourceFile& file) {
  static const std::regex pattern(R"(\s*#\s*include\s*(["<])([^">]+)[">].*)");
  std::vector<IncludeLine> found;
  std::istringstream lines(file.text);
  std::string line;
  std::smatch parts;
  for (int number = 1; std::getline(lines, line); ++number) {
    if (line.find('#') != std::string::npos && std::regex_match(line, parts, pattern)) {
      found.push_back({number, parts[2], parts[1] == "\""});
    }
  }
  return found;
}

std::vector<std::string> CutTokens(const std::string& text) {
  std::vector<std::string> tokens;
  bool atLineStart = true;
  for (std::size_t at = 0; at < text.size();) {
    const char c = text[at];
    if (c == '\n') atLineStart = true;
    if (std::isspace(static_cast<unsigned char>(c)) != 0) {
      ++at;
      continue;
    }
    if (c == '#' && atLineStart) {
      at = SkipDirective(text, at);
      continue;
    }
    atLineStart = false;
    if (text.compare(at, 2, "//") == 0) {
      at = std::min(text.find('\n', at), text.size());
    } else if (text.compare(at, 2, "/*") == 0) {
      at = std::min(text.find("*/", at), text.size() - 2) + 2;
    } else if (c == '"' || c == '\'') {
      const bool raw = c == '"' && !tokens.empty() && tokens.back().ends_with('R') && text[at - 1] == 'R';
      if (raw) tokens.pop_back();
      at = SkipQuoted(text, at, raw);
    } else if (IsWordPart(c)) {
      const auto from = at;
      // A quote within a number parts its digits.
      while (at < text.size() &&
             (IsWordPart(text[at]) || (text[at] == '\'' && std::isdigit(static_cast<unsigned char>(c)) != 0)))
        ++at;
      tokens.push_back(text.substr(from, at - from));
    } else if (text.compare(at, 2, "::") == 0) {
      tokens.emplace_back("::");
      at += 2;
    } else {
      tokens.emplace_back(1, c);
      ++at;
    }
  }
  return tokens;
}

std::vector<std::string> FindSharedNames(const std::string& text) {
  return NameFinder(CutTokens(text)).Find();
}

}  // namespace tallyscope
