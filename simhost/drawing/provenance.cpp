// Between entity data and what it says.
#include "simhost/drawing/provenance.h"

#include "text/numbers.h"

namespace simhost {

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

} // namespace simhost
