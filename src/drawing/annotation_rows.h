// The row type of the whole system: what a configuration page has produced for a marker (catalog part, motor, load and
// wire data) travels in these rows to the history file and, as nested lists, to the LISP forms of the workbook.
#pragma once

#include "host/result_list.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace brenvolt {

/// One typed value.
struct ZanAnnotationField {
  std::wstring value; ///< always a text, for any `type`
  std::uint32_t type = static_cast<std::uint32_t>(kvtype::string);
  std::wstring name;   ///< display label, may be empty
  bool hidden = false; ///< stays out of LISP lists

  friend bool operator==(const ZanAnnotationField&, const ZanAnnotationField&) = default;
};

/// The names that rows carry. A row's name decides the element under which the history stores it.
namespace rowname {
inline constexpr std::wstring_view catalog = L"Catalog";
inline constexpr std::wstring_view motorSetup = L"MotorSetup";
inline constexpr std::wstring_view loadSetup = L"LOADSetup";
inline constexpr std::wstring_view wireSetup = L"WireSetup";
inline constexpr std::wstring_view groundingWireSetup = L"GroundingWireSetup";
} // namespace rowname

/// A named list of fields.
class ZanAnnotationData {
public:
  ZanAnnotationData() = default;
  explicit ZanAnnotationData(std::wstring_view rowName) : name(rowName) {}
  ZanAnnotationData(const ZanAnnotationData&) = default;
  ZanAnnotationData(ZanAnnotationData&&) = default;
  ZanAnnotationData& operator=(const ZanAnnotationData&) = default;
  ZanAnnotationData& operator=(ZanAnnotationData&&) = default;
  virtual ~ZanAnnotationData() = default;

  [[nodiscard]] std::size_t Count() const { return fields.size(); }

  /// The fields that are not hidden as a LISP list; a row without any gives nil. A field of an unknown type fails the
  /// whole row: the handle is then empty.
  [[nodiscard]] ResultList ToLisp() const;

  /// Appends a field; `type` is a result buffer code.
  void Add(std::wstring_view value, std::int16_t type, std::wstring_view fieldName, bool hidden);
  /// Appends a visible string field.
  void AddText(std::wstring_view value, std::wstring_view fieldName);

  std::vector<ZanAnnotationField> fields;
  std::wstring name;

  friend bool operator==(const ZanAnnotationData&, const ZanAnnotationData&) = default;
};

/// A nested list of rows. Copies are deep.
class ZanAnnotationDataList {
public:
  /// Exactly one of the two is set.
  struct Item {
    std::unique_ptr<ZanAnnotationData> row;
    std::unique_ptr<ZanAnnotationDataList> list;
  };

  ZanAnnotationDataList() = default;
  ZanAnnotationDataList(const ZanAnnotationDataList& other) { Append(other); }
  ZanAnnotationDataList(ZanAnnotationDataList&&) = default;
  ZanAnnotationDataList& operator=(const ZanAnnotationDataList& other);
  ZanAnnotationDataList& operator=(ZanAnnotationDataList&&) = default;
  ~ZanAnnotationDataList() = default;

  [[nodiscard]] const std::vector<Item>& items() const { return items_; }
  [[nodiscard]] bool isEmpty() const { return items_.empty(); }
  [[nodiscard]] std::size_t size() const { return items_.size(); }

  /// The items in order as one LISP list; an empty list gives nil. A row that fails fails the whole: empty handle.
  [[nodiscard]] ResultList ToLisp() const;

  void AddRow(ZanAnnotationData row);
  void AddList(ZanAnnotationDataList list);
  /// A deep copy of one item of any list.
  void AddItem(const Item& item);
  void Clear() { items_.clear(); }
  void Assign(const ZanAnnotationDataList& other);
  /// Appends copies of the items of `other`; a list can be appended to itself.
  void Append(const ZanAnnotationDataList& other);

  friend bool operator==(const ZanAnnotationDataList& left, const ZanAnnotationDataList& right);

private:
  std::vector<Item> items_;
};

} // namespace brenvolt
