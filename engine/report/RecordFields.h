// RecordFields: fields that records of several types have.
#pragma once

#include "engine/base/RecordText.h"
#include "engine/output/PageAccount.h"
#include "engine/report/Reports.h"
#include "platform/FileStamp.h"

#include <QJsonArray>
#include <QJsonObject>

namespace folivex {

/// A record of this type, which says what other fields it has.
QJsonObject recordOf(const char* type);

/// The path as an absolute one.
void setPath(QJsonObject& record, const QString& path);

/// Size in bytes and time of the last write: whole seconds since 1970 and the nanoseconds beyond
/// them, since both together are more than a double holds.
void setStamp(QJsonObject& record, const platform::FileStamp& stamp);

/// The pages, matched text, file and address of an output; without the last where there is none.
void setOutput(QJsonObject& record, const ReportLine& line, const QString& address);

/// Where all pages are, by their numbers.
QJsonObject pagesRecord(const PageAccount& account);

} // namespace folivex
