// A set on its way: what the user asked for, the list with its circuits, and the folder that they go into.
#pragma once

#include "circuits/building/circuit_parts.h"
#include "circuits/set/set_list.h"
#include "simhost/cli/site_options.h"

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace simhost {

/// Of the file set.json.
inline constexpr const char* setFormat = "brenvolt-set";

struct SetOptions {
  std::string list;
  SiteWorkbookOptions site;
  std::string out;
  std::string standardCode = assumedStandard;
  std::string frame = "A3";
  std::string mapping;
  std::string title;
  std::string date;
  std::string revision;
  std::string drawnBy;
  std::string jobs;
  std::string shard;
  std::string sizing = "lookup";
  std::string order = "list";
  std::string scale = "1";
  bool replacesChanged = false;
  bool keepsGoing = false;
  std::string module;
};

/// A list, the circuits of its good rows, and where their parts lie.
struct SetPlan {
  circuits::SetList list;
  std::vector<circuits::SetCircuit> circuits;
  std::unique_ptr<circuits::SetParts> parts;
  circuits::SetSettings settings;
};

/// Reads list and mapping and looks all rows up; notes go to standard error. Throws BadInput with all faults, unless
/// the good rows are to be built.
[[nodiscard]] SetPlan planSet(const SetOptions& options);
[[nodiscard]] std::string faultsText(const circuits::SetList& list);

/// A folder of something else is not built into. Throws CannotWrite.
void needSetFolder(const std::filesystem::path& folder);
/// What was changed in the set since it was made is not built over unless that is asked for. Throws CannotWrite.
void needUnchangedSet(const SetOptions& options);

} // namespace simhost
