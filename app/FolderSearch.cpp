#include "app/FolderSearch.h"

#include "platform/FoundFile.h"
#include "platform/Paths.h"
#include "platform/RawText.h"

#include <QDir>
#include <QRegularExpression>

#include <algorithm>
#include <system_error>

namespace folivex {

namespace {

namespace fs = std::filesystem;

bool isPdfName(const QString& name) {
  return name.endsWith(QStringLiteral(".pdf")) || name.endsWith(QStringLiteral(".PDF"));
}

/// A file name as it is, but for "*", which stands for any text, and the case of ".pdf", which
/// nobody means to tell apart.
QRegularExpression wildcard(const QString& pattern) {
  const bool namesEnding = isPdfName(pattern);
  QStringList parts;
  for (const QString& part : pattern.chopped(namesEnding ? 4 : 0).split(QLatin1Char('*'))) {
    parts += QRegularExpression::escape(part);
  }
  const QString ending = namesEnding ? QStringLiteral("\\.[Pp][Dd][Ff]") : QString();
  QRegularExpression::PatternOptions options = QRegularExpression::DotMatchesEverythingOption;
#if defined(Q_OS_WIN)
  options |= QRegularExpression::CaseInsensitiveOption;
#endif
  return QRegularExpression(
      QRegularExpression::anchoredPattern(parts.join(QStringLiteral(".*")) + ending), options);
}

} // namespace

FolderSearch FolderSearch::of(const QString& pattern) {
  const QString named = platform::folderOf(pattern);
  const QDir folder(named.isEmpty() ? QStringLiteral(".") : named);
  const QRegularExpression wanted = wildcard(platform::fileTitle(pattern));
  FolderSearch found;
  QStringList notTaken;
  QStringList otherSpellings; // ".Pdf"
  std::error_code error;
  fs::directory_iterator entries(QFileInfo(folder.path()).filesystemFilePath(), error);
  for (; !error && entries != fs::directory_iterator(); entries.increment(error)) {
    const QString name = platform::textOf(entries->path().filename().native());
    std::error_code ignored;
    if (name.startsWith(u'.') || !name.endsWith(QLatin1String(".pdf"), Qt::CaseInsensitive) ||
        !wanted.match(name).hasMatch() || entries->is_directory(ignored)) {
      continue;
    }
    const QString path = folder.filePath(name);
    if (!isPdfName(name)) {
      otherSpellings += name;
    } else if (const QString problem = platform::problemOf(*entries); !problem.isEmpty()) {
      notTaken += QStringLiteral("%1: the file is not taken: %2")
                      .arg(folder.filePath(platform::rawText(entries->path().filename().native())),
                           problem);
    } else {
      found.paths += path;
    }
  }
  for (QStringList* list : {&found.paths, &notTaken, &otherSpellings}) {
    std::sort(list->begin(), list->end());
  }
  found.isWhole = !error && notTaken.isEmpty();
  if (error) {
    found.told += QStringLiteral("%1: the folder cannot be read: %2")
                      .arg(folder.path(), QString::fromLocal8Bit(error.message().c_str()));
  }
  found.told += notTaken;
  if (!notTaken.isEmpty()) {
    found.told += QStringLiteral("%1: %2 file(s) are not taken").arg(pattern).arg(notTaken.size());
  }
  if (!otherSpellings.isEmpty()) {
    found.told += QStringLiteral("%1: only names that end in .pdf or .PDF are looked for; left "
                                 "out: %2")
                      .arg(pattern, otherSpellings.join(QStringLiteral(", ")));
  }
  if (found.paths.isEmpty()) {
    found.told += QStringLiteral("%1: no PDF is there").arg(pattern);
  }
  return found;
}

} // namespace folivex
