// Reading the lines of one form.
#include "simhost/ui/form_words.h"

#include "text/encoding.h"
#include "text/split.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <optional>

namespace simhost {

using brenvolt::toUtf8;

namespace {

/// The text of the form that a key names, null for none.
std::wstring* wordsOf(Form& form, const std::wstring& key) {
  if (key == L"title") return &form.title;
  constexpr std::wstring_view tooltip = L".tooltip";
  const bool isTooltip = key.ends_with(tooltip);
  const std::wstring role = isTooltip ? key.substr(0, key.size() - tooltip.size()) : key;
  const auto control =
      std::find_if(form.controls.begin(), form.controls.end(), [&role](const FormControl& row) {
        return row.role == role;
      });
  if (control == form.controls.end()) return nullptr;
  return isTooltip ? &control->tooltip : &control->label;
}

} // namespace

void translateForm(Form& form, std::string_view bytes, const std::string& fileName) {
  const std::optional<std::wstring> text = brenvolt::fromUtf8Strict(bytes);
  if (!text) throw FormError(fileName + ": the file is no UTF-8");
  int number = 0;
  std::optional<bool> isThisForm; // nothing ahead of the first form
  for (const std::wstring& whole : brenvolt::splitKeepingEmpty(*text, L'\n')) {
    ++number;
    const std::wstring line = brenvolt::trim(whole);
    if (line.empty() || line.front() == L'#') continue;
    const auto fail = [&](const std::string& message) {
      throw FormError(fileName + ":" + std::to_string(number) + ": " + message);
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
    std::wstring* words = wordsOf(form, key);
    if (words == nullptr) fail("the form \"" + toUtf8(form.name) + "\" has no \"" + toUtf8(key) + "\"");
    *words = brenvolt::trim(line.substr(equals + 1));
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
