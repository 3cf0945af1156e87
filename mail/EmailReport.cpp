#include "mail/EmailReport.h"

#include "engine/base/Text.h"
#include "engine/report/Reports.h"
#include "mail/MailHeader.h"
#include "platform/Paths.h"

#include <QFile>

namespace folivex {

namespace {

QString field(const QString& text) {
  return csvField(withoutControlCharacters(text));
}

} // namespace

QString EmailCsvReport::open(const QString& path, const QString& source, const QDateTime& now) {
  if (!platform::isNullDevice(path)) {
    QFile::remove(path);
  }
  if (!m_file.open(path, platform::accessForSecrets(path))) {
    return QStringLiteral(
               "file error! can't write to report file: %1, try changing the report path "
               "in report options")
        .arg(path);
  }
  m_file.write(QStringLiteral("Folivex ") + reportVersion() + QStringLiteral(" Email Report,,") +
               now.toString(QStringLiteral("MM/dd/yy,HH:mm:ss")) + QStringLiteral("\r\n\r\n"));
  m_file.write(QStringLiteral("PDF Filename:,") + field(source) + QStringLiteral("\r\n\r\n"));
  m_file.write(QStringLiteral("Time,Email,File,Result\r\n"));
  return {};
}

void EmailCsvReport::write(const EmailReportLine& line) {
  if (m_file.isOpen()) {
    m_file.write(line.time.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")) + u',' +
                 field(line.recipient) + u',' + field(line.file) + u',' + field(line.result) +
                 QStringLiteral("\r\n"));
  }
}

bool EmailCsvReport::close() {
  return m_file.close();
}

} // namespace folivex
