#include "simhost/qt/picture_file.h"

#include "platform/file_replace.h"
#include "text/encoding.h"

#include <QBuffer>
#include <QImage>

namespace simhost {

std::string writePicture(const QImage& picture, const std::filesystem::path& file) {
  constexpr int asSmallAsPossible = 0;
  QByteArray bytes;
  QBuffer buffer(&bytes);
  if (!buffer.open(QIODevice::WriteOnly) || !picture.save(&buffer, "PNG", asSmallAsPossible))
    return file.string() + ": the picture cannot be made";
  // A folder that does not exist is a slip in the path: it is reported and not made.
  const std::wstring path = brenvolt::fromUtf8(file.string());
  const auto reason = brenvolt::replaceFile(path, bytes.toStdString());
  return reason ? file.string() + ": " + brenvolt::toUtf8(*reason) : std::string();
}

} // namespace simhost
