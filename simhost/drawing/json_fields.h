// Reads a JSON object field by field, with messages that name the place; an unread field is an error, so that a
// misspelt field is not lost silently.
#pragma once

#include "simhost/drawing/drawing_database.h"
#include "simhost/json/json_tree.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace simhost {

/// A damaged drawing file; the text names the place and the reason.
struct DrawingFileError final {
  std::wstring text;
};

/// Where in a file something is; made into words only for a message. The parent and the name must outlive it.
struct JsonPlace final {
  std::wstring_view word;   ///< "layer"
  std::int64_t number = 0;  ///< as the user counts; 0 for none
  std::wstring_view name{}; ///< known instead of the number
  KvDbHandle handle{};      ///< likewise
  const JsonPlace* in = nullptr;

  [[nodiscard]] std::wstring text() const;
};

class JsonFields final {
public:
  /// `place` opens every message. The object must outlive this; anything but an object is an error.
  JsonFields(const JsonNode& object, JsonPlace place);

  [[nodiscard]] const JsonPlace& place() const { return place_; }
  /// Adds to the place once it is known better.
  void setPlace(JsonPlace place) { place_ = place; }
  [[noreturn]] void fail(std::wstring_view reason) const;
  /// Fails with the fault, if it is one.
  void check(const Fault& fault) const {
    if (fault) fail(*fault);
  }

  [[nodiscard]] const JsonNode* find(std::string_view name);
  [[nodiscard]] const JsonNode& get(std::string_view name);
  [[nodiscard]] const JsonNode& array(std::string_view name);

  [[nodiscard]] std::wstring text(std::string_view name);
  [[nodiscard]] std::wstring text(std::string_view name, std::wstring_view usual);
  [[nodiscard]] double real(std::string_view name);
  [[nodiscard]] double real(std::string_view name, double usual);
  [[nodiscard]] bool flag(std::string_view name, bool usual);
  [[nodiscard]] KvPoint3d point(std::string_view name);
  [[nodiscard]] KvPoint3d pointOf(const JsonNode& value, std::string_view name) const;
  [[nodiscard]] std::wstring textOf(const JsonNode& value, std::string_view name) const;

  /// Reports the first field that was not read.
  void finish() const;

private:
  [[noreturn]] void failField(std::string_view name, std::wstring_view expectation) const;

  /// One of the object's, and its bit in `asked_`.
  struct Field {
    const JsonNode* item = nullptr;
    std::uint64_t bit = 1;
    [[nodiscard]] Field next() const { return {item->next, bit << 1U}; }
  };

  const JsonNode& object_;
  JsonPlace place_;
  Field next_;              ///< after the one that was asked for last
  std::uint64_t asked_ = 0; ///< a bit for each of the first fields that was asked for
};

} // namespace simhost
