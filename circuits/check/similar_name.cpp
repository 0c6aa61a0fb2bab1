#include "circuits/check/similar_name.h"

namespace circuits {

std::wstring didYouMean(const std::wstring& name) {
  return name.empty() ? std::wstring(L".") : L"; did you mean " + name + L"?";
}

} // namespace circuits
