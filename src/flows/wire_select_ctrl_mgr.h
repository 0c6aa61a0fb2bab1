// Where the choices of a wire lookup come from and where they go: a motor's circuit, a load's circuit and a circuit that
// is placed in the drawing differ in nothing else.
#pragma once

#include "data/circuit_data.h"
#include "data/entity_records.h"
#include "data/wire_lookup.h"

#include <utility>

namespace brenvolt {

/// The handler that opens the dialog owns it; the dialog holds a reference.
class ZanDlgWireSelectBaseCtrlMgr {
public:
  /// `context` is the current circuit, which must outlive the manager.
  explicit ZanDlgWireSelectBaseCtrlMgr(CircuitContext& context) : context_(context) {}
  ZanDlgWireSelectBaseCtrlMgr(const ZanDlgWireSelectBaseCtrlMgr&) = delete;
  ZanDlgWireSelectBaseCtrlMgr& operator=(const ZanDlgWireSelectBaseCtrlMgr&) = delete;
  virtual ~ZanDlgWireSelectBaseCtrlMgr() = default;

  [[nodiscard]] virtual WireStart Start() const = 0;
  /// The fields are filled.
  virtual void Begun(const WireLookup& lookup);
  /// The user accepts the lookup.
  virtual void Store(const WireLookup& lookup) = 0;

protected:
  [[nodiscard]] const CircuitContext& context() const { return context_; }
  [[nodiscard]] CircuitContext& context() { return context_; }
  /// Keeps the fields as a motor's.
  void storeAsMotor(const WireLookup& lookup);

private:
  CircuitContext& context_;
};

/// A motor's circuit.
class ZanDlgWireSelectCtrlMgr final : public ZanDlgWireSelectBaseCtrlMgr {
public:
  using ZanDlgWireSelectBaseCtrlMgr::ZanDlgWireSelectBaseCtrlMgr;

  [[nodiscard]] WireStart Start() const override;
  /// Keeps a multiplier that came from the options for the next dialog.
  void Begun(const WireLookup& lookup) override;
  void Store(const WireLookup& lookup) override;
};

/// A load's circuit: multiplier and power factor are separate from a motor's.
class ZanDlgWireSelectPfCtrlMgr final : public ZanDlgWireSelectBaseCtrlMgr {
public:
  using ZanDlgWireSelectBaseCtrlMgr::ZanDlgWireSelectBaseCtrlMgr;

  [[nodiscard]] WireStart Start() const override;
  void Store(const WireLookup& lookup) override;
};

/// A circuit that is placed in the drawing.
class ZanDlgWireSelectEditWireSizeCtrlMgr final : public ZanDlgWireSelectBaseCtrlMgr {
public:
  ZanDlgWireSelectEditWireSizeCtrlMgr(CircuitContext& context, ZanCircParams record)
      : ZanDlgWireSelectBaseCtrlMgr(context), record_(std::move(record)) {}

  [[nodiscard]] WireStart Start() const override;
  void Store(const WireLookup& lookup) override;

private:
  ZanCircParams record_;
};

} // namespace brenvolt
