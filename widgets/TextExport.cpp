#include "widgets/TextExport.h"

#include <QSaveFile>

namespace folivex {

QString exportText(const QString& path, const QString& text) {
  QSaveFile file(path);
  const QByteArray bytes = text.toUtf8();
  if (file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.commit()) {
    return {};
  }
  return file.errorString();
}

} // namespace folivex
