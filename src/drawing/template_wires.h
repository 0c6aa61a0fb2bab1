// The wire positions of all templates that one circuit has inserted into the drawing, each with its run: undoing a run
// removes its positions.
#pragma once

#include "drawing/wire_formatter.h"

#include <cstdint>
#include <vector>

namespace brenvolt {

/// Two templates may have the same position, which is its code, suffix included.
enum class SamePosition {
  eachCounts,   ///< the entries of all templates
  latestCounts, ///< those of the template that came last
};

class TemplateWires final {
public:
  [[nodiscard]] bool isEmpty() const { return templates_.empty(); }
  [[nodiscard]] ZanWireFormatter formats(SamePosition rule) const;

  /// Adds what a scan found. A scan without a wire position changes nothing.
  void add(std::int32_t run, ZanWireFormatter formats);
  /// Removes what an undone run added; a run of 0 or below is the circuit's own template and stays.
  void takeBack(std::int32_t run);
  /// A run becomes part of the one before it.
  void joinRun(std::int32_t run, std::int32_t former);

private:
  struct Template {
    std::int32_t run;
    ZanWireFormatter formats;
  };
  std::vector<Template> templates_; ///< in the order of their scans
};

} // namespace brenvolt
