#include "mail/import/EmailRowRules.h"

#include "platform/FileSystem.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>

#include <tuple>

namespace folivex {

namespace {

/// A page number as a cell shows it: "3", and "3.0" where a column has decimals. -1: it is none.
int pageOf(const QString& cell) {
  static const QRegularExpression whole(QStringLiteral("\\A([0-9]{1,9})(?:[.,]0+)?\\z"));
  const QRegularExpressionMatch match = whole.match(cell.trimmed());
  return match.hasMatch() ? match.captured(1).toInt() : -1;
}

} // namespace

QString readPages(const QString& startCell, const QString& endCell, int& start, int& end) {
  if (startCell.trimmed().isEmpty() && endCell.trimmed().isEmpty()) {
    return {};
  }
  const int first = pageOf(startCell);
  const int last = pageOf(endCell);
  for (const auto& [cell, page, header] : {std::tuple(startCell, first, "Extract Page Start"),
                                           std::tuple(endCell, last, "Extract Page End")}) {
    if (cell.trimmed().isEmpty()) {
      return QStringLiteral("\"%1\" is blank").arg(QLatin1String(header));
    }
    if (page < 0) {
      return QStringLiteral("\"%1\" in \"%2\" is no page number")
          .arg(cell.simplified(), QLatin1String(header));
    }
  }
  const bool isWholeFile = first == 0 && last == 0;
  if (!isWholeFile && (first < 1 || last < first)) {
    return QStringLiteral("pages %1 to %2 are no range").arg(first).arg(last);
  }
  start = first;
  end = last;
  return {};
}

QString fullPath(const QString& file, const QString& folder) {
  if (file.isEmpty() || QDir::isAbsolutePath(file)) {
    return file;
  }
  static const QRegularExpression otherSystem(QStringLiteral("\\A(?:[A-Za-z]:|\\\\\\\\)"));
  if (otherSystem.match(file).hasMatch()) {
    return file;
  }
  QString path = QDir(folder).filePath(file);
  // A sheet made on Windows separates folders by backslashes, which here may stand in a name.
  if (!QFileInfo::exists(path)) {
    path = QDir(folder).filePath(QString(file).replace(u'\\', u'/'));
  }
  return QDir::toNativeSeparators(QDir::cleanPath(path));
}

QString fileProblem(const QString& path) {
  if (path.isEmpty()) {
    return QStringLiteral("there is no file to attach");
  }
  if (!QFileInfo::exists(path)) {
    return QStringLiteral("the file %1 is missing").arg(path);
  }
  return platform::isReadableFile(path) ? QString()
                                        : QStringLiteral("the file %1 cannot be read").arg(path);
}

} // namespace folivex
