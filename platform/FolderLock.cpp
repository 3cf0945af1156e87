#include "platform/FolderLock.h"

#include "platform/Paths.h"

#include <QDateTime>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QSysInfo>

#include <cerrno>
#include <system_error>

#ifndef Q_OS_WIN
#include <pwd.h>
#include <unistd.h>
#endif

namespace folivex::platform {

namespace {

/// What a file of another process may make this one read and tell.
constexpr qint64 mostRead = 64LL * 1024;
constexpr qsizetype mostTold = 5;
constexpr qsizetype longestTold = 300;
/// Each means that another process removed the file, or made it, in between.
constexpr int attempts = 100;

const QLatin1StringView aloneMark(", alone: ");

QString userName() {
#ifdef Q_OS_WIN
  return qEnvironmentVariable("USERNAME");
#else
  const passwd* user = getpwuid(geteuid());
  return user == nullptr ? QString::number(geteuid()) : QFile::decodeName(user->pw_name);
#endif
}

const QByteArray runFileStart(".folivex-run-");
const QByteArray aloneFileStart(".folivex-run-alone-");

bool meansNoPlace(int error) {
  return error == EACCES || error == EPERM || error == EROFS || error == ENOENT || error == ENOTDIR;
}

QString reasonOf(int error) {
  return error == ELOOP ? QStringLiteral("it is a link, or no ordinary file")
                        : QString::fromLocal8Bit(std::system_category().message(error).c_str());
}

/// Lines of a file that anybody may have written.
QString told(const QByteArray& line) {
  QString text = QString::fromUtf8(line).simplified().left(longestTold);
  return text.removeIf([](QChar c) { return !c.isPrint(); });
}

} // namespace

FolderLock::FolderLock(const QString& folder, LockUse use, const QString& work, Locks locks)
    : m_folder(folder), m_use(use), m_work(work),
      m_isDependable(locks == Locks::AsFound && hasDependableLocks(folder)),
      m_lockPath(joinPath(folder, QStringLiteral(".folivex.lock"))) {}

FolderLock::~FolderLock() {
  leave();
}

void FolderLock::leave() {
  if (!m_runPath.isEmpty()) {
    m_file.close();
    QFile::remove(std::exchange(m_runPath, QString()));
  } else if (m_file.isOpen()) {
#ifdef Q_OS_WIN
    m_file.close();
    QFile::remove(m_lockPath); // refused while another one has it open
#else
    if (lockFile(m_file, LockUse::Alone) == LockResult::Locked && isFileAt(m_file, m_lockPath)) {
      QFile::remove(m_lockPath);
    }
    m_file.close();
#endif
  }
}

FolderLock::State FolderLock::take() {
  m_others.clear();
  m_problem.clear();
  State state = m_isDependable ? takeLock() : takeRunFile();
  if (state == State::Held) {
    // Whoever reaches the folder from a machine without locks on it has a file there, too.
    state = refuseBesideRunFiles();
  }
  if (state != State::Held) {
    leave();
  }
  return state;
}

FolderLock::State FolderLock::takeLock() {
  for (int attempt = 0; attempt < attempts; ++attempt) {
    m_file.close();
    int error = openForLock(m_file, m_lockPath, false);
    const bool isNew = error == ENOENT;
    if (isNew) {
      error = openForLock(m_file, m_lockPath, true);
    }
    if (error == EEXIST) {
      continue;
    }
    if (error != 0) {
      // A lock file that is there and cannot be opened may be another run's.
      const bool hasPlace = !meansNoPlace(error) || QFileInfo::exists(m_lockPath);
      return hasPlace ? refuse(m_lockPath, reasonOf(error)) : State::NoPlace;
    }
    switch (lockFile(m_file, m_use)) {
    case LockResult::Unable:
      m_file.close();
      if (isNew) {
        QFile::remove(m_lockPath);
      }
      m_isDependable = false;
      return takeRunFile();
    case LockResult::Busy:
      readOthers();
      return State::Busy;
    case LockResult::Locked:
      if (isFileAt(m_file, m_lockPath)) {
        signFile(m_file, line().toUtf8());
        return State::Held;
      }
    }
  }
  return State::Busy;
}

FolderLock::State FolderLock::takeRunFile() {
  int error = EEXIST;
  for (int attempt = 0; attempt < attempts && error == EEXIST; ++attempt) {
    const QByteArray& start = m_use == LockUse::Alone ? aloneFileStart : runFileStart;
    const quint64 number = QRandomGenerator::global()->generate64();
    m_runPath = joinPath(m_folder, start + QString::number(number, 16));
    error = openForLock(m_file, m_runPath, true);
  }
  if (error != 0) {
    const QString path = std::exchange(m_runPath, QString());
    return meansNoPlace(error) ? State::NoPlace : refuse(path, reasonOf(error));
  }
  m_file.write(line().toUtf8());
  return State::Held;
}

/// Two who come at once see each other, and both go.
FolderLock::State FolderLock::refuseBesideRunFiles() {
  const bool alone = m_use == LockUse::Alone;
  QStringList names = filesThatBeginWith(alone ? runFileStart : aloneFileStart, m_folder);
  names.removeAll(fileTitle(m_runPath));
  if (!m_isDependable && QFile::exists(m_lockPath)) {
    names += fileTitle(m_lockPath);
  }
  for (const QString& name : names) {
    const QString path = joinPath(m_folder, name);
    QFile other;
    if (openForLock(other, path, false) == 0) {
      const QByteArray content = other.read(mostRead);
      if (path == m_lockPath && !alone && !content.contains(aloneMark.data())) {
        continue;
      }
      m_others = told(content);
    }
    return refuse(path, QStringLiteral("it tells of another run%1; when none is at work there, on "
                                       "any machine, remove this file")
                            .arg(m_others.isEmpty() ? QString() : " (" + m_others + ')'));
  }
  return State::Held;
}

FolderLock::State FolderLock::refuse(const QString& path, const QString& reason) {
  m_problem = QStringLiteral("%1: %2").arg(path, reason);
  return State::Refused;
}

QString FolderLock::line() const {
  return QStringLiteral("%1 on %2 since %3%4%5\n")
      .arg(userName(), QSysInfo::machineHostName(),
           QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")),
           m_use == LockUse::Alone ? QString(aloneMark) : QStringLiteral(": "),
           QString(m_work).replace(QLatin1Char('\n'), QLatin1Char(' ')));
}

void FolderLock::readOthers() {
  QStringList lines;
  qint64 offset = 0;
  m_file.seek(0);
  for (const QByteArray& each : m_file.read(mostRead).split('\n')) {
    if (!each.isEmpty() && lines.size() < mostTold && isSignatureAlive(m_file, offset)) {
      lines += told(each);
    }
    offset += each.size() + 1;
  }
  m_others = lines.join(QLatin1Char('\n'));
}

} // namespace folivex::platform
