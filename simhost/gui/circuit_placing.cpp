// Choosing, placing and building.
#include "simhost/gui/circuit_placing.h"

#include "circuits/provenance/circuit_objects.h"
#include "simhost/drawing/drawing_file.h"
#include "simhost/gui/configuration_table.h"
#include "simhost/gui/drawing_view.h"
#include "simhost/gui/scaled_form.h"
#include "simhost/gui/shown_drawing.h"
#include "simhost/gui/site_circuits.h"
#include "simhost/gui/view_picks.h"
#include "simhost/host/session.h"
#include "simhost/lisp/list.h"
#include "simhost/lisp/printer.h"
#include "simhost/qt/qt_text.h"
#include "simhost/site/saved_configurations.h"
#include "simhost/site/site_run.h"
#include "simhost/ui/file_names.h"
#include "text/encoding.h"

#include <exception>
#include <filesystem>
#include <numeric>
#include <vector>

namespace simhost {
namespace {

/// Of a drawing's file; nothing for one that is empty or cannot be read.
std::optional<Box> extentsOf(const std::wstring& file) {
  const LoadedDrawing loaded = loadDrawing(file);
  Scene scene;
  if (loaded.drawing == nullptr || !scene.load(*loaded.drawing, loaded.drawing->currentSpace()) ||
      scene.extents().isEmpty())
    return std::nullopt;
  return scene.extents();
}

/// The circuit that the circuit selection returns: (template (workbook worksheet circuit type configuration ...) ...).
OfferedCircuit offeredBy(const lisp::Value& choice) {
  const std::vector<lisp::Value> parts = lisp::toVector(choice);
  const std::vector<lisp::Value> build =
      parts.size() > 1 ? lisp::toVector(parts[1]) : std::vector<lisp::Value>();
  const auto text = [&build](std::size_t place) {
    return place < build.size() && build[place].isString() ? build[place].asString() : std::wstring();
  };
  return {text(2), text(3), text(4)};
}

} // namespace

std::optional<KvPoint3d> CircuitPlacing::pickPlace(const QString& prompt, const std::optional<Box>& outline) {
  return picks_.pickPoint(prompt, outline, nextFreePlace(outline));
}

void CircuitPlacing::newCircuit() {
  const QString name = captionOf(services_.texts, HostText::newCircuit);
  services_.status.say(services_.texts(HostText::running, {name}));
  const CommandOutcome outcome = services_.runner.runSteps(
      name, [this](const CommandRunner::Evaluate& evaluate) -> std::optional<lisp::Value> {
        const lisp::Value choice = evaluate(L"(setq site-choice (zan_bv_select_circuit))");
        if (choice.isNil()) return std::nullopt;
        const lisp::Value drawingTemplate = choice.isCons() ? choice.asCons().car() : lisp::Value();
        return place(
            evaluate, drawingTemplate.isString() ? drawingTemplate.asString() : std::wstring(),
            offeredBy(choice),
            [](const std::wstring& point) { return L"(site-place site-choice " + point + L")"; });
      });
  services_.status.showOutcome(outcome);
}

void CircuitPlacing::buildFromHistory() {
  SiteConfigurations found;
  try {
    found = savedConfigurations(services_.site.session().options().siteFolder.string());
  } catch (const std::exception& error) {
    return services_.status.say(services_.texts(HostText::notDone, {QString::fromUtf8(error.what())}));
  }
  const std::vector<brenvolt::SavedConfiguration>& saved = found.saved;
  if (saved.empty()) return services_.status.say(services_.texts(HostText::noHistory));
  std::vector<std::size_t> all(saved.size());
  std::iota(all.begin(), all.end(), std::size_t{0});
  if (const auto chosen = chooseConfiguration(&services_.window, services_.texts, found, all))
    buildSaved(saved[*chosen], found.workbook);
}

void CircuitPlacing::buildSaved(const brenvolt::SavedConfiguration& saved, const std::wstring& workbookPath) {
  const QString name = captionOf(services_.texts, HostText::buildFromHistory);
  services_.status.say(services_.texts(HostText::running, {name}));
  const CommandOutcome outcome = services_.runner.runSteps(
      name, [&](const CommandRunner::Evaluate& evaluate) -> std::optional<lisp::Value> {
        const auto text = [](const std::wstring& value) {
          return L" " + lisp::printValue(lisp::Value::string(value), lisp::PrintStyle::readable);
        };
        // The workbook by its name, so that a recording can be replayed on a copy of the site.
        const std::filesystem::path workbook(brenvolt::toUtf8(workbookPath));
        const std::wstring found =
            L"(find-file" + text(brenvolt::fromUtf8(workbook.filename().string())) + L")";
        std::wstring form = L"(site-build" + text(saved.drawingTemplate);
        form += L" (or (nth 7 GBL_qn_bv_data) " + found + L")";
        for (const std::wstring& value : {saved.worksheet, saved.key.circuit, saved.key.type, saved.key.name})
          form += text(value);
        const OfferedCircuit offered{saved.key.circuit, saved.key.type, saved.key.name};
        return place(evaluate, saved.drawingTemplate, offered, [&](const std::wstring& point) {
          const std::wstring build = form + L" " + point + L" \"\" \"\" \"\")";
          return atScale(services_.site.interpreter(), build, saved.circuitScale, saved.componentScale);
        });
      });
  services_.status.showOutcome(outcome);
}

std::optional<lisp::Value> CircuitPlacing::place(
    const CommandRunner::Evaluate& evaluate, const std::wstring& drawingTemplate,
    const OfferedCircuit& offered, const std::function<std::wstring(const std::wstring& point)>& build) {
  const std::optional<Box> outline = outlineOf(drawingTemplate);
  QTimer::singleShot(
      0, &services_.window, [this, offered] { refineOutline(offered); }); // once the pick has begun
  const std::optional<KvPoint3d> point = pickPlace(services_.texts(HostText::pickPlace), outline);
  if (siteCircuits_ != nullptr) siteCircuits_->forgetPicture();
  if (!point) return std::nullopt;
  const std::uint64_t first = services_.drawing().store().nextHandle().value();
  lisp::Value value = evaluate(build(lisp::printPointForm(point->x, point->y)));
  if (value.isNil()) return value;
  shown_.refresh();
  const Box made = extentsSince(first);
  if (made.isEmpty()) return value;
  lastPlace_ = *point;
  // From now on the outline is that of a whole circuit of this template.
  outlines_[drawingTemplate] = {
      made.left - point->x, made.bottom - point->y, made.right - point->x, made.top - point->y};
  view_.port().show(made);
  const lisp::Symbol* const unsized = services_.site.interpreter().symbols().find(L"GBL_qn_bv_unsized_wires");
  if (unsized == nullptr || unsized->value.isNil()) return value;
  // Its marks are small, and the lines of the build are in a panel that may be hidden.
  for (const circuits::CircuitObject& circuit : circuits::circuitsOf(services_.drawing()))
    if (!circuit.entities.empty() && circuit.entities.front().value() >= first)
      value = lisp::Value::string(fromQt(services_.texts(HostText::noSizes, {toQt(circuit.name())})));
  return value;
}

void CircuitPlacing::refineOutline(const OfferedCircuit& offered) {
  if (siteCircuits_ == nullptr || offered.type.empty()) return;
  const CircuitFacts::Picture picture =
      siteCircuits_->picture(offered, [this, offered] { refineOutline(offered); });
  const std::optional<Box> exact =
      picture.state == CircuitFacts::Picture::State::made ? extentsOf(picture.drawing) : std::nullopt;
  if (!exact) return;
  picks_.setOutline(*exact);
}

Box CircuitPlacing::extentsSince(std::uint64_t firstHandle) const {
  Box made;
  const Scene& scene = view_.scene();
  for (std::uint32_t item = 0; item < scene.items().size(); ++item)
    if (scene.items()[item].entity.value() >= firstHandle) made.include(scene.box(item));
  return made;
}

std::optional<Box> CircuitPlacing::outlineOf(const std::wstring& drawingTemplate) const {
  if (const auto known = outlines_.find(drawingTemplate); known != outlines_.end()) return known->second;
  const std::filesystem::path file = services_.site.session().findFile(drawingTemplate);
  if (file.empty()) return std::nullopt;
  return extentsOf(textOfPath(file));
}

KvPoint3d CircuitPlacing::nextFreePlace(const std::optional<Box>& outline) {
  KvPoint3d place = lastPlace_;
  const Box& taken = view_.scene().extents();
  if (!outline || taken.isEmpty()) return place;
  // Beside the circuit placed last; to the right of everything there is always space.
  constexpr double step = 5.0;
  Box wanted = *outline;
  view_.place().setOutline(
      Box{wanted.left - step, wanted.bottom - step, wanted.right + step, wanted.top + step});
  while (view_.place().overlaps(place) && place.x + wanted.left <= taken.right + 2 * step)
    place.x += step;
  return place;
}

} // namespace simhost
