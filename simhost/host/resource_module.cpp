// Reads language files, and serves the plug-in's requests to its resource module.
#include "simhost/host/resource_module.h"

#include "host/host_api_documents.h"
#include "simhost/host/files.h"
#include "simhost/host/session.h"
#include "simhost/ui/file_names.h"
#include "text/encoding.h"
#include "text/split.h"

#include <algorithm>
#include <cstdlib>
#include <optional>
#include <set>
#include <system_error>
#include <utility>

namespace simhost {

namespace {

/// Digits alone as a number.
std::optional<unsigned> parseNumber(std::wstring_view text) {
  if (text.empty() || text.size() > 6) return std::nullopt;
  unsigned number = 0;
  for (const wchar_t digit : text) {
    if (digit < L'0' || digit > L'9') return std::nullopt;
    number = number * 10 + static_cast<unsigned>(digit - L'0');
  }
  return number;
}

class LanguageFile final {
public:
  LanguageFile(const std::string& fileName, LanguageRole role, KvResourceModule& module)
      : fileName_(fileName), role_(role), module_(module) {}

  void read(std::string_view bytes) {
    const std::optional<std::wstring> text = brenvolt::fromUtf8Strict(bytes);
    if (!text) fail("the file is not UTF-8");
    for (const std::wstring& line : brenvolt::splitKeepingEmpty(*text, L'\n')) {
      ++line_;
      readLine(brenvolt::trim(line));
    }
    if (role_ == LanguageRole::translation) return;
    for (const auto& [key, dialog] : module_.dialogs)
      if (dialog.buttons.empty())
        throw BadInput(fileName_ + ": the dialog " + brenvolt::toUtf8(key) + " has no button");
  }

private:
  [[noreturn]] void fail(const std::string& message) const {
    throw BadInput(fileName_ + ":" + std::to_string(line_) + ": " + message);
  }

  void readLine(const std::wstring& line) {
    if (line.empty() || line.front() == L'#') return;
    const std::size_t equals = line.find(L'=');
    const std::wstring head = brenvolt::trim(line.substr(0, equals));
    const std::vector<std::wstring> words = brenvolt::splitSkippingEmpty(head, L' ');
    const bool hasValue = equals != std::wstring::npos;
    const std::wstring value = hasValue ? unescape(brenvolt::trim(line.substr(equals + 1))) : std::wstring();
    if (words.size() == 2 && words[0] == L"text" && hasValue) return takeText(words[1], value);
    if (words.size() == 2 && words[0] == L"dialog" && !hasValue) return openDialog(words[1]);
    if (dialog_ != nullptr) {
      if (words.size() == 1 && words[0] == L"title" && hasValue) {
        dialog_->title = value;
        return;
      }
      if (words.size() == 1 && words[0] == L"main" && hasValue) {
        dialog_->text = value;
        return;
      }
      if (words.size() == 2 && words[0] == L"button" && hasValue) return takeButton(words[1], value);
      if (words.size() == 1 && words[0] == L"hideable" && !hasValue) {
        dialog_->isHideable = dialog_->isHideable || role_ == LanguageRole::base;
        return;
      }
    }
    fail("neither \"text NUMBER = ...\" nor a line of a dialog");
  }

  void takeText(const std::wstring& word, const std::wstring& value) {
    dialog_ = nullptr;
    const std::optional<unsigned> number = parseNumber(word);
    if (!number) fail("\"" + brenvolt::toUtf8(word) + "\" is not the number of a text");
    if (!texts_.insert(*number).second) fail("the text " + std::to_string(*number) + " is there twice");
    module_.texts[*number] = value;
  }

  void openDialog(const std::wstring& key) {
    if (!keys_.insert(key).second) fail("the dialog " + brenvolt::toUtf8(key) + " is there twice");
    const bool isKnown = module_.dialogs.contains(key);
    if (role_ == LanguageRole::translation && !isKnown)
      fail("English has no dialog " + brenvolt::toUtf8(key));
    dialog_ = &module_.dialogs[key];
  }

  void takeButton(const std::wstring& word, const std::wstring& label) {
    const std::optional<unsigned> number = parseNumber(word);
    if (!number || *number == 0) fail("\"" + brenvolt::toUtf8(word) + "\" is not the number of a button");
    const int id = static_cast<int>(*number);
    const auto known =
        std::find_if(dialog_->buttons.begin(), dialog_->buttons.end(), [id](const DialogButtonText& row) {
          return row.id == id;
        });
    if (role_ == LanguageRole::base) {
      if (known != dialog_->buttons.end()) fail("the button " + std::to_string(id) + " is there twice");
      dialog_->buttons.push_back({id, label});
      return;
    }
    if (known == dialog_->buttons.end())
      fail("English has no button " + std::to_string(id) + " in this dialog");
    known->label = label;
  }

