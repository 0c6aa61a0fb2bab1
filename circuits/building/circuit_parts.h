// Building the circuits of a set, each in a drawing of its own, in several processes. What one builds does not hang on
// which process builds it, so the parts are the same bytes whatever their number.
#pragma once

#include "circuits/building/circuit_rows.h"
#include "circuits/netlist/netlist.h"
#include "simhost/site/site_run.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace circuits {

/// Where the circuit's part lies: its name is made from all that it was made from, so one that exists is right.
class SetParts final {
public:
  /// `basis`: whatever else a part depends on, such as the site's files.
  SetParts(std::filesystem::path folder, std::string basis)
      : folder_(std::move(folder)), basis_(std::move(basis)) {}
  [[nodiscard]] std::filesystem::path drawingOf(const SetCircuit& circuit) const;
  /// What placing needs to know of it, and how long the drawing is and its digest. It is written last.
  [[nodiscard]] std::filesystem::path outlineOf(const SetCircuit& circuit) const;
  /// Whether both are there and whole, as far as can be said without reading the drawing.
  [[nodiscard]] bool have(const SetCircuit& circuit) const;
  /// Throws BadInput for a part that is missing or is not as it was written: a power failure can shorten one.
  [[nodiscard]] std::string readDrawing(const SetCircuit& circuit) const;
  [[nodiscard]] const std::filesystem::path& folder() const { return folder_; }

private:
  std::filesystem::path folder_;
  std::string basis_;
};

/// The CODEs under which labels of nets are marked, and symbols where wires go on.
inline constexpr std::wstring_view labelCode = L"LABEL";
inline constexpr std::wstring_view lineEndCode = L"SUPPLY";
/// Has the site's LISP draw where the wires of a circuit go on, and number and label its nets. Throws BadInput when it
/// fails.
void labelNets(
    simhost::SiteRun& site, simhost::DrawingDatabase& drawing, const Netlist& netlist,
    const std::wstring& circuit);

/// Has the drawing keep of the circuit what the list says beside what its build left.
void keepRow(
    simhost::DrawingDatabase& drawing, const std::wstring& id, const SetCircuit& circuit,
    const std::wstring& tag);

/// The LISP that draws one circuit at the point; its answer is that of the build.
enum class BuildWay { direct, withDialog };
[[nodiscard]] std::wstring buildForm(
    const SetCircuit& circuit, const std::string& workbook, const KvPoint3d& at,
    BuildWay way = BuildWay::direct);

/// A text of 16 hexadecimal digits for bytes that come piece by piece.
class ByteDigest final {
public:
  void add(std::string_view bytes);
  [[nodiscard]] std::string text() const;

private:
  std::uint64_t hash_ = 14695981039346656037U; // FNV-1a, 64 bits: names, no secrets
};
/// The same for bytes that are there as a whole.
[[nodiscard]] std::string digestOf(std::string_view bytes);
/// What of a site a built circuit depends on: its LISP, workbook, tables, templates, blocks and saved configurations.
[[nodiscard]] std::string siteDigest(const std::string& site);

struct PartFailure {
  std::size_t circuit = 0; ///< its place in the list
  std::string reason;
};

struct PartOptions {
  SetSettings settings;
  std::string module;
  std::string language;
  int jobs = 1;
  bool keepsGoing = false;
  std::function<void(std::size_t done, std::size_t all)> progress; ///< may be empty
};

/// The one question of a build without dialogs: whether tables of another code shall size the components. From now on
/// they do not, however often a build asks: what has no figure of its own code is reported.
void refuseForeignTables(simhost::Session& session);

/// Builds the parts that are missing. Without `keepsGoing` nothing more is begun after a failure. Throws CannotWrite
/// when a process cannot be made or ends by itself.
[[nodiscard]] std::vector<PartFailure> buildParts(
    const std::vector<SetCircuit>& circuits, const std::vector<std::size_t>& wanted, const SetParts& parts,
    const PartOptions& options);

} // namespace circuits
