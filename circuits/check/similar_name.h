// The name that somebody probably meant, as findings say it.
#pragma once

#include "text/similar_name.h"

#include <string>

namespace circuits {

using brenvolt::nameDistance;
using brenvolt::similarName;

/// The end of a sentence: "; did you mean NAME?", a full stop without a name.
[[nodiscard]] std::wstring didYouMean(const std::wstring& name);

} // namespace circuits
