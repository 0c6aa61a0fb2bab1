// Finding it, and what to say when that fails.
#include "simhost/cli/circuit_choice.h"

#include "simhost/host/errors.h"
#include "text/encoding.h"

namespace simhost {

using circuits::CircuitObject;

const CircuitObject& chosenCircuit(
    const std::vector<CircuitObject>& circuits, const char* option, const std::string& name,
    const std::string& drawing) {
  const std::vector<const CircuitObject*> found = circuits::findCircuits(circuits, brenvolt::fromUtf8(name));
  if (found.size() == 1) return *found.front();
  std::string ids;
  for (const CircuitObject* one : found)
    ids += (ids.empty() ? "" : ", ") + brenvolt::toUtf8(one->id);
  const std::string place = std::string(option) + ": " + drawing;
  if (found.empty())
    throw BadInput(place + " has no circuit \"" + name + "\": see brenvolt circuits " + drawing);
  throw BadInput(place + " has several circuits \"" + name + "\": name one by its id, " + ids);
}

} // namespace simhost
