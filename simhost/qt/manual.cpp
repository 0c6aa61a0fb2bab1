// Reading the pages, which are Markdown.
#include "simhost/qt/manual.h"

#include "simhost/qt/qt_text.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include <algorithm>

namespace simhost {
namespace {

/// What who draws reads first, then what who looks after a site reads; pages that are not named here follow.
constexpr const char* order[] = {"first-circuit.md", "main-window.md", "circuits.md",    "configuration.md",
                                 "pickers.md",       "wire-lookup.md", "wire-sizing.md", "set.md",
                                 "check.md",         "workbook.md",    "tables.md",      "history.md",
                                 "tool.md"};

QString textOf(const QString& file) {
  QFile source(file);
  return source.open(QIODevice::ReadOnly) ? QString::fromUtf8(source.readAll()) : QString();
}

/// A line as the reader sees it.
QString withoutMarks(QString line) {
  static const QRegularExpression picture(QStringLiteral("!\\[([^\\]]*)\\]\\([^)]*\\)"));
  static const QRegularExpression link(QStringLiteral("\\[([^\\]]*)\\]\\([^)]*\\)"));
  static const QRegularExpression mark(QStringLiteral("<a id=[^>]*></a>|[`*|]|^[#>\\- ]+"));
  line.replace(picture, QStringLiteral("\\1"));
  line.replace(link, QStringLiteral("\\1"));
  line.replace(mark, QString());
  return line.simplified();
}

std::vector<ManualSection> sectionsOf(const QString& source) {
  std::vector<ManualSection> sections;
  for (const QString& line : source.split(QLatin1Char('\n'))) {
    qsizetype level = 0;
    while (level < line.size() && line[level] == QLatin1Char('#'))
      ++level;
    const bool isHeading = level > 0 && level < line.size() && line[level] == QLatin1Char(' ');
    if (isHeading) {
      const QString heading = withoutMarks(line);
      sections.push_back({heading, anchorOfHeading(heading), static_cast<int>(level), {}});
    } else if (!sections.empty()) {
      const QString words = withoutMarks(line);
      if (!words.isEmpty()) sections.back().text += words + QLatin1Char('\n');
    }
  }
  return sections;
}

bool hasAll(const QString& text, const QStringList& words) {
  return std::all_of(words.begin(), words.end(), [&text](const QString& word) {
    return text.contains(word, Qt::CaseInsensitive);
  });
}

} // namespace

const HelpTopic* helpTopic(std::wstring_view name) {
  const auto* row = std::find_if(std::begin(helpTopics), std::end(helpTopics), [name](const HelpTopic& each) {
    return each.name == name;
  });
  return row == std::end(helpTopics) ? nullptr : row;
}

QString anchorOfHeading(const QString& heading) {
  QString anchor;
  for (const QChar letter : heading.toLower()) {
    if (letter.isLetterOrNumber() || letter == QLatin1Char('-') || letter == QLatin1Char('_'))
      anchor += letter;
    if (letter.isSpace()) anchor += QLatin1Char('-');
  }
  return anchor;
}

Manual::Manual(const std::filesystem::path& folder, const QString& language)
    : folder_(QString::fromStdString(folder.string())), language_(language) {
  QStringList names;
  for (const char* name : order)
    names.append(QLatin1String(name));
  for (const QString& name : QDir(folder_).entryList({QStringLiteral("*.md")}, QDir::Files, QDir::Name))
    if (!names.contains(name)) names.append(name);
  for (const QString& name : names)
    if (const QString source = file(name); !source.isEmpty())
      pages_.push_back({name, sectionsOf(textOf(source))});
}

QString Manual::file(const QString& page) const {
  for (const QString& folder : {folder_ + QLatin1Char('/') + language_, folder_})
    if (const QString path = folder + QLatin1Char('/') + page; QFileInfo(path).isFile()) return path;
  return {};
}

QString Manual::anchorOf(const QString& page, const QString& topic) const {
  const QString source = textOf(file(page));
  const qsizetype mark = source.indexOf(QStringLiteral("<a id=\"%1\">").arg(topic));
  const qsizetype heading = mark < 0 ? -1 : source.indexOf(QStringLiteral("\n#"), mark);
  if (heading < 0) return {};
  const qsizetype end = source.indexOf(QLatin1Char('\n'), heading + 1);
  return anchorOfHeading(withoutMarks(source.mid(heading + 1, end - heading - 1)));
}

std::vector<ManualHit> Manual::search(const QString& words) const {
  const QStringList wanted = words.split(QLatin1Char(' '), Qt::SkipEmptyParts);
  if (wanted.isEmpty()) return {};
  std::vector<ManualHit> inHeadings;
  std::vector<ManualHit> inTexts;
  for (const ManualPage& page : pages_)
    for (const ManualSection& section : page.sections) {
      if (!hasAll(section.heading + QLatin1Char('\n') + section.text, wanted)) continue;
      const QStringList lines = section.text.split(QLatin1Char('\n'));
      const auto line = std::find_if(lines.begin(), lines.end(), [&wanted](const QString& each) {
        return each.contains(wanted.front(), Qt::CaseInsensitive);
      });
      const QString title =
          section.level == 1 ? section.heading : page.title() + QStringLiteral(" \u203a ") + section.heading;
      auto& hits = hasAll(section.heading, wanted) ? inHeadings : inTexts;
      hits.push_back({page.name, section.anchor, title, line == lines.end() ? lines.front() : *line});
    }
  inHeadings.insert(inHeadings.end(), inTexts.begin(), inTexts.end());
  return inHeadings;
}

} // namespace simhost