  [[nodiscard]] std::wstring unescape(const std::wstring& text) const {
    std::wstring plain;
    for (std::size_t at = 0; at < text.size(); ++at) {
      if (text[at] != L'\\') {
        plain += text[at];
        continue;
      }
      const wchar_t code = ++at < text.size() ? text[at] : L'\0';
      if (code == L'n') {
        plain += L'\n';
      } else if (code == L's') {
        plain += L' ';
      } else if (code == L'\\') {
        plain += L'\\';
      } else {
        fail("a \"\\\" is followed by \"n\", \"s\" or \"\\\"");
      }
    }
    return plain;
  }

  const std::string& fileName_;
  LanguageRole role_;
  KvResourceModule& module_;
  DialogText* dialog_ = nullptr; ///< whose lines are being read
  std::set<unsigned> texts_;
  std::set<std::wstring> keys_;
  int line_ = 0;
};

} // namespace

void readLanguageFile(
    std::string_view bytes, const std::string& fileName, LanguageRole role, KvResourceModule& module) {
  LanguageFile(fileName, role, module).read(bytes);
}

std::optional<KvResourceModule> ResourceLibrary::read(
    std::wstring_view name, const std::string& language) const {
  const std::filesystem::path folder = folder_ / pathOf(name).stem();
  const std::filesystem::path english = folder / "en.txt";
  const std::optional<std::string> bytes = readFile(english);
  if (!bytes) return std::nullopt;
  KvResourceModule module;
  module.name = name;
  readLanguageFile(*bytes, english.string(), LanguageRole::base, module);
  if (language != "en") {
    const std::filesystem::path file = folder / (language + ".txt");
    if (const std::optional<std::string> words = readFile(file))
      readLanguageFile(*words, file.string(), LanguageRole::translation, module);
  }
  return module;
}

KvResourceModule* ResourceLibrary::load(std::wstring_view name) {
  std::optional<KvResourceModule> module = read(name, language_);
  if (!module) return nullptr;
  modules_.push_back(std::make_unique<KvResourceModule>(std::move(*module)));
  return modules_.back().get();
}

void ResourceLibrary::choose(const std::string& language) {
  std::vector<KvResourceModule> translated;
  for (const auto& module : modules_)
    translated.push_back(read(module->name, language).value_or(*module));
  for (std::size_t place = 0; place < modules_.size(); ++place)
    *modules_[place] = std::move(translated[place]);
  language_ = language;
}

void ResourceLibrary::free(KvResourceModule* module) {
  std::erase_if(modules_, [module](const auto& known) { return known.get() == module; });
}

std::string languageOfEnvironment() {
  for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
    const char* value = std::getenv(name);
    if (value == nullptr || *value == '\0') continue;
    const std::string language(
        value, std::find_if(value, value + std::char_traits<char>::length(value), [](char c) {
          return c == '_' || c == '.' || c == '@';
        }));
    const bool isCode = language.size() == 2 && std::all_of(language.begin(), language.end(), [](char c) {
                          return c >= 'a' && c <= 'z';
                        });
    return isCode ? language : "en"; // "C" and "POSIX" among them
  }
  return "en";
}

} // namespace simhost

using simhost::Session;

KvResourceModule* kvdsLoadResourceModule(const wchar_t* name) {
  Session* session = Session::current();
  if (session == nullptr || name == nullptr) return nullptr;
  try {
    return session->resources().load(name);
  } catch (const simhost::BadInput& error) {
    session->commandLine().printLine(brenvolt::fromUtf8(error.what()));
    return nullptr;
  }
}

void kvdsFreeResourceModule(KvResourceModule* module) {
  Session* session = Session::current();
  if (session != nullptr) session->resources().free(module);
}

bool kvdsLoadString(unsigned id, std::wstring& text) {
  Session* session = Session::current();
  const KvResourceModule* module = session == nullptr ? nullptr : session->documents().topResources();
  if (module == nullptr) return false;
  const auto found = module->texts.find(id);
  if (found == module->texts.end()) return false;
  text = found->second;
  return true;
}
