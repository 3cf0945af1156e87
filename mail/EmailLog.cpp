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

/// What a line holds behind its time.
QString behindTime(const QString& recipient, const QString& file, const QString& result) {
  return withoutControlCharacters(recipient).leftJustified(recipientWidth) + u' ' +
         withoutControlCharacters(file).leftJustified(fileWidth) + u' ' +
         withoutControlCharacters(result);
}

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
  return time.toString(timeFormat).leftJustified(timeWidth) + behindTime(recipient, file, result) +
         QStringLiteral("\r\n");
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

/// In one write and down to the disk: what a later run believes must outlive the machine's death.
void EmailLog::append(const QString& text) {
  if (!m_file.isOpen()) {
    return;
  }
  QString onDisk = text;
  m_file.write(onDisk.replace(u'\n', QLatin1String("\r\n")).toUtf8());
  platform::FileFailure ignored;
  static_cast<void>(platform::syncToDisk(m_file, ignored));
}

void EmailLog::writeSent(const QDateTime& time, const QString& recipient, const QString& file) {
  append(emailLogLine(time, recipient, file, emailLogOk));
}

void EmailLog::writeFailed(const QDateTime& time, const QString& recipient, const QString& file,
                           const QString& errorText) {
  append(QStringLiteral("error: ") + withoutControlCharacters(errorText) + u'\n' +
         emailLogLine(time, recipient, file, QStringLiteral("Error - ") + errorText));
}

SentBefore SentBefore::fromLog(const QString& path) {
  SentBefore before;
  QFile file;
  platform::FileFailure failure;
  if (path.isEmpty() ||
      !platform::openForReading(file, path, platform::accessForSecrets(path), failure)) {
    return before;
  }
  constexpr qint64 blockSize = 256LL * 1024;
  QByteArray rest;
  for (QByteArray block = file.read(blockSize); !block.isEmpty(); block = file.read(blockSize)) {
    rest += block;
    qsizetype from = 0;
    for (qsizetype end = rest.indexOf('\n'); end >= 0; end = rest.indexOf('\n', from)) {
      before.readLine(rest.mid(from, end + 1 - from));
      from = end + 1;
    }
    // More than any line of ours: it is somebody else's file.
    rest = rest.size() - from > blockSize ? QByteArray() : rest.mid(from);
  }
  return before;
}

void SentBefore::readLine(const QByteArray& bytes) {
  if (!bytes.endsWith("\r\n")) {
    return;
  }
  const QString line = QString::fromUtf8(bytes).trimmed();
  const QDateTime time = QDateTime::fromString(line.left(timeFormat.size()), timeFormat);
  if (!time.isValid() || line.size() < timeWidth) {
    return;
  }
  Mail mail{time, Told::Nothing};
  qsizetype end = 0;
  const QString error = QStringLiteral(" Error - ");
  if (line.endsWith(u' ' + emailLogOk)) {
    mail.told = Told::Sent;
    end = line.size() - emailLogOk.size();
  } else {
    end = line.indexOf(error, timeWidth) + 1;
    if (end == 0) {
      return;
    }
    if (QStringView(line).mid(end + error.size() - 1).startsWith(emailLogUnknown)) {
      mail.told = Told::MayHaveArrived;
    }
  }
  Mail& known = m_mails[line.mid(timeWidth, end - timeWidth)];
  // A mail that was sent stays sent, whatever a later try came to.
  if (known.told != Told::Sent || mail.told == Told::Sent) {
    known = mail;
  }
}

SentBefore::Told SentBefore::told(const QString& recipient, const QString& file,
                                  const QDateTime& fileTime) const {
  const auto found = m_mails.constFind(behindTime(recipient, file, QString()));
  // The log's times are whole seconds.
  const bool isOfThisFile =
      found != m_mails.constEnd() &&
      (!fileTime.isValid() || found->time.toSecsSinceEpoch() >= fileTime.toSecsSinceEpoch());
  return isOfThisFile ? found->told : Told::Nothing;
}

} // namespace folivex
