// The meaning of each element of a result.
#include "simhost/gui/result_line.h"

#include "simhost/lisp/list.h"
#include "simhost/qt/qt_text.h"

#include <QStringList>

#include <vector>

namespace simhost {

namespace {

/// The text between an element and the previous one, and after it.
struct Part {
  const char* before;
  const char* unit;
};

struct Row {
  HostText command;
  HostText head;
  std::vector<Part> parts;
};

const std::vector<Row>& rows() {
  static const std::vector<Row> table{
      {HostText::motor,
       HostText::motorResult,
       {{"", ""},
        {", ", ""},
        {" ", ""},
        {", ", " V"},
        {", ", " PH"},
        {", ", " Hz"},
        {", ", " rpm"},
        {", ", " A"},
        {" x ", ""}}},
      {HostText::load,
       HostText::loadResult,
       {{"", ""},
        {", ", ""},
        {" ", ""},
        {", ", " V"},
        {", ", " PH"},
        {", ", " Hz"},
        {", ", " A"},
        {" x ", ""}}},
      {HostText::wireMotor, HostText::wireResult, {{"", ""}, {" ", ""}}},
      {HostText::wireLoad, HostText::wireResult, {{"", ""}, {" ", ""}}},
  };
  return table;
}

QString textOf(const lisp::Value& value) {
  if (value.isString()) return toQt(value.asString());
  if (value.isNumber()) return QString::number(value.asNumber(), 'g', 6);
  return {};
}

} // namespace

QString resultLine(const HostTexts& texts, HostText command, const lisp::Value& answer) {
  if (answer.isString()) return toQt(answer.asString());
  for (const Row& row : rows()) {
    if (row.command != command || !answer.isCons()) continue;
    QString line;
    std::size_t place = 0;
    for (const lisp::Value& element : lisp::Elements(answer)) {
      if (place == row.parts.size()) break;
      const Part& part = row.parts[place++];
      const QString text = textOf(element);
      if (text.isEmpty()) continue;
      if (!line.isEmpty()) line += QLatin1String(part.before);
      line += text + QLatin1String(part.unit);
    }
    return texts(row.head, {line});
  }
  return {};
}

} // namespace simhost
