#include "project/history_recovery.h"

#include "platform/xml_encoding.h"
#include "project/history_names.h"
#include "text/encoding.h"
#include "text/numbers.h"

#include <optional>

namespace brenvolt {

namespace {

/// A tag of the file: its name and where it ends.
struct Tag {
  std::string_view name;
  std::string_view text; ///< from "<" to ">"
  bool isEmptyElement = false;
};

bool isNameEnd(char c) {
  return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '/' || c == '>';
}

/// The tag at the start of `text`; a ">" between quotes does not end it. Nothing when there is no end, or another tag
/// begins first.
std::optional<Tag> tagAt(std::string_view text) {
  char quote = 0;
  for (std::size_t i = 1; i < text.size(); ++i) {
    const char c = text[i];
    if (c == '<') return std::nullopt; // also between quotes: no document has it there
    if (quote != 0) {
      if (c == quote) quote = 0;
    } else if (c == '"' || c == '\'') {
      quote = c;
    } else if (c == '>') {
      std::size_t end = 1;
      while (end < i && !isNameEnd(text[end]))
        ++end;
      return Tag{text.substr(1, end - 1), text.substr(0, i + 1), text[i - 1] == '/'};
    }
  }
  return std::nullopt;
}

/// An element on its own; nothing when it is not well formed.
std::unique_ptr<XmlDocument> parsed(std::string_view text) {
  auto document = std::make_unique<XmlDocument>();
  std::wstring reason;
  if (!document->read(text, reason)) return nullptr;
  return document;
}

/// The name that an opening tag gives, as far as it can be read.
std::wstring nameOf(const Tag& tag) {
  std::string closed(tag.text.substr(0, tag.text.size() - 1)); // without its ">"
  closed += tag.isEmptyElement ? ">" : "/>";
  const auto document = parsed(closed);
  return document ? document->root().attribute(xmlname::name) : std::wstring();
}

/// The element's text but for its name: a configuration that was renamed is the same.
std::string contentOf(XmlElement history) {
  XmlDocument copy;
  XmlElement element = copy.createRoot(L"Copy").appendCopy(history);
  element.setAttribute(xmlname::name, {});
  return element.text();
}

/// The name under which the same configuration is there already, or the first that is free.
struct Place {
  std::wstring name;
  bool isThere = false;
};

Place placeOf(const HistoryFile& file, HistoryKey key, XmlElement history) {
  const std::string content = contentOf(history);
  const std::wstring base = key.name;
  for (int number = 0;; ++number) {
    if (number == 1) key.name = base + L" (recovered)";
    if (number > 1) key.name = base + L" (recovered " + formatInt(number) + L")";
    const XmlElement same = file.find(key).history;
    if (same.isNull()) return {key.name, false};
    if (contentOf(same) == content) return {key.name, true};
  }
}

class Salvage final {
public:
  explicit Salvage(std::string_view text) : text_(text) {}

  SalvagedHistory run() {
    for (std::size_t place = text_.find('<'); place != std::string_view::npos; place = text_.find('<', place))
      place += take(text_.substr(place));
    return std::move(result_);
  }

private:
  /// Reads the element at `rest` and returns its length.
  std::size_t take(std::string_view rest) {
    const std::optional<Tag> tag = tagAt(rest);
    if (!tag) {
      if (rest.starts_with("<History ")) result_.broken.push_back({circuit_, type_, {}});
      return 1;
    }
    if (tag->name == "Circuit") circuit_ = nameOf(*tag);
    if (tag->name == "CircuitType") type_ = nameOf(*tag);
    if (tag->name != "History") return tag->text.size();
    return takeHistory(rest, *tag);
  }

  std::size_t takeHistory(std::string_view rest, const Tag& tag) {
    constexpr std::string_view end = "</History>";
    const std::size_t next = rest.find("<History ", 1);
    const std::size_t close = rest.find(end);
    const bool isWhole = tag.isEmptyElement || (close != std::string_view::npos && close < next);
    const std::string_view text =
        tag.isEmptyElement ? tag.text : rest.substr(0, isWhole ? close + end.size() : tag.text.size());
    const HistoryKey key{circuit_, type_, nameOf(tag)};
    const auto document = isWhole && key.isComplete() ? parsed(text) : nullptr;
    if (document)
      result_.entries.push_back({key, document->root().text()});
    else
      result_.broken.push_back(key);
    return text.size();
  }

  std::string_view text_;
  std::wstring circuit_;
  std::wstring type_;
  SalvagedHistory result_;
};

} // namespace

HistoryOutcome restoreInHistory(
    const std::wstring& workbook, HistoryFile& file, const HistoryRecord& record) {
  const auto former = parsed(record.former);
  if (!former)
    return {HistoryOutcome::Result::unchanged, L"the record contains no former configuration", {}, {}};
  return changeHistory(workbook, file, [&](HistoryFile& present) -> std::vector<HistoryRecord> {
    HistoryRecord restored = recordOf(HistoryAction::restored, present, record.key);
    if (restored.former == record.former) return {};
    present.put(record.key, former->root());
    return {std::move(restored)};
  });
}

SalvagedHistory salvageHistory(std::string_view bytes) {
  const std::string text = decodeDamagedXml(bytes);
  return Salvage(text).run();
}

HistoryOutcome mergeIntoHistory(
    const std::wstring& workbook, HistoryFile& file, const std::vector<SalvagedHistory::Entry>& entries,
    HistoryMerge& merge) {
  return changeHistory(workbook, file, [&](HistoryFile& present) {
    merge = {};
    std::vector<HistoryRecord> records;
    for (const SalvagedHistory::Entry& entry : entries) {
      const auto document = parsed(entry.text);
      const Place place = placeOf(present, entry.key, document->root());
      HistoryKey key{entry.key.circuit, entry.key.type, place.name};
      if (!place.isThere) {
        records.push_back(recordOf(HistoryAction::recovered, present, key));
        present.put(key, document->root());
      }
      (place.isThere ? merge.present : merge.added).push_back(std::move(key));
    }
    return records;
  });
}

} // namespace brenvolt
