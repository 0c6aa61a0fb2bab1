// The words of findings in another language, from a plain text file for translators: docs/resources.md. Findings are made in
// English, which programs and lists of accepted findings rely on, and get other words where they are shown.
#pragma once

#include "circuits/check/rules.h"

#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace circuits {

class FindingWords final {
public:
  /// English.
  FindingWords() = default;
  /// The texts of a file. Throws std::runtime_error, naming file and line, for a line that is none of the format and for
  /// a rule that does not exist.
  FindingWords(std::string_view bytes, const std::string& fileName);

  /// What the program itself puts around findings: "place" and "row" give "Zeile". English for what the file lacks.
  [[nodiscard]] std::wstring word(std::wstring_view group, std::wstring_view english) const;
  /// A part of a rule: "sentence", "remedy" or "example".
  [[nodiscard]] std::wstring_view part(const Rule& rule, std::wstring_view name) const;
  /// What fills a placeholder. Names and figures of the site are not phrases and stay as they are.
  [[nodiscard]] std::wstring phrase(std::wstring_view placeholder, const std::wstring& english) const;

private:
  struct Phrase {
    std::wstring english; ///< "{1}", "{2}" stand for any text
    std::wstring words;
  };
  template <typename Value>
  using ByName = std::map<std::wstring, Value, std::less<>>;

  ByName<std::wstring> words_;          ///< by group and English word
  ByName<std::wstring> parts_;          ///< by rule and part
  ByName<std::vector<Phrase>> phrases_; ///< by placeholder
};

/// The languages of a folder of resources, by their two letters. Throws as the constructor does.
[[nodiscard]] std::map<std::string, FindingWords> readFindingWords(const std::filesystem::path& folder);

} // namespace circuits
