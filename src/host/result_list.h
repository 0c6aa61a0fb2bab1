// Safe handling of LISP lists. The host passes lists as raw chains of nodes; here are the handle that owns one, the
// builder that makes one, and the reader that walks one. No other folder accesses the nodes themselves.
#pragma once

#include "host/host_api_types.h"

#include <optional>
#include <string>
#include <string_view>

namespace brenvolt {

/// Owns a list and releases it. An empty handle is LISP's nil or "no result".
class ResultList final {
public:
  ResultList() = default;
  /// Takes the chain over; null is an empty handle.
  explicit ResultList(KvResultBuffer* chain) : chain_(chain) {}
  ResultList(const ResultList&) = delete;
  ResultList& operator=(const ResultList&) = delete;
  ResultList(ResultList&& other) noexcept : chain_(other.release()) {}
  ResultList& operator=(ResultList&& other) noexcept;
  ~ResultList() { reset(); }

  [[nodiscard]] bool isEmpty() const { return chain_ == nullptr; }
  /// The first node, for host functions that copy a chain; it stays owned here.
  [[nodiscard]] const KvResultBuffer* get() const { return chain_; }
  /// A deep copy.
  [[nodiscard]] ResultList clone() const;

  /// Gives the chain away; the handle is empty afterwards.
  [[nodiscard]] KvResultBuffer* release();
  /// Releases the chain now.
  void reset();
  /// Releases what is held and gives the place into which a host function puts a chain that the caller owns.
  [[nodiscard]] KvResultBuffer** receive();

private:
  KvResultBuffer* chain_ = nullptr;
};

/// Builds a list node by node; calls can be strung together. When the host refuses a node the builder has failed:
/// everything built is released, later calls do nothing, and `take` gives an empty handle.
class ListBuilder final {
public:
  ListBuilder() = default;
  ListBuilder(const ListBuilder&) = delete;
  ListBuilder& operator=(const ListBuilder&) = delete;

  /// Text up to its first null character.
  ListBuilder& addText(std::wstring_view text);
  ListBuilder& addReal(double value);
  ListBuilder& addShort(std::int16_t value);
  ListBuilder& addLong(std::int32_t value);
  ListBuilder& addNil();
  ListBuilder& addT();
  ListBuilder& addEntity(KvEntityName name);
  /// x and y of the point.
  ListBuilder& addPoint2d(const KvPoint3d& point);
  ListBuilder& addPoint3d(const KvPoint3d& point);
  ListBuilder& beginList();
  ListBuilder& endList();
  /// Links the nodes of a chain in at this place. An empty handle adds nothing.
  ListBuilder& splice(ResultList list);

  /// Returns the finished list. A list without its end is a fault of the caller and reported as one.
  [[nodiscard]] ResultList take();

private:
  KvResultBuffer* append(std::int16_t type);

  ResultList list_;
  KvResultBuffer* last_ = nullptr;
  int depth_ = 0;
  bool failed_ = false;
};

/// A cursor over a list. It is on an element or at an end; a nested list is one element until it is entered. The value
/// queries look at the element without moving. Any list can be walked, also one whose list marks do not
/// match: a list without an end stops at the last node, an end without a list stops the walk.
/// The list must outlive the reader. Readers are copied to keep a place.
class ListReader final {
public:
  explicit ListReader(const ResultList& list) : node_(list.get()) {}
  explicit ListReader(ResultList&&) = delete;

  /// No element is left in the list that the cursor is in.
  [[nodiscard]] bool atEnd() const;
  /// The element's type code; kvtype::none at the end.
  [[nodiscard]] std::int16_t type() const;
  [[nodiscard]] bool isList() const { return type() == kvtype::listBegin; }
  [[nodiscard]] bool isNil() const { return type() == kvtype::nil; }
  [[nodiscard]] bool isT() const { return type() == kvtype::t; }
  [[nodiscard]] bool isPoint() const { return type() == kvtype::point2d || type() == kvtype::point3d; }

  /// The element's value, nothing when it is of another type. A string node without a text counts as empty text.
  [[nodiscard]] std::optional<std::wstring> text() const;
  [[nodiscard]] std::optional<double> real() const;
  /// A 16-bit or a 32-bit integer.
  [[nodiscard]] std::optional<std::int32_t> integer() const;
  /// A 2D point (z is 0) or a 3D point.
  [[nodiscard]] std::optional<KvPoint3d> point() const;
  [[nodiscard]] std::optional<KvEntityName> entityName() const;
  /// Group nodes of entity data and settings (`type()` is the group code): the text of 1 to 4 and 1000 to 1002.
  [[nodiscard]] std::optional<std::wstring> groupText() const;
  /// The integer of the group codes 90 and 290.
  [[nodiscard]] std::optional<std::int32_t> groupInteger() const;

  /// Steps over the element. False when there was none, or a nested list had no end (the cursor is then at the end of
  /// the chain).
  bool skipElement();
  /// Steps into the nested list; false when the element is none.
  bool enterList();
  /// Moves past the end of the list last entered, whatever is left in it. False when no list is entered or it has no
  /// end.
  bool leaveList();
  /// A copy of the element, a nested list with its marks, and a step over it. Empty at the end and for a list without
  /// an end.
  [[nodiscard]] ResultList copyElement();

private:
  const KvResultBuffer* node_;
  int depth_ = 0;
};

} // namespace brenvolt
