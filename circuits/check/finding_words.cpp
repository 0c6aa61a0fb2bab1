#include "circuits/check/finding_words.h"

#include "simhost/host/files.h"
#include "text/encoding.h"
#include "text/split.h"

#include <optional>
#include <stdexcept>

namespace circuits {

namespace {

/// The texts that stand for "{1}", "{2}" ... of a pattern; nothing when the text is another one.
std::optional<std::vector<std::wstring>> matched(std::wstring_view pattern, std::wstring_view text) {
  std::vector<std::wstring> found;
  while (true) {
    const std::size_t open = pattern.find(L'{');
    if (!text.starts_with(pattern.substr(0, open))) return std::nullopt;
    if (open == std::wstring_view::npos) {
      if (text.size() != pattern.size()) return std::nullopt;
      return found;
    }
    text.remove_prefix(open);
    pattern.remove_prefix(pattern.find(L'}', open) + 1);
    const std::wstring_view next = pattern.substr(0, pattern.find(L'{'));
    const bool isLast = next.size() == pattern.size();
    if (isLast && !text.ends_with(next)) return std::nullopt;
    const std::size_t end = isLast ? text.size() - next.size() : text.find(next);
    if (end == std::wstring_view::npos) return std::nullopt;
    found.emplace_back(text.substr(0, end));
    text.remove_prefix(end);
  }
}

std::wstring keyOf(std::wstring_view first, std::wstring_view second) {
  std::wstring key(first);
  key += L' ';
  key += second;
  return key;
}

} // namespace

FindingWords::FindingWords(std::string_view bytes, const std::string& fileName) {
  int number = 0;
  const auto fail = [&](const std::string& message) {
    throw std::runtime_error(
        std::string(fileName).append(":").append(std::to_string(number)).append(": ").append(message));
  };
  const std::optional<std::wstring> text = brenvolt::fromUtf8Strict(bytes);
  if (!text) fail("the file is not UTF-8");
  const Rule* rule = nullptr;
  std::wstring placeholder;
  for (const std::wstring& whole : brenvolt::splitKeepingEmpty(*text, L'\n')) {
    ++number;
    const std::wstring line = brenvolt::trim(whole);
    const auto rest = [&line](std::wstring_view word) { return brenvolt::trim(line.substr(word.size())); };
    if (line.empty() || line.starts_with(L'#')) continue;
    if (line.starts_with(L"rule ")) {
      rule = findRule(rest(L"rule "));
      placeholder.clear();
      if (rule == nullptr) fail("unknown rule \"" + brenvolt::toUtf8(rest(L"rule ")) + "\"");
      continue;
    }
    if (line.starts_with(L"phrase ") && line.find(L"->") == std::wstring::npos) {
      placeholder = rest(L"phrase ");
      rule = nullptr;
      continue;
    }
    const std::wstring_view sign = placeholder.empty() ? L"=" : L"->";
    const std::size_t at = line.find(sign);
    if (at == std::wstring::npos) fail("has no \"" + brenvolt::toUtf8(sign) + "\"");
    const std::wstring key = brenvolt::trim(line.substr(0, at));
    std::wstring words = brenvolt::trim(line.substr(at + sign.size()));
    if (!placeholder.empty())
      phrases_[placeholder].push_back({key, std::move(words)});
    else if (rule != nullptr && (key == L"sentence" || key == L"remedy" || key == L"example"))
      parts_[keyOf(rule->id, key)] = std::move(words);
    else if (rule == nullptr && key.starts_with(L"word "))
      words_[brenvolt::trim(key.substr(5))] = std::move(words);
    else
      fail("is neither \"rule ID\", \"word GROUP WORD = ...\" nor a part of a rule");
  }
}

std::wstring FindingWords::word(std::wstring_view group, std::wstring_view english) const {
  const auto found = words_.find(keyOf(group, english));
  return found == words_.end() ? std::wstring(english) : found->second;
}

std::wstring_view FindingWords::part(const Rule& rule, std::wstring_view name) const {
  if (const auto found = parts_.find(keyOf(rule.id, name)); found != parts_.end()) return found->second;
  return name == L"sentence" ? rule.sentence : name == L"remedy" ? rule.remedy : rule.example;
}

std::wstring FindingWords::phrase(std::wstring_view placeholder, const std::wstring& english) const {
  const auto found = phrases_.find(placeholder);
  if (found == phrases_.end()) return english;
  for (const Phrase& phrase : found->second)
    if (const auto texts = matched(phrase.english, english)) {
      std::wstring words = phrase.words;
      for (std::size_t i = 0; i < texts->size(); ++i)
        words = brenvolt::replaceAll(words, L"{" + std::to_wstring(i + 1) + L"}", (*texts)[i]);
      return words;
    }
  return english;
}

std::map<std::string, FindingWords> readFindingWords(const std::filesystem::path& folder) {
  std::map<std::string, FindingWords> languages;
  std::error_code error;
  for (const auto& entry : std::filesystem::directory_iterator(folder, error))
    if (const auto bytes = simhost::readFile(entry.path()); bytes && entry.path().extension() == ".txt")
      languages.emplace(entry.path().stem().string(), FindingWords(*bytes, entry.path().string()));
  return languages;
}

} // namespace circuits
