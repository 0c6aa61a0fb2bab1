// Reads a JSON object field by field, with messages that name the place; an unread field is an error, so that a
// misspelt field is not lost silently.
#pragma once

#include "simhost/drawing/entity.h"

#include <nlohmann/json_fwd.hpp>

#include <optional>
#include <set>
#include <string>
#include <string_view>

namespace simhost {

/// A damaged drawing file; the text names the place and the reason.
struct DrawingFileError final {
  std::wstring text;
};

using Json = nlohmann::ordered_json;

class JsonFields final {
public:
  /// `place` opens every message. The object must outlive this; anything but an object is an error.
  JsonFields(const Json& object, std::wstring place);

  [[nodiscard]] const std::wstring& place() const { return place_; }
  /// Adds to the place once it is known better.
  void setPlace(std::wstring place) { place_ = std::move(place); }
  [[noreturn]] void fail(std::wstring_view reason) const;

  [[nodiscard]] const Json* find(const char* name);
  [[nodiscard]] const Json& get(const char* name);
  [[nodiscard]] const Json& array(const char* name);

  [[nodiscard]] std::wstring text(const char* name);
  [[nodiscard]] std::wstring text(const char* name, std::wstring_view usual);
  [[nodiscard]] double real(const char* name);
  [[nodiscard]] double real(const char* name, double usual);
  [[nodiscard]] bool flag(const char* name, bool usual);
  [[nodiscard]] KvPoint3d point(const char* name);
  [[nodiscard]] KvPoint3d pointOf(const Json& value, const char* name) const;
  [[nodiscard]] std::wstring textOf(const Json& value, const char* name) const;

  /// Reports the first field that was not read.
  void finish() const;

private:
  [[noreturn]] void failField(const char* name, std::wstring_view expectation) const;

  const Json& object_;
  std::wstring place_;
  std::set<std::string_view> asked_;
};

} // namespace simhost
