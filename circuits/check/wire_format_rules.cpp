// The layer formats of wire markers: whether lists can read the size from the layers that they give, and formats that
// differ by a slip from what other wires have.
#include "circuits/check/similar_name.h"
#include "circuits/check/template_rules.h"
#include "circuits/netlist/netlist.h"
#include "text/compare.h"

#include <algorithm>
#include <array>
#include <map>
#include <optional>
#include <set>
#include <string_view>
#include <utility>

namespace circuits {

using brenvolt::toUpper;

namespace {

constexpr std::wstring_view placeholder = L"SIZE";

/// Colours of wires as layers abbreviate them: two that differ by a letter are both meant.
constexpr std::array<std::wstring_view, 29> colours = {
    L"BLK", L"BLU", L"BRN", L"GRN", L"GRY", L"ORG", L"PNK", L"RED", L"TAN", L"VIO",
    L"WHT", L"YEL", L"PUR", L"TRQ", L"BK",  L"BN",  L"RD",  L"OG",  L"YE",  L"GN",
    L"BU",  L"VT",  L"GY",  L"WH",  L"PK",  L"TQ",  L"GD",  L"SR",  L"GNYE"};

struct WireFormat {
  const TemplateDrawing* drawing;
  const TemplateMarker* marker;
  LayerFormat layer;
};

/// Formats of another shape are findings of their own.
std::vector<WireFormat> formatsOf(const std::vector<const TemplateDrawing*>& drawings) {
  std::vector<WireFormat> formats;
  for (const TemplateDrawing* drawing : drawings)
    for (const TemplateMarker& marker : drawing->markers)
      if (std::optional<LayerFormat> layer = marker.layerFormat(); layer && marker.isWire())
        formats.push_back({drawing, &marker, std::move(*layer)});
  return formats;
}

std::wstring withoutDigits(std::wstring text) {
  std::erase_if(text, [](wchar_t letter) { return letter >= L'0' && letter <= L'9'; });
  return text;
}

class FormatCheck final {
public:
  FormatCheck(const std::vector<const TemplateDrawing*>& drawings, Findings& findings)
      : formats_(formatsOf(drawings)), findings_(findings) {
    for (const WireFormat& format : formats_) {
      Users& users = users_.try_emplace(toUpper(format.layer.text), Users{format.layer.text}).first->second;
      ++users.markers;
      users.drawings.insert(format.drawing);
    }
  }

  void run() {
    for (const WireFormat& format : formats_) {
      constexpr std::wstring_view anySize = L"10AWG";
      const std::wstring layer = format.layer.before + std::wstring(anySize) + format.layer.after;
      if (const std::wstring read = layerSize(layer); read != anySize)
        add(L"wire-format-layer", format,
            {{L"format", format.layer.text}, {L"layer", layer}, {L"size", read}});
      else if (const std::wstring meant = meantBy(format); !meant.empty())
        add(L"wire-format-similar", format, {{L"format", format.layer.text}, {L"meant", meant}});
    }
  }

private:
  struct Users {
    std::wstring text;
    std::size_t markers = 0;
    std::set<const TemplateDrawing*> drawings{};
  };

  void add(std::wstring_view rule, const WireFormat& format, RuleValues values) {
    findings_.add(
        rule, format.drawing->place(*format.marker),
        {*format.marker->misc1, format.layer.from, format.layer.length}, values);
  }

  /// The format of which this one is a slip; empty for none. What several templates or as many wires have is meant, and
  /// so are numbers of lines and colours.
  [[nodiscard]] std::wstring meantBy(const WireFormat& format) const {
    constexpr std::size_t mostSlips = 2;
    const std::size_t slips = nameDistance(format.layer.placeholder, placeholder);
    if (slips > 0 && slips <= mostSlips)
      return format.layer.before + L"@" + std::wstring(placeholder) + L"@" + format.layer.after;
    const Users& own = users_.at(toUpper(format.layer.text));
    const bool isColour =
        std::ranges::find(colours, toUpper(layerColour(format.layer.before))) != colours.end();
    if (isColour || own.drawings.size() > 1) return {};
    for (const auto& [other, users] : users_)
      if (users.markers >= 2 * own.markers && nameDistance(format.layer.text, other) == 1 &&
          withoutDigits(toUpper(format.layer.text)) != withoutDigits(other))
        return users.text;
    return {};
  }

  std::vector<WireFormat> formats_;
  Findings& findings_;
  std::map<std::wstring, Users> users_; ///< by format in upper case
};

} // namespace

void checkWireFormats(const std::vector<const TemplateDrawing*>& drawings, Findings& findings) {
  FormatCheck(drawings, findings).run();
}

} // namespace circuits
