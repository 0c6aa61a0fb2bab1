// Between entity data and what it says.
#include "simhost/drawing/provenance.h"

#include "text/numbers.h"
#include "text/plain_number.h"
#include "text/split.h"

namespace simhost {

namespace {

/// A circuit moved there and back can be at 5.7e-14.
std::optional<double> coordinate(std::wstring_view text) {
  const std::size_t exponent = text.find(L'e');
  const bool isNumber =
      brenvolt::plainNumber(text.substr(0, exponent)) &&
      (exponent == std::wstring_view::npos || brenvolt::plainInteger(text.substr(exponent + 1)));
  return isNumber ? std::optional(brenvolt::toDouble(text)) : std::nullopt;
}

} // namespace

std::optional<Provenance> provenanceOf(const Entity& entity) {
  const std::vector<std::wstring>* texts = findData(entity, provenanceApplication);
  if (texts == nullptr || (texts->size() != 1 && texts->size() != 3)) return std::nullopt;
  if (texts->size() == 1) return Provenance{texts->front()};
  return Provenance{(*texts)[0], (*texts)[1], brenvolt::toInt((*texts)[2])};
}

void setProvenance(Entity& entity, const Provenance& provenance) {
  std::vector<std::wstring> texts{provenance.circuit};
  if (!provenance.code.empty()) {
    texts.push_back(provenance.code);
    texts.push_back(brenvolt::formatInt(provenance.order));
  }
  setData(entity, provenanceApplication, std::move(texts));
}

std::wstring circuitField(const CircuitFields& fields, std::wstring_view name) {
  for (const auto& [known, text] : fields)
    if (known == name) return text;
  return {};
}

std::optional<KvPoint3d> circuitPoint(const CircuitFields& fields) {
  const std::vector<std::wstring> parts = brenvolt::splitKeepingEmpty(circuitField(fields, L"point"), L',');
  if (parts.size() < 2) return std::nullopt;
  const std::optional<double> x = coordinate(parts[0]);
  const std::optional<double> y = coordinate(parts[1]);
  return x && y ? std::optional(KvPoint3d{*x, *y, 0.0}) : std::nullopt;
}

} // namespace simhost
