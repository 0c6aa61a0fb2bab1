// A motor or a load of the site's tables with sized wires, and the saved configuration that brings it into a build.
#pragma once

#include "circuits/check/table_rules.h"
#include "circuits/check/template_set.h"
#include "project/entry_content.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace circuits {

enum class LoadKind { motor, load };

/// What a circuit needs to be built with.
struct LoadNeed {
  LoadKind kind = LoadKind::motor;
  std::wstring phases; ///< "1" or "3", by the conductors of the template
};
/// Nothing for a circuit without motor or load.
[[nodiscard]] std::optional<LoadNeed> loadNeedOf(const SheetModel& sheet, const TemplateDrawing& drawing);

/// The electrical code under which the site draws; null when its tables lack it.
[[nodiscard]] const ElectricalCode* codeOf(CheckSession& session, const std::vector<ElectricalCode>& codes);

struct SampleLoad {
  LoadKind kind = LoadKind::motor;
  std::vector<std::wstring> setup; ///< the fields of the motor or load, as a configuration keeps them
  std::wstring wireSize;           ///< without blanks; empty when the tables give none
  std::wstring groundSize;
  bool isRated = false; ///< the tables rate components of this type
};

/// The first one of the phase whose voltage is the options' default, else the first of the phase. Nothing when the tables
/// hold none.
/// @param database  the file of the engineering tables
[[nodiscard]] std::optional<SampleLoad> sampleLoad(
    const TableSet& tables, const ElectricalCode& electrical, const LoadNeed& need,
    const std::filesystem::path& database);
/// All of the phase, without sizes of wires: one of each current, the smallest first, and then the others, by which a
/// lookup may choose other parts.
[[nodiscard]] std::vector<SampleLoad> loadsToTry(
    const TableSet& tables, const ElectricalCode& electrical, const LoadNeed& need);

/// A wire position of a template with its layer.
struct SampleWire {
  bool isGround = false;
  std::wstring layer;
};

/// A motor or load marker of a template with the wires of its letter.
struct SampleControl {
  std::wstring code;
  std::vector<SampleWire> wires;
};

/// The choice of a group, for every marker of a CODE.
struct SampleChoice {
  std::wstring code;
  brenvolt::EntryOption option;
};

/// A part that the site's lookup gives for a table of a CODE.
struct SamplePart {
  std::wstring code;
  std::wstring table;
  std::wstring title;
  std::vector<std::wstring>
      values; ///< manufacturer, catalogue number, assembly code, count, and what follows

  [[nodiscard]] const std::wstring& number() const { return values[1]; }
};

/// The bytes of a file of saved configurations with one; with none when a text of the site does not fit into such a file.
/// @param load  null for a circuit without motor or load
[[nodiscard]] std::string savedSample(
    const SampleLoad* load, const std::vector<SampleControl>& controls,
    const std::vector<SampleChoice>& choices, const std::vector<SamplePart>& parts,
    const brenvolt::HistoryKey& key);

} // namespace circuits
