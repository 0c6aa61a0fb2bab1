// The wait for a pick.
#include "simhost/gui/view_picks.h"

#include "simhost/qt/qt_text.h"

#include <QEventLoop>
#include <QLabel>

#include <utility>

namespace simhost {

QString ViewPicks::prompt() const {
  return isOpen() ? banner_.text() : QString();
}

EntityPick ViewPicks::pickEntity(const std::wstring& prompt, bool emptyIsAllowed) {
  if (isOpen()) return {};
  isEmptyAllowed_ = emptyIsAllowed;
  run(toQt(prompt), services_.texts(emptyIsAllowed ? HostText::pickEndsOrNone : HostText::pickEnds),
      DrawingView::Mode::pickEntity);
  return pick_;
}

std::optional<KvPoint3d> ViewPicks::pickPoint(
    const QString& prompt, const std::optional<Box>& outline, const KvPoint3d& start) {
  if (isOpen()) return std::nullopt;
  isEmptyAllowed_ = false;
  outline_ = outline;
  start_ = start;
  run(prompt, services_.texts(HostText::placeKeys), DrawingView::Mode::pickPoint);
  if (pick_.kind != EntityPick::Kind::entity) return std::nullopt;
  return pick_.point;
}

void ViewPicks::setOutline(const Box& outline) {
  outline_ = outline;
  if (view_.mode() == DrawingView::Mode::pickPoint) view_.place().setOutline(outline_);
}

void ViewPicks::run(const QString& prompt, const QString& hint, DrawingView::Mode mode) {
  using Kind = EntityPick::Kind;
  banner_.setText(prompt.trimmed() + QStringLiteral("  ") + hint);
  banner_.show();
  view_.setMode(mode);
  if (mode == DrawingView::Mode::pickPoint) {
    view_.place().setOutline(outline_);
    view_.place().propose(start_);
  }
  view_.setFocus();
  services_.window.activateWindow();
  view_.onBadCoordinates = [this] { services_.status.say(services_.texts(HostText::badCoordinates)); };
  QEventLoop loop;
  loop_ = &loop;
  pick_ = {};
  onChanged();
  const PickKind dialogKind = pickKindOf(services_.windows.dialogs().topForm());
  const PickKind kind = dialogKind == PickKind::any ? kind_ : dialogKind;
  view_.marks().setFilter(
      [this, kind](KvDbHandle entity) { return fits(services_.drawing(), entity, kind); });
  view_.onPick = [this, mode, kind](const KvPoint3d& point, std::optional<KvDbHandle> entity) {
    if (entity && mode == DrawingView::Mode::pickEntity && !fits(services_.drawing(), *entity, kind))
      return services_.status.say(services_.texts(reasonOf(kind)));
    if (entity || mode == DrawingView::Mode::pickPoint)
      answer({Kind::entity, entity.value_or(KvDbHandle()), point});
    else if (isEmptyAllowed_)
      answer({Kind::nothing, {}, point});
  };
  view_.onEnter = [this] {
    if (isEmptyAllowed_) answer({Kind::nothing, {}, {}});
  };
  view_.onEscape = [this] { cancel(); };
  loop.exec();
  loop_ = nullptr;
  view_.onPick = nullptr;
  view_.marks().setFilter(nullptr);
  view_.onBadCoordinates = nullptr;
  view_.onEnter = nullptr;
  view_.onEscape = nullptr;
  view_.setMode(DrawingView::Mode::select);
  banner_.hide();
  onChanged();
}

void ViewPicks::answer(const EntityPick& pick) {
  // The first result counts: input while the loop ends is ignored.
  QEventLoop* const loop = std::exchange(loop_, nullptr);
  if (loop == nullptr) return;
  pick_ = pick;
  loop->quit();
}

} // namespace simhost
