// Looking words up.
#include "simhost/gui/host_texts.h"

#include "simhost/host/errors.h"
#include "simhost/qt/qt_text.h"

namespace simhost {

HostTexts::HostTexts(const std::filesystem::path& folder, const std::string& language)
    : library_(folder, language), module_(library_.load(L"SimHost")) {
  if (module_ == nullptr) throw BadInput((folder / "SimHost" / "en.txt").string() + ": cannot be read");
}

QString HostTexts::operator()(HostText text) const {
  const auto number = static_cast<unsigned>(text);
  const auto found = module_->texts.find(number);
  return found == module_->texts.end() ? QStringLiteral("<%1>").arg(number) : toQt(found->second);
}

QString HostTexts::operator()(HostText text, std::initializer_list<QString> parts) const {
  QString words = (*this)(text);
  // From the last one down, so that a part may itself hold a percent sign and a number.
  int number = static_cast<int>(parts.size());
  for (auto part = std::rbegin(parts); part != std::rend(parts); ++part, --number)
    words.replace(QStringLiteral("%%1").arg(number), *part);
  return words;
}

} // namespace simhost
