// Writes the origin of a circuit's entities into the drawing. While `zan_bv_build_circuit` runs, the entities of each
// LISP function that native code calls get the mark of the current marker; those of the template are marked when the
// build has succeeded, and the drawing then stores the input of the circuit. The LISP of a site does nothing for
// it.
#pragma once

#include "simhost/drawing/drawing_database.h"
#include "simhost/lisp/value.h"

#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace simhost {

class Session;

class CircuitRecorder final {
public:
  explicit CircuitRecorder(Session& session) : session_(session) {}
  CircuitRecorder(const CircuitRecorder&) = delete;
  CircuitRecorder& operator=(const CircuitRecorder&) = delete;

  /// The function of the plug-in whose calls are builds.
  static constexpr std::wstring_view buildFunction = L"zan_bv_build_circuit";

  /// The next build continues the circuit with this id instead of beginning one.
  void continueCircuit(std::wstring id) { continued_ = std::move(id); }

  /// The id of the circuit that a build draws now; empty outside of a build.
  [[nodiscard]] std::wstring current() const { return circuit_ ? circuit_->id : std::wstring(); }

  /// Keeps of each circuit that was built since the last call how it looks, to recognise later changes by hand. Called
  /// at the end of an evaluation: what a site's LISP does after a build is not such a change.
  void sealBuilt();

  /// One build. One inside of another draws for the circuit of the outer one.
  class Build final {
  public:
    Build(CircuitRecorder& recorder, std::span<const lisp::Value> arguments);
    Build(const Build&) = delete;
    Build& operator=(const Build&) = delete;
    ~Build();

    /// The build has returned a circuit.
    void succeed();

  private:
    CircuitRecorder& recorder_;
    bool isOuter_ = false;
  };

  /// One call of LISP by native code; outside of a build it does nothing.
  class Form final {
  public:
    Form(CircuitRecorder& recorder, std::wstring_view function, std::span<const lisp::Value> arguments);
    Form(const Form&) = delete;
    Form& operator=(const Form&) = delete;
    ~Form();

  private:
    CircuitRecorder& recorder_;
    DrawingDatabase* drawing_ = nullptr; ///< null outside of a build
    std::optional<Provenance> former_;
    std::wstring marker_; ///< that the form draws for
  };

private:
  /// The circuit that a build draws.
  struct Circuit {
    KvDbObjectId space;
    KvDbHandle before; ///< the last entity that was there before the template; null for none
    std::wstring id;
    CircuitFields fields;
    std::map<std::wstring, int> orders; ///< by marker, the last that was given
    std::uint64_t replays = 0;          ///< of the undo log, when `orders` was right
    lisp::Value handles;                ///< of the markers, from LISP when the current marker was found
    std::int32_t number = -1;           ///< of the marker among them
    std::wstring marker;                ///< its handle; empty for none
    std::wstring code;
  };

  void begin(DrawingDatabase& drawing, std::span<const lisp::Value> arguments);
  void finish(DrawingDatabase& drawing);
  [[nodiscard]] const EntityNode* firstOf(const DrawingDatabase& drawing) const;
  [[nodiscard]] Provenance stampNow(const DrawingDatabase& drawing);
  void findMarker(const DrawingDatabase& drawing);

  Session& session_;
  std::optional<Circuit> circuit_;
  std::wstring continued_;
  std::vector<std::pair<KvDbObjectId, std::wstring>>
      built_; ///< circuits without a seal yet, with their space
};

} // namespace simhost
