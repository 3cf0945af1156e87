// RecordText: texts as records for programs have them.
#pragma once

#include <QJsonObject>
#include <QString>

namespace folivex {

/// Text from a page can hold halves of characters, which no reader of JSON need take: U+FFFD stands
/// for one, as in the name of a file that was made of it.
QString recordText(const QString& text);

/// Sets the field; where the text is made of bytes that are none, they all are in a field of this
/// name with "Bytes" behind it, as base64 (RFC 4648).
void setRecordText(QJsonObject& record, const QString& key, const QString& text);

} // namespace folivex
