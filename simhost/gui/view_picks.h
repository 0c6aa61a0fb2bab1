// Picks in the drawing: of an entity, as a dialog or a LISP form asks for it, and of a place. The prompt is over the
// drawing while a pick is open.
#pragma once

#include "simhost/gui/drawing_view.h"
#include "simhost/gui/pick_filter.h"
#include "simhost/gui/window_services.h"
#include "simhost/qt/qt_windows.h"

class QEventLoop;
class QLabel;

namespace simhost {

class ViewPicks final : public DrawingPicker {
public:
  /// In a scope, what may be picked for a command that picks without a dialog.
  class KindScope final {
  public:
    KindScope(ViewPicks& picks, PickKind kind) : picks_(picks), before_(picks.kind_) { picks.kind_ = kind; }
    KindScope(const KindScope&) = delete;
    KindScope& operator=(const KindScope&) = delete;
    ~KindScope() { picks_.kind_ = before_; }

  private:
    ViewPicks& picks_;
    PickKind before_;
  };

  /// All must outlive it. `banner` shows the prompts.
  ViewPicks(const WindowServices& services, DrawingView& view, QLabel& banner)
      : services_(services), view_(view), banner_(banner) {}
  ViewPicks(const ViewPicks&) = delete;
  ViewPicks& operator=(const ViewPicks&) = delete;
  ~ViewPicks() override = default;

  [[nodiscard]] bool isOpen() const { return loop_ != nullptr; }
  /// Of the current pick, empty for none.
  [[nodiscard]] QString prompt() const;

  [[nodiscard]] EntityPick pickEntity(const std::wstring& prompt, bool emptyIsAllowed) override;
  /// Lets the user choose a position with mouse or keys, starting there, for what has this outline; nothing when the
  /// user presses Escape.
  [[nodiscard]] std::optional<KvPoint3d> pickPoint(
      const QString& prompt, const std::optional<Box>& outline, const KvPoint3d& start);
  /// The outline of the current pick of a place is known better now.
  void setOutline(const Box& outline);
  void cancel() { answer({}); }

  /// A pick begins or has ended.
  std::function<void()> onChanged;

private:
  void run(const QString& prompt, const QString& hint, DrawingView::Mode mode);
  void answer(const EntityPick& pick);

  WindowServices services_;
  DrawingView& view_;
  QLabel& banner_;
  QEventLoop* loop_ = nullptr; ///< of the current pick
  PickKind kind_ = PickKind::any;
  EntityPick pick_;            ///< its result
  std::optional<Box> outline_; ///< of a pick of a place
  KvPoint3d start_;
  bool isEmptyAllowed_ = false;
};

} // namespace simhost
