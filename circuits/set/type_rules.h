// Rules that give a row its type by what it says of the load: "hp <= 10 -> Direct on line". They stand in the mapping
// file of a firm's lists and count where a row names no type.
#pragma once

#include "circuits/set/set_list.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace circuits {

class TypeRule final {
public:
  /// CONDITION [and CONDITION ...] -> [CIRCUIT /] TYPE, a condition being FIELD and one of < <= > >= = and a value; FIELD is a column
  /// of the list, or hp, kw, kva, w for the load in these units. The reason of a fault goes to `fault`.
  [[nodiscard]] static std::optional<TypeRule> parse(std::wstring_view text, std::wstring& fault);

  [[nodiscard]] bool fits(const SetRow& row) const;
  [[nodiscard]] const std::wstring& circuit() const { return circuit_; } ///< empty: that of the row
  [[nodiscard]] const std::wstring& type() const { return type_; }

private:
  enum class Comparison { less, lessOrEqual, more, greaterOrEqual, equal };
  struct Condition {
    SetField field;
    std::wstring units; ///< that the row's load must have; empty for any
    Comparison comparison;
    std::wstring value;
  };

  std::vector<Condition> conditions_;
  std::wstring circuit_;
  std::wstring type_;
};

/// Gives the rows without a type that of the first rule that fits; a row that none fits is a fault.
void applyTypeRules(SetList& list, const std::vector<TypeRule>& rules);

} // namespace circuits
