#include "mail/delivery/KeptLists.h"

#include "engine/setup/SplitSetup.h"
#include "platform/Paths.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>

namespace folivex {

namespace {

constexpr QLatin1String keptKind("emails_sending");

} // namespace

bool isListOfBrokenRun(const QString& path) {
  return platform::fileTitle(path).contains(u'_' + keptKind + u'_');
}

QString unusedListPath(const SplitSetup& setup, const QString& source, const QString& kind) {
  const QString stem = platform::joinPath(
      outputFolderOf(setup, source),
      platform::fileTitle(source) + u'_' + kind + u'_' +
          QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd_HHmmss")));
  QString path = stem + QStringLiteral(".lst");
  for (int number = 2; QFileInfo::exists(path); ++number) {
    path = QStringLiteral("%1_%2.lst").arg(stem).arg(number);
  }
  return path;
}

QString KeptLists::keep(const EmailList& list, const SplitSetup& setup, const QString& source) {
  const QString path = unusedListPath(setup, source, keptKind);
  const EmailListResult saved = saveEmailList(list, path);
  if (!saved.ok) {
    return QStringLiteral("The list could not be kept in a file while it was sent: %1 (%2)")
        .arg(saved.message, saved.note);
  }
  m_paths += path;
  return {};
}

void KeptLists::dropLast() {
  if (!m_paths.isEmpty()) {
    QFile::remove(m_paths.takeLast());
  }
}

void KeptLists::dropAll() {
  for (const QString& path : m_paths) {
    QFile::remove(path);
  }
  m_paths.clear();
}

} // namespace folivex
