// From the rows of a motor list to what a direct build takes: circuit and options looked up in the workbook, motor or
// load in the tables, wires as the wire lookup proposes them.
#pragma once

#include "circuits/set/set_list.h"
#include "project/entry_content.h"
#include "simhost/site/engineering_run.h"
#include "simhost/site/wire_fields.h"

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace circuits {

/// The choices of a CODE.
using SetOption = brenvolt::EntryOption;
using SetOptionsOfCode = std::pair<std::wstring, std::vector<SetOption>>;

/// One circuit, ready to build.
struct SetCircuit {
  std::size_t row = 0;    ///< of the list, as the user counts
  std::size_t number = 0; ///< of the circuit in the set, from 1
  std::wstring tag;
  std::wstring name; ///< of its own configuration
  std::wstring drawingTemplate;
  std::wstring worksheet;
  std::wstring circuit;
  std::wstring type;
  std::wstring configuration; ///< saved one to start from; empty for none
  std::wstring preset;        ///< of one that starts from a configuration: choices beside it
  bool isMotor = false;
  std::vector<std::wstring>
      data{}; ///< of the motor or load, in the order of `loadSetupNames`; empty without one
  std::wstring wireSize;
  std::wstring groundSize;
  /// Sizes that the designer fixed, between ";": one for each motor or load in drawing order, the last one also for all
  /// that follow. An empty one is proposed by the tables.
  std::wstring fixedSizes{};
  int conductors = 0;
  std::vector<SetOptionsOfCode> controls{}; ///< the CODEs that ask for the motor or load
  std::vector<SetOptionsOfCode> options{};  ///< what the list chooses
  std::wstring standardCode;
  std::wstring length; ///< with its unit
  std::wstring raceway;
  std::wstring ambient;
  std::wstring sizing; ///< "build" for the sizes of an unattended build
  std::wstring drop;   ///< of voltage in its wires, in percent; empty where no length is known
  std::wstring installation;
  std::wstring location;
  std::vector<std::wstring> descriptions;
  double scale = 1.0;          ///< of the circuit
  double componentScale = 1.0; ///< of its symbols and texts

  /// All of it as one text, for a part that is kept until something of it changes.
  [[nodiscard]] std::wstring fingerprint() const;
};

struct SetSettings {
  std::string site;
  std::string workbook; ///< full path
  std::string standardCode = simhost::assumedStandard;
  /// Which wire size is taken: that which the lookup proposes, or that which a build takes unattended.
  enum class Sizing { lookup, build } sizing = Sizing::lookup;
  /// How the wires of each row's motor or load are chosen, beside what the row says; empty for the site's options.
  simhost::WireTexts wires{};
  double scale = 1.0; ///< of circuits and their components
  /// Runs already, so that tables are read in it; null for a session of the resolver's own.
  simhost::Session* running = nullptr;
};

/// The circuits of all good rows; what is wrong with the others joins the faults of the list, and what needs a look in the
/// good ones its findings.
[[nodiscard]] std::vector<SetCircuit> resolveRows(const SetSettings& settings, SetList& list);

} // namespace circuits
