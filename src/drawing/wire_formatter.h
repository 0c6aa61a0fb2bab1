// The wire positions that a template declares with its WT markers: which layer name pattern and which wire numbering
// belong to each. The configuration grid and the build ask here which positions exist and which layer follows from a
// wire size.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brenvolt {

/// One wire position of a template.
struct WireFormat {
  std::wstring pattern; ///< host wildcard for layer names, "*" when the template names none
  std::wstring numbers; ///< "1": the wires carry numbers, "0": they do not

  friend bool operator==(const WireFormat&, const WireFormat&) = default;
};

/// The sizes that a circuit's wires have, without blanks: "10AWG".
struct WireSizes {
  std::wstring conductors;
  std::wstring grounding;
};

/// The text of a code from its last "-" on, the dash included; empty without a dash.
[[nodiscard]] std::wstring wireSuffix(std::wstring_view code);

/// "WT01" to "WT09", then "WT10"; `suffix` with its dash follows the number.
[[nodiscard]] std::wstring wireCode(int number, std::wstring_view suffix);
/// "WT01E"; the zero stays from ten on ("WT010E"), as the grid counts its grounding rows. `suffix` follows the "E".
/// The wires of a preset are counted differently: `wireCode(number, "E" + suffix)`, "WT10E".
[[nodiscard]] std::wstring groundCode(int number, std::wstring_view suffix);

class ZanWireFormatter {
public:
  /// Sorted by the first text, case-sensitive and ordinal; equal ones in the order of their coming.
  using Entries = std::multimap<std::wstring, std::wstring>;

  ZanWireFormatter() = default;
  ZanWireFormatter(const ZanWireFormatter&) = default;
  ZanWireFormatter(ZanWireFormatter&&) = default;
  ZanWireFormatter& operator=(const ZanWireFormatter&) = default;
  ZanWireFormatter& operator=(ZanWireFormatter&&) = default;
  virtual ~ZanWireFormatter() = default;

  /// Layer name format, empty when the marker gives none -> marker code.
  [[nodiscard]] const Entries& types() const { return types_; }
  /// "1", "0", or empty when the marker has no setting -> marker code.
  [[nodiscard]] const Entries& numbers() const { return numbers_; }

  /// Whether a code is a grounding position: it matches "WT*E*", an "E" anywhere after the letters.
  [[nodiscard]] static bool IsGroundCode(std::wstring_view code);

  /// Pattern and numbering of a position; an unknown code has "*" and "1".
  [[nodiscard]] WireFormat GetWireFormat(std::wstring_view code) const;

  /// All layer names that can be built from the sizes of a circuit, sorted for a reader, that of `code` before all
  /// others. Nothing when no position has this code; no names when no position has a format.
  [[nodiscard]] std::optional<std::vector<std::wstring>> GetLayerNames(
      const WireSizes& sizes, std::wstring_view code) const;

  /// All grounding codes with any suffix, in ordinal order; a code with several entries is repeated.
  [[nodiscard]] std::vector<std::wstring> GetGroundCodes() const;
  /// The codes of one suffix ("-A"); an empty suffix selects codes without a dash.
  [[nodiscard]] std::vector<std::wstring> GetGroundCodes(std::wstring_view suffix) const;
  [[nodiscard]] std::vector<std::wstring> GetWireCodes(std::wstring_view suffix) const;

  /// Reads the settings "_WIRETYPE=" and "_WIRENUMBERS=" of one marker.
  void AddMarker(std::wstring_view code, std::wstring_view misc1);
  /// Enters one pair unchanged.
  void AddWireType(std::wstring_view format, std::wstring_view code);
  void AddWireNumbers(std::wstring_view value, std::wstring_view code);
  /// Adds all entries of `other`. Nothing is compared: scanning a template twice leaves each entry twice.
  void Merge(const ZanWireFormatter& other);

private:
  Entries types_;
  Entries numbers_;
};

} // namespace brenvolt
