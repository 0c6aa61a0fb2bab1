// Selects the motor or load of the current circuit. A circuit may have several: each page keeps its own ratings and
// wire choices, and only those of the active page are the current circuit, where LISP and the lookups find them.
#pragma once

#include "data/circuit_data.h"

namespace brenvolt {

class ZanWidgetManagerMcc;

class CircuitInHand final {
public:
  /// The values of one manager while another one's record is current.
  struct Record {
    ZanWidgetManagerMcc* manager = nullptr;
    CircuitContext kept;
  };

  /// `shared` is the current circuit; each manager begins with its present contents.
  explicit CircuitInHand(CircuitContext& shared) : shared_(shared), start_(shared) {}
  CircuitInHand(const CircuitInHand&) = delete;
  CircuitInHand& operator=(const CircuitInHand&) = delete;

  [[nodiscard]] Record begin(ZanWidgetManagerMcc& manager) const { return {&manager, start_}; }
  /// The manager whose record is current; null before the first one takes it.
  [[nodiscard]] ZanWidgetManagerMcc* current() const { return owner_ == nullptr ? nullptr : owner_->manager; }
  [[nodiscard]] const CircuitContext& of(const Record& record) const {
    return owner_ == &record ? shared_ : record.kept;
  }
  [[nodiscard]] CircuitContext& of(Record& record) { return owner_ == &record ? shared_ : record.kept; }

  /// Makes a manager's record the current circuit; the previous manager keeps its values.
  CircuitContext& take(Record& record) {
    if (owner_ == &record) return shared_;
    if (owner_ != nullptr) owner_->kept = shared_;
    shared_ = record.kept;
    owner_ = &record;
    return shared_;
  }
  /// The record is about to die.
  void forget(const Record& record) {
    if (owner_ == &record) owner_ = nullptr;
  }

private:
  CircuitContext& shared_;
  const CircuitContext start_;
  Record* owner_ = nullptr;
};

} // namespace brenvolt
