// Small drawings of symbols, wires and numbers, drawn in one line each.
#pragma once

#include "simhost/drawing/drawing_database.h"

#include <string>
#include <utility>
#include <vector>

namespace circuits::testing {

struct PinAt {
  const wchar_t* tag;
  const wchar_t* number;
  double x;
  double y;
};

class Plant final {
public:
  using Texts = std::vector<std::pair<std::wstring, std::wstring>>;

  void symbol(
      const std::wstring& tag, const std::wstring& family, const std::vector<PinAt>& pins,
      const Texts& more = {}) {
    Texts texts = {{L"TAG1", tag}, {L"FAMILY", family}};
    texts.insert(texts.end(), more.begin(), more.end());
    const KvDbHandle placed = place(pins.front().x, pins.front().y, texts);
    for (const PinAt& pin : pins)
      attribute(placed, pin.tag, pin.number, pin.x, pin.y);
  }

  void terminal(const std::wstring& strip, const std::wstring& number, double left, double right, double y) {
    const KvDbHandle placed =
        place(left, y, {{L"FAMILY", L"TRMS"}, {L"TAGSTRIP", strip}, {L"TERM01", number}});
    attribute(placed, L"X4TERM01", L"", left, y);
    attribute(placed, L"X1TERM02", L"", right, y);
  }

  void wire(
      double x1, double y1, double x2, double y2, const std::wstring& layer = L"BLK_10AWG", int numbers = 1) {
    drawing.putLayer(
        {layer, {}, simhost::LineType::continuous, std::vector<simhost::WireSetting>{{290, numbers}}});
    wires.push_back(line(x1, y1, x2, y2, layer));
  }

  KvDbHandle line(double x1, double y1, double x2, double y2, const std::wstring& layer) {
    return drawing.addEntity(drawing.modelSpace(), {simhost::Line{{x1, y1, 0}, {x2, y2, 0}}, layer});
  }

  void dot(double x, double y) { static_cast<void>(place(x, y, {})); }
  void number(const std::wstring& text, double x, double y) {
    static_cast<void>(place(x, y, {{L"WIRENO", text}}));
  }

  simhost::DrawingDatabase drawing;
  std::vector<KvDbHandle> wires;

private:
  KvDbHandle place(double x, double y, const Texts& texts) {
    if (block_.isNull()) block_ = drawing.addBlock(L"SYMBOL", {});
    const KvDbHandle placed =
        drawing.addEntity(drawing.modelSpace(), {simhost::BlockReference{block_, {x, y, 0}}});
    for (const auto& [tag, text] : texts)
      attribute(placed, tag, text, x, y);
    return placed;
  }

  void attribute(KvDbHandle placed, const std::wstring& tag, const std::wstring& text, double x, double y) {
    drawing.addEntity(placed, {simhost::Attribute{tag, {{x, y, 0}, text, 2.0}}});
  }

  KvDbHandle block_;
};

} // namespace circuits::testing
