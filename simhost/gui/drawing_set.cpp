// Reading set.json.
#include "simhost/gui/drawing_set.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>

namespace simhost {

std::optional<DrawingSet> readSet(const QString& file) {
  // A drawing may be large: only a file of a set's name is looked into.
  QFile source(file);
  if (QFileInfo(file).fileName() != QStringLiteral("set.json") || !source.open(QIODevice::ReadOnly))
    return std::nullopt;
  const QJsonObject json = QJsonDocument::fromJson(source.readAll()).object();
  if (json.value(QLatin1String("format")).toString() != QStringLiteral("brenvolt-set")) return std::nullopt;
  const QDir folder = QFileInfo(file).absoluteDir();
  DrawingSet set{QFileInfo(file).absoluteFilePath(), json.value(QLatin1String("title")).toString(), {}};
  for (const QJsonValue& value : json.value(QLatin1String("sheets")).toArray()) {
    const QJsonObject sheet = value.toObject();
    const QString path = folder.filePath(sheet.value(QLatin1String("file")).toString());
    QStringList tags;
    for (const QJsonValue& tag : sheet.value(QLatin1String("circuits")).toArray())
      tags.append(tag.toString());
    set.sheets.push_back({path, QFileInfo(path).completeBaseName(), tags.join(QStringLiteral(", "))});
  }
  if (set.sheets.empty()) return std::nullopt;
  return set;
}

} // namespace simhost
