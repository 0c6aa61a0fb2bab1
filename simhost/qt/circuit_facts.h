// What the site of the main window knows of the circuits that a dialog offers, beside what the dialog's flow puts into
// its controls: it is for looking, and changes nothing of what the dialog returns.
#pragma once

#include <QString>
#include <QStringList>

#include <functional>
#include <string>

class QWidget;

namespace simhost {

/// A type of a circuit, as the circuit selection names it, with a saved configuration or without.
struct OfferedCircuit {
  std::wstring circuit;
  std::wstring type;
  std::wstring configuration; ///< empty for the default choices

  friend bool operator==(const OfferedCircuit&, const OfferedCircuit&) = default;
};

class CircuitFacts {
public:
  CircuitFacts() = default;
  CircuitFacts(const CircuitFacts&) = delete;
  CircuitFacts& operator=(const CircuitFacts&) = delete;
  virtual ~CircuitFacts();

  struct Picture {
    enum class State { made, making, failed };
    State state = State::failed;
    std::wstring drawing; ///< a file, once it is made
    QString note;         ///< what to show instead
  };
  /// The finished circuit as a drawing. When it is not made yet, that begins now, in place of one that is being made, and
  /// `ready` is called when asking again is of use.
  [[nodiscard]] virtual Picture picture(const OfferedCircuit& circuit, std::function<void()> ready) = 0;
  /// Whether a picture is asked for and not made yet.
  [[nodiscard]] virtual bool isMaking() const = 0;
  /// Nobody waits for a picture any more.
  virtual void forgetPicture() = 0;

  /// With which options of groups above a group of options is of use, by the titles of its unit and its own; empty for
  /// always.
  [[nodiscard]] virtual QStringList onlyWith(
      const OfferedCircuit& circuit, const QString& unit, const QString& group) = 0;

  /// How many phases the circuit has that a build draws now, as tables write it; empty where that is not known.
  [[nodiscard]] virtual QString phase() = 0;

  /// What the unit that the configuration dialog shows has drawn: a line for each component with its rating and part.
  /// Empty while the unit is not inserted.
  [[nodiscard]] virtual QString drawnByUnit() = 0;
  /// What it has drawn for a group of parts, in the order of the group's rows; empty for nothing.
  [[nodiscard]] virtual QStringList drawnInGroup(const OfferedCircuit& circuit, const QString& group) = 0;

  /// The names of the saved configurations of a type.
  [[nodiscard]] virtual QStringList configurations(const OfferedCircuit& circuit) = 0;
  /// Lets the user choose one of them in a table of their data; empty for none.
  [[nodiscard]] virtual QString chooseConfiguration(const OfferedCircuit& circuit, QWidget* parent) = 0;
};

} // namespace simhost
