// The properties of entities by their names in LISP.
#pragma once

#include "simhost/drawing_lisp/drawer.h"

#include <optional>
#include <string_view>

namespace simhost {

/// The property's value; nothing when the entity's kind has no such property.
[[nodiscard]] std::optional<lisp::Value> propertyOf(
    const DrawingDatabase& drawing, const EntityNode& entity, std::wstring_view key);

enum class PropertyChange { done, unknown, readOnly };
/// Puts the argument at `position` into the entity's value; an argument of a wrong kind is the call's error.
[[nodiscard]] PropertyChange changeProperty(
    Entity& entity, std::wstring_view key, const lisp::Arguments& arguments, std::size_t position);

} // namespace simhost
