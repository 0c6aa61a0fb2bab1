#include "simhost/qt/picture_file.h"

#include "simhost/host/files.h"

#include <QBuffer>
#include <QImage>

namespace simhost {

std::string writePicture(const QImage& picture, const std::filesystem::path& file) {
  constexpr int asSmallAsPossible = 0;
  QByteArray bytes;
  QBuffer buffer(&bytes);
  if (!buffer.open(QIODevice::WriteOnly) || !picture.save(&buffer, "PNG", asSmallAsPossible))
    return file.string() + ": the picture cannot be made";
  return replaceFile(file, bytes.toStdString());
}

} // namespace simhost
