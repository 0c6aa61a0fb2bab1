// Findings of a site as the tool shows them: for a reader, and for a program.
#pragma once

#include "circuits/check/check.h"

#include <nlohmann/json_fwd.hpp>

#include <map>
#include <string>
#include <vector>

namespace simhost {

/// The languages of findings that come with the program.
class FindingLanguages final {
public:
  /// Throws BadInput for a damaged file of words.
  FindingLanguages();

  /// Those of a language of two letters, else of the environment; English where there is none.
  [[nodiscard]] const circuits::FindingWords& words(std::string language) const;
  [[nodiscard]] std::vector<circuits::FindingWords> all() const;

private:
  std::map<std::string, circuits::FindingWords> languages_;
  circuits::FindingWords english_;
};

/// Names that programs rely on stay English.
[[nodiscard]] nlohmann::ordered_json findingsJson(
    std::vector<circuits::Finding> findings, const circuits::FindingWords& words);

/// To standard output, with a line of counts at the end.
void printFindings(circuits::CheckReport report, const circuits::FindingWords& words);

} // namespace simhost
