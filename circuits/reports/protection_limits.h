// Whether the breakers and fuses of a drawing are above the limit for the conductors behind them.
#pragma once

#include "circuits/reports/drawing_reports.h"

#include <cstddef>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace circuits {

/// Motors and loads are fed by a circuit; they are not ordered by its parts list.
[[nodiscard]] bool isFed(const Device& device);

/// What protects a motor or load: "CB-H1 20A (14AWG: 15A at most)", "FU1 100A (feeder 10AWG: 49A at most)".
struct Protection {
  std::wstring text{};
  bool isAboveConductors = false; ///< small conductors: NEC 240.4(D)
  std::wstring
      feeder{}; ///< part of the text: above the limit of a feeder, or one that is not known, NEC 430.62
};

class Protections final {
public:
  /// The sheet must outlive it.
  explicit Protections(const Sheet& sheet);

  /// The protections of the circuit of a motor or load. One whose rating is not known is named all the same: an empty cell
  /// would say that nothing protects.
  [[nodiscard]] Protection of(const Device& fed) const;

private:
  /// A protection with those of several branches behind it.
  struct Feeder {
    std::wstring size{}; ///< of its conductors
    std::set<std::size_t> branches{};
    wchar_t loadSide = L'0';
  };

  [[nodiscard]] bool isProtection(std::size_t device) const;
  /// What the motors of a feeder ask of it, in A.
  struct FeederLoad {
    double highestRating = 0.0; ///< of its protection
    double leastAmpacity = 0.0;
  };

  [[nodiscard]] std::wstring feederFault(std::size_t device, const Device& fed) const;
  [[nodiscard]] std::optional<Feeder> feederOf(std::size_t device) const;
  [[nodiscard]] std::optional<FeederLoad> loadOf(const Feeder& feeder) const;
  [[nodiscard]] std::set<std::size_t> fedBehind(std::size_t device, wchar_t loadSide) const;

  const Netlist& list_;
  std::vector<std::vector<std::size_t>> pins_; ///< by device
};

/// What a build adds to a drawing, which can hold other circuits, in breakers and fuses above their limit.
class NewProtectionFaults final {
public:
  /// Those that the drawing has now are not new. It must outlive this.
  explicit NewProtectionFaults(const simhost::DrawingDatabase& drawing);

  /// A text for each load and for each feeder, with what to do.
  [[nodiscard]] std::vector<std::wstring> texts() const;

private:
  const simhost::DrawingDatabase& drawing_;
  std::vector<std::wstring> former_;
};

} // namespace circuits
