#include "mail/EmailLog.h"

#include "mail/MailHeader.h"
#include "platform/FileSystem.h"
#include "platform/Paths.h"
#include "platform/TextFile.h"

#include <QFileInfo>

namespace folivex {

namespace {

constexpr int timeWidth = 20;
constexpr int recipientWidth = 100;
constexpr int fileWidth = 80;

constexpr QLatin1String timeFormat("yyyy-MM-dd HH:mm:ss");

bool endsInMidLine(const QString& path) {
  QFile file;
  platform::FileFailure failure;
  char last = '\n';
  if (platform::openForReading(file, path, platform::accessForSecrets(path), failure) &&
      file.size() > 0 && file.seek(file.size() - 1)) {
    file.getChar(&last);
  }
  return last != '\n';
}

bool mayBeLog(const QString& path) {
  const QFileInfo info(path);
  if (info.exists() && !info.isFile()) {
    return false; // a pipe would be waited for
  }
  return platform::accessForSecrets(path) != platform::FileAccess::Private ||
         platform::isTrustedPrivateFile(path);
}

} // namespace

QString emailLogLine(const QDateTime& time, const QString& recipient, const QString& file,
                     const QString& result) {
  return time.toString(timeFormat).leftJustified(timeWidth) +
         withoutControlCharacters(recipient).leftJustified(recipientWidth) + u' ' +
         withoutControlCharacters(file).leftJustified(fileWidth) + u' ' +
         withoutControlCharacters(result) + QStringLiteral("\r\n");
}

EmailLog::EmailLog(const QString& path) {
  const QString name = platform::withoutTrailingBlanks(path);
  if (name.isEmpty() || platform::isNullDevice(name) || !mayBeLog(name)) {
    return;
  }
  const bool torn = endsInMidLine(name);
  m_file.setFileName(name);
  const auto onlyMine = QFileDevice::ReadOwner | QFileDevice::WriteOwner;
  if (m_file.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered, onlyMine) &&
      torn) {
    append(QStringLiteral("\r\n"));
  }
}

void EmailLog::append(const QString& text) {
  if (!m_file.isOpen()) {
    return;
  }
  QString onDisk = text;
  m_file.write(onDisk.replace(u'\n', QLatin1String("\r\n")).toUtf8());
}

void EmailLog::write(const QDateTime& time, const QString& recipient, const QString& file,
                     const QString& result) {
  append(emailLogLine(time, recipient, file, result));
}

void EmailLog::writeFailed(const QDateTime& time, const QString& recipient, const QString& file,
                           const QString& errorText) {
  append(QStringLiteral("error: ") + withoutControlCharacters(errorText) + u'\n' +
         emailLogLine(time, recipient, file, QStringLiteral("Error - ") + errorText));
}

} // namespace folivex
