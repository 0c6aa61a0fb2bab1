// Values that a user may fix before a build for attributes of a circuit's components: rows of the workbook, by key.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace brenvolt {

struct ZanAnnotationPreset {
  bool enabled = false;   ///< the value is to be used
  std::wstring label;     ///< what the grid shows first
  std::wstring attribute; ///< the tag of the attribute that gets the value
  std::wstring description;
  std::wstring value;
  std::wstring extra; ///< passed through untouched
};

/// A value for an attribute as LISP gets it.
struct AnnotationRow {
  std::wstring label; ///< of the preset, or the CODE of the component that it comes from
  std::wstring attribute;
  std::wstring value;
  std::wstring extra;
};

/// The presets of a workbook. Edits stay until the workbook is read again.
class ZanAnnotationExList {
public:
  using Presets = std::vector<ZanAnnotationPreset>;

  ZanAnnotationExList() = default;
  ZanAnnotationExList(const ZanAnnotationExList&) = default;
  ZanAnnotationExList& operator=(const ZanAnnotationExList&) = default;
  virtual ~ZanAnnotationExList() = default;

  /// Takes one row of the sheet under a key. False when it is not used: fewer than six cells, all empty from the
  /// second on, or a label and attribute that the key already has, without case. A value switches the preset on.
  bool AddRow(std::wstring_view key, const std::vector<std::wstring>& cells);
  /// The presets of a key, compared exactly; null for an empty or unknown one.
  [[nodiscard]] Presets* Find(std::wstring_view key);
  void Clear() { presets_.clear(); }

private:
  std::map<std::wstring, Presets, std::less<>> presets_;
};

/// The presets that are switched on, in their order.
[[nodiscard]] std::vector<AnnotationRow> enabledRows(const ZanAnnotationExList::Presets& presets);

} // namespace brenvolt
