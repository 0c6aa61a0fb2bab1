// The lookups of parts that forms of column 10 name, called as the configuration dialog calls them, and the tables for
// which they give nothing: the site's LISP alone knows which tables exist.
#pragma once

#include "circuits/check/site_model.h"

#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace circuits {

class CheckSession;

/// What a group of parts holds when its lookup is called.
struct KnownPart {
  std::wstring table;
  std::wstring maker{};
  std::wstring number{};
  std::wstring assembly{};
};

/// The values that a lookup returns for the motor or load of the last build: manufacturer, catalogue number, assembly code
/// and what follows. Empty when it returns no part; nothing when the form asks for more than the part.
[[nodiscard]] std::optional<std::vector<std::wstring>> lookUpPart(
    CheckSession& session, const SheetForm& form, const KnownPart& known);

class PartLookups final {
public:
  PartLookups(const SiteModel& site, CheckSession& session) : site_(site), session_(session) {}

  /// Parts are those of the motor or load of a circuit: what another one has got is forgotten.
  void beginCircuit() { parts_.clear(); }
  /// What the form of a part gives for the table of a pair: manufacturer, catalogue number, assembly code, count, and what follows.
  /// Empty for nothing, and for a form that asks for more than the part.
  [[nodiscard]] const std::vector<std::wstring>& partOf(
      const SheetModel& sheet, const SheetCode& code, const SheetForm& form, const SheetPair& pair);

  /// Reports tables without a part of functions that give parts of others.
  void report(Findings& findings) const;

private:
  struct Asked {
    std::wstring table; ///< as it is written
    bool hasParts = false;
    std::map<std::pair<std::wstring, int>, FindingPlace> places{}; ///< by sheet and row
  };
  using ByTable = std::map<std::wstring, Asked>; ///< by name in upper case

  void note(
      const SheetModel& sheet, const SheetCode& code, const SheetForm& form, const SheetPair& pair,
      bool hasPart);

  const SiteModel& site_;
  CheckSession& session_;
  std::map<std::pair<std::wstring, std::wstring>, std::vector<std::wstring>> parts_; ///< by form and table
  std::map<std::wstring, ByTable> asked_; ///< by function in upper case
};

} // namespace circuits
