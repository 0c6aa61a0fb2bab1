// The rules for every value in a drawing, from any source: a LISP call, a file, another drawing.
#pragma once

#include "simhost/drawing/entity.h"

#include <optional>
#include <string>
#include <string_view>

namespace simhost {

/// Why the value is not possible, as a sentence without a full stop; nothing when it is.
[[nodiscard]] std::optional<std::wstring> numberFault(double value);
[[nodiscard]] std::optional<std::wstring> pointFault(const KvPoint3d& point);
/// `what` opens the sentence: "a layer's name".
[[nodiscard]] std::optional<std::wstring> nameFault(std::wstring_view what, std::wstring_view name);
/// The shape's own rules, those of its layer name and of its entity data. Whether a referenced block exists is the
/// database's question.
[[nodiscard]] std::optional<std::wstring> shapeFault(const Entity& entity);

} // namespace simhost
