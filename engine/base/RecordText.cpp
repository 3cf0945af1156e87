#include "engine/base/RecordText.h"

#include "platform/RawText.h"

#include <QFile>

namespace folivex {

QString recordText(const QString& text) {
  return QString::fromUtf8(QFile::encodeName(text));
}

void setRecordText(QJsonObject& record, const QString& key, const QString& text) {
  record[key] = recordText(text);
  if (platform::hasRawBytes(text)) {
    record[key + QStringLiteral("Bytes")] =
        QString::fromLatin1(platform::rawBytes(text).toBase64());
  }
}

} // namespace folivex
