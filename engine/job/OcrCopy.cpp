#include "engine/job/OcrCopy.h"

#include "platform/FileStamp.h"
#include "platform/FileSystem.h"
#include "platform/Paths.h"

#include <QFileInfo>

#include <cerrno>
#include <utility>

namespace folivex {

namespace {

using platform::LockResult;
using platform::LockUse;

constexpr QFile::Permissions ownerOnly = QFile::ReadOwner | QFile::WriteOwner;

/// Path, size and time of change; empty when there is no such file.
QByteArray stampOf(const QString& source) {
  const auto stamp = platform::FileStamp::of(source);
  const QByteArray path = QFile::encodeName(QFileInfo(source).absoluteFilePath());
  return !stamp ? QByteArray()
                : path.toPercentEncoding("/") + '\n' + QByteArray::number(quint64{stamp->size}) +
                      ' ' + QByteArray::number(qint64{stamp->written}) + '\n';
}

QByteArray line(const platform::FileDigest& digest) {
  return digest.text().toLatin1() + '\n';
}

/// What the OCR program is told by its environment: a copy with other words is another copy.
QByteArray ocrSettings() {
  QByteArray settings;
  for (const char* name : {"FOLIVEX_OCR_LANGUAGE", "FOLIVEX_OCR_READS"}) {
    settings += qgetenv(name).trimmed().toPercentEncoding("+") + '\n';
  }
  return settings;
}

} // namespace

OcrCopy::OcrCopy(const QString& source, const QString& copyPath, std::function<void()> tick)
    : m_source(source), m_copyPath(copyPath), m_tick(std::move(tick)) {
  const QByteArray stamp = stampOf(source);
  const platform::FileDigest digest = platform::FileDigest::of(source, m_tick);
  if (!stamp.isEmpty() && digest.isKnown()) {
    m_origin = "Folivex OCR copy 2\n" + stamp + line(digest) + ocrSettings();
  }
}

OcrCopy::~OcrCopy() {
#ifdef Q_OS_WIN
  m_own.close(); // else it could not be removed
#endif
  if (!m_made.isEmpty()) {
    QFile::remove(m_made);
  }
}

LockResult OcrCopy::lock() {
  const QString path = m_copyPath + QStringLiteral(".source");
  int error = platform::openForLock(m_record, path, false);
  if (error == ENOENT) {
    error = platform::openForLock(m_record, path, true);
    m_record.setPermissions(ownerOnly);
  }
  if (error != 0 || !platform::isFileAt(m_record, path) || !platform::isTrustedPrivateFile(path)) {
    return LockResult::Unable;
  }
  return platform::lockFile(m_record, LockUse::Shared);
}

QByteArray OcrCopy::written() {
  constexpr qint64 longest = 65536;
  return m_record.seek(0) ? m_record.read(longest) : QByteArray();
}

bool OcrCopy::isWhole(const QByteArray& told, const QString& copy) const {
  return told.startsWith(m_origin) && told.size() > m_origin.size() &&
         told == m_origin + line(platform::FileDigest::of(copy, m_tick));
}

/// The run that made the copy has it alone to its end. This one reads its bytes under a name of its
/// own, locked from the first: another copy may come to the place meanwhile.
bool OcrCopy::takeBytesOf(const QByteArray& told) {
  constexpr qint64 step = 1 << 20;
  m_made = platform::newPartPath(platform::folderOf(m_copyPath));
  QFile copy(m_copyPath);
  if (!copy.open(QIODevice::ReadOnly) || platform::openForLock(m_own, m_made, true) != 0 ||
      platform::lockFile(m_own, LockUse::Alone) == LockResult::Busy) {
    m_own.close();
    m_made.clear();
    return false;
  }
  m_own.setPermissions(ownerOnly);
  for (QByteArray bytes; !(bytes = copy.read(step)).isEmpty();) {
    if (m_own.write(bytes) != bytes.size()) {
      break; // the comparison tells
    }
    if (m_tick) {
      m_tick();
    }
  }
  if (!isWhole(told, m_made)) {
    m_own.close();
    QFile::remove(std::exchange(m_made, QString()));
    return false;
  }
  m_path = m_made;
  return true;
}

bool OcrCopy::isThere(const std::function<bool()>& wait) {
  while (!m_origin.isEmpty()) {
    const LockResult locked = lock();
    const QByteArray told = m_record.isOpen() ? written() : QByteArray();
    if (locked == LockResult::Locked && isWhole(told, m_copyPath)) {
      m_path = m_copyPath;
      return true;
    }
    if (locked == LockResult::Locked &&
        platform::lockFile(m_record, LockUse::Alone) == LockResult::Locked) {
      return false; // to be made here
    }
    m_record.close();
    if (locked == LockResult::Busy && told.startsWith(m_origin) && told != m_origin) {
      return takeBytesOf(told);
    }
    // While others read or make the copy of their source, this run's is made elsewhere.
    const bool isBeingMade = told.isEmpty() || told == m_origin;
    if (locked == LockResult::Unable || !isBeingMade || !wait()) {
      return false;
    }
  }
  return false;
}

QString OcrCopy::placeToMake() {
  if (m_record.isOpen()) {
    m_record.resize(0); // from now on the old copy is nobody's, and others wait for the new one
    m_record.seek(0);
    m_record.write(m_origin);
  }
  return m_made = platform::newPartPath(platform::folderOf(m_copyPath));
}

bool OcrCopy::takeMade() {
  if (platform::openForLock(m_own, m_made, false) != 0) {
    return false;
  }
  // Where files cannot be locked, nobody looks for those of dead runs either.
  if (platform::lockFile(m_own, LockUse::Alone) == LockResult::Busy ||
      !platform::isFileAt(m_own, m_made)) {
    m_own.close();
    return false;
  }
  m_path = m_record.isOpen() && keep() ? m_copyPath : m_made;
  return true;
}

bool OcrCopy::keep() {
  const QByteArray copy = line(platform::FileDigest::of(m_made, m_tick));
#ifdef Q_OS_WIN
  m_own.close();
#endif
  platform::FileFailure failure;
  if (!platform::replaceFile(m_made, m_copyPath, failure)) {
    return false;
  }
  m_own.close();
  m_made.clear();
  // What was made while the source changed is nobody's copy.
  m_record.write(m_origin.contains(stampOf(m_source)) ? copy : QByteArray("changed\n"));
  return true;
}

} // namespace folivex
