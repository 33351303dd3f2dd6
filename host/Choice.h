// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cmath>
#include <functional>
#include <utility>
#include <vector>

#include <CLI/CLI.hpp>

#include "platform/core/String.h"

namespace tallyscope {

template <class T>
using Choices = std::vector<std::pair<CString, T>>;

// For an option that takes a finite number above 0. CLI11's own answers with all 309 digits of the largest double.
inline CLI::Validator AboveZero() {
  const auto test = [](const std::string& text) {
    double value = 0;
    const bool good = CLI::detail::lexical_cast(text, value) && std::isfinite(value) && value > 0;
    return good ? std::string() : "'" + text + "' is no number above 0";
  };
  return CLI::Validator(test, "ABOVE 0");
}

// An option that takes one of a few words. `store` gets the value of the word that was given.
template <class T>
CLI::Option* AddChoice(CLI::App& app, const CString& name, const Choices<T>& choices, const CString& description,
                       const std::function<void(const T&)>& store) {
  CString words;
  for (const auto& choice : choices) words += (words.empty() ? "" : "|") + choice.first;
  const auto pick = [name, choices, words, store](const CString& text) {
    const auto found =
        std::find_if(choices.begin(), choices.end(), [&](const auto& choice) { return choice.first == text; });
    if (found == choices.end()) throw CLI::ValidationError(name, "'" + text + "' is none of " + words);
    store(found->second);
  };
  return app.add_option_function<CString>(name, pick, description)->type_name(words);
}

}  // namespace tallyscope
