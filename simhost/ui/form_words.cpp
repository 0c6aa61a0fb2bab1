// Reading the lines of one form.
#include "simhost/ui/form_words.h"

#include "simhost/json/json_text.h"
#include "text/encoding.h"
#include "text/split.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <optional>

namespace simhost {

using brenvolt::toUtf8;

namespace {

using Json = nlohmann::ordered_json;

/// Puts `words` in the place of the titles of sections that read `title`; false when there is none.
bool renameSections(Json& layout, const std::string& title, const std::string& words) {
  if (!layout.is_structured()) return false;
  bool isFound = false;
  for (auto& [name, part] : layout.items()) {
    if (name == "section" && part == title) {
      part = words;
      isFound = true;
    } else {
      isFound = renameSections(part, title, words) || isFound;
    }
  }
  return isFound;
}

/// A change of a layout, which a form holds as it is written; false when there was nothing to change.
template <typename Change>
bool changeLayout(std::string& layout, const Change& change) {
  if (layout.empty()) return false;
  Json parsed = parseJson(layout);
  if (!change(parsed)) return false;
  layout = jsonText(parsed);
  return true;
}

bool endsWithPart(std::wstring& key, std::wstring_view part) {
  if (!key.ends_with(part)) return false;
  key.resize(key.size() - part.size());
  return true;
}

/// False when the form has nothing of this key.
bool setWords(Form& form, std::wstring key, const std::wstring& words) {
  if (key == L"title") {
    form.title = words;
    return true;
  }
  constexpr std::wstring_view section = L"section ";
  if (key.starts_with(section)) {
    const std::string title = toUtf8(brenvolt::trim(key.substr(section.size())));
    return changeLayout(
        form.layout, [&](Json& layout) { return renameSections(layout, title, toUtf8(words)); });
  }
  const bool isTooltip = endsWithPart(key, L".tooltip");
  const char* const member = isTooltip                      ? nullptr
                             : endsWithPart(key, L".unit")  ? "unit"
                             : endsWithPart(key, L".empty") ? "empty"
                                                            : nullptr;
  const auto control = std::find_if(
      form.controls.begin(), form.controls.end(), [&key](const FormControl& row) { return row.role == key; });
  if (control == form.controls.end()) return false;
  if (member != nullptr)
    return changeLayout(control->layout, [&words, member](Json& layout) {
      if (!layout.contains(member)) return false;
      layout[member] = toUtf8(words);
      return true;
    });
  (isTooltip ? control->tooltip : control->label) = words;
  return true;
}

} // namespace

void translateForm(Form& form, std::string_view bytes, const std::string& fileName) {
  const std::optional<std::wstring> text = brenvolt::fromUtf8Strict(bytes);
  if (!text) throw FormError(fileName + ": the file is not UTF-8");
  int number = 0;
  std::optional<bool> isThisForm; // empty before the first form
  for (const std::wstring& whole : brenvolt::splitKeepingEmpty(*text, L'\n')) {
    ++number;
    const std::wstring line = brenvolt::trim(whole);
    if (line.empty() || line.front() == L'#') continue;
    const auto fail = [&](const std::string& message) {
      throw FormError(std::string(fileName).append(":" + std::to_string(number) + ": ").append(message));
    };
    const std::size_t equals = line.find(L'=');
    if (equals == std::wstring::npos) {
      if (!line.starts_with(L"form ")) fail("neither \"form NAME\" nor \"ROLE = ...\"");
      isThisForm = brenvolt::trim(line.substr(5)) == form.name;
      continue;
    }
    if (!isThisForm) fail("belongs to no form");
    if (!isThisForm.value_or(false)) continue;
    const std::wstring key = brenvolt::trim(line.substr(0, equals));
    if (!setWords(form, key, brenvolt::trim(line.substr(equals + 1))))
      fail("the form \"" + toUtf8(form.name) + "\" has no \"" + toUtf8(key) + "\"");
  }
}

void translateFormIn(Form& form, const std::filesystem::path& folder, const std::string& language) {
  if (language == "en") return;
  const std::filesystem::path file = folder / (language + ".txt");
  std::ifstream in(file, std::ios::binary);
  if (!in) return;
  const std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  translateForm(form, bytes, file.string());
}

} // namespace simhost
