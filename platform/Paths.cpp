#include "platform/Paths.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>

#include <algorithm>

#ifdef Q_OS_WIN
#include <windows.h>
#else
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace folivex::platform {

namespace {

/// Room for the folder in the formats that take it.
constexpr qsizetype maxTemporaryFolder = 255;

qsizetype lastSeparator(const QString& path) {
  return std::max(path.lastIndexOf(QLatin1Char('/')), path.lastIndexOf(QLatin1Char('\\')));
}

QString withSeparator(const QString& folder) {
  if (!folder.isEmpty() && isSeparator(folder.back())) {
    return folder;
  }
  return folder + separator();
}

#ifndef Q_OS_WIN
/// The folder is made 0700, or brought back to it; empty when it is not ours to use.
QString privateFolder() {
  QString folder = QDir::homePath() + QStringLiteral("/.cache/folivex");
  QDir().mkpath(folderOf(folder));
  const QByteArray name = QFile::encodeName(folder);
  ::mkdir(name.constData(), 0700);
  struct stat status {};
  if (lstat(name.constData(), &status) != 0 || !S_ISDIR(status.st_mode) ||
      status.st_uid != geteuid()) {
    return {};
  }
  if ((status.st_mode & 0777) != 0700 && ::chmod(name.constData(), 0700) != 0) {
    return {};
  }
  return folder;
}
#endif

} // namespace

QChar separator() {
  return QDir::separator();
}

bool isSeparator(QChar c) {
  return c == QLatin1Char('/') || c == QLatin1Char('\\');
}

QString fileTitle(const QString& path) {
  return path.mid(lastSeparator(path) + 1);
}

QString folderOf(const QString& path) {
  const qsizetype last = lastSeparator(path);
  const bool isRoot = last == 0 || (last == 2 && path[1] == QLatin1Char(':'));
  return path.left(isRoot ? last + 1 : std::max<qsizetype>(last, 0));
}

QString joinPath(const QString& folder, const QString& name) {
  return folder.isEmpty() ? name : withSeparator(folder) + name;
}

QString withoutTrailingBlanks(const QString& path) {
  qsizetype end = path.size();
  while (end > 0 && path[end - 1] == QLatin1Char(' ')) {
    --end;
  }
  return path.left(end);
}

bool isNullDevice(const QString& path) {
  const QString name = withoutTrailingBlanks(path);
  return name.compare(QLatin1String("nul"), Qt::CaseInsensitive) == 0 ||
         name == QLatin1String("/dev/null");
}

bool isSameFile(const QString& a, const QString& b) {
  const QFileInfo left(withoutTrailingBlanks(a));
  const QFileInfo right(withoutTrailingBlanks(b));
  if (left.exists() && right.exists()) {
    return left.canonicalFilePath() == right.canonicalFilePath();
  }
  return QDir::cleanPath(left.absoluteFilePath()) == QDir::cleanPath(right.absoluteFilePath());
}

QString temporaryFolder() {
#ifdef Q_OS_WIN
  return withSeparator(QDir::toNativeSeparators(QDir::tempPath())).left(maxTemporaryFolder);
#else
  // A name that was cut would be another folder: too long a one counts as none.
  const auto usable = [](const QString& folder) {
    return QDir::isAbsolutePath(folder) && QFileInfo(folder).isDir() &&
           withSeparator(folder).size() <= maxTemporaryFolder;
  };
  const QString given = qEnvironmentVariable("TMPDIR");
  if (usable(given)) {
    return withSeparator(given);
  }
  const QString own = privateFolder();
  return usable(own) ? withSeparator(own) : QString();
#endif
}

bool isInTemporaryFolder(const QString& path) {
  const QString folder = temporaryFolder();
  const QString absolute = QFileInfo(withoutTrailingBlanks(path)).absolutePath();
  return !folder.isEmpty() && isSameFile(absolute, folder);
}

QString defaultOutputFolder() {
#ifdef Q_OS_WIN
  return QStringLiteral("c:\\splitoutput");
#else
  return joinPath(QDir::homePath(), QStringLiteral("splitoutput"));
#endif
}

QString programFolder() {
#ifdef Q_OS_LINUX
  // Asked of the system and not of the application object, which a test or tool may not have.
  return folderOf(QFileInfo(QStringLiteral("/proc/self/exe")).symLinkTarget());
#else
  return QDir::toNativeSeparators(QCoreApplication::applicationDirPath());
#endif
}

#ifdef Q_OS_WIN

std::wstring systemPath(const QString& path) {
  // What the system adds in places stays below its limit of 260 units.
  constexpr qsizetype longest = 240;
  const QString whole =
      QDir::toNativeSeparators(QDir::cleanPath(QFileInfo(path).absoluteFilePath()));
  if (whole.size() <= longest || whole.startsWith(QLatin1String("\\\\?\\"))) {
    return QDir::toNativeSeparators(path).toStdWString();
  }
  const QString longForm = whole.startsWith(QLatin1String("\\\\"))
                               ? QStringLiteral("\\\\?\\UNC") + whole.sliced(1)
                               : QStringLiteral("\\\\?\\") + whole;
  return longForm.toStdWString();
}

namespace {

/// What the shell starts this program by; empty when nothing is there.
QString installFolderIn(HKEY registry, bool& isThere) {
  constexpr auto key = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\App Paths\\Folivex.exe";
  wchar_t path[MAX_PATH] = {};
  DWORD bytes = sizeof(path);
  const LSTATUS read = RegGetValueW(registry, key, L"Path", RRF_RT_REG_SZ, nullptr, path, &bytes);
  HKEY opened = nullptr;
  if (RegOpenKeyExW(registry, key, 0, KEY_READ, &opened) == ERROR_SUCCESS) {
    RegCloseKey(opened);
    isThere = true;
  }
  return read == ERROR_SUCCESS ? QString::fromWCharArray(path) : QString();
}

} // namespace

InstallFolder installFolderOfSetup() {
  if (!qEnvironmentVariableIsSet("FOLIVEX_SETUP_IN_INSTALL_FOLDER")) {
    return {};
  }
  // One user's own installation comes before the one for all.
  bool isThere = false;
  for (const HKEY registry : {HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE}) {
    if (const QString path = installFolderIn(registry, isThere); !path.isEmpty()) {
      return {true, path, {}};
    }
  }
  return {true,
          {},
          isThere ? QStringLiteral("Can't find install path in registry - please reinstall")
                  : QStringLiteral("Install key not found in registry!")};
}

#else

InstallFolder installFolderOfSetup() {
  return {};
}

#endif

QString safePathComponent(const QString& text) {
  QString name;
  name.reserve(text.size() + 1);
  for (const QChar c : text) {
    // The second set of control characters too: terminals obey them.
    const bool harmful = isSeparator(c) || c.category() == QChar::Other_Control;
    name += harmful ? QLatin1Char('_') : c;
  }
  // On Windows "x. ." opens "x", so nothing of the kind may be left at the end.
  while (name.endsWith(QLatin1Char('.')) || name.endsWith(QLatin1Char(' '))) {
    name.chop(1);
  }
  static const QRegularExpression device(
      QStringLiteral("^(con|prn|aux|nul|com[0-9]|lpt[0-9])[ ]*(\\.|$)"),
      QRegularExpression::CaseInsensitiveOption);
  if (name.isEmpty() || device.match(name).hasMatch()) {
    name.prepend(QLatin1Char('_'));
  }
  return name;
}

} // namespace folivex::platform
