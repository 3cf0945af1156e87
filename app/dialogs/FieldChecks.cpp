#include "app/dialogs/FieldChecks.h"

#include "platform/Paths.h"

#include <QFileInfo>
#include <QRegularExpression>

namespace folivex {

namespace {

bool isOtherSystemsPath([[maybe_unused]] const QString& path) {
#ifdef Q_OS_WIN
  return false;
#else
  static const QRegularExpression drive(QStringLiteral("^[A-Za-z]:[\\\\/]"));
  return path.startsWith(QStringLiteral("\\\\")) || drive.match(path).hasMatch();
#endif
}

/// The nearest folder or file above `path` that is there.
QFileInfo nearestExisting(const QString& path) {
  QFileInfo info(path);
  while (!info.exists()) {
    const QString above = info.absolutePath();
    if (above == info.absoluteFilePath()) {
      break;
    }
    info = QFileInfo(above);
  }
  return info;
}

} // namespace

QString wholeNumberProblem(const QString& text, WholeLimits limits) {
  bool isNumber = false;
  const int value = text.trimmed().toInt(&isNumber);
  if (!isNumber) {
    return text.trimmed().isEmpty() ? QStringLiteral("A whole number belongs here.")
                                    : QStringLiteral("This is no whole number.");
  }
  if (value < limits.least) {
    return QStringLiteral("The least that can stand here is %1.").arg(limits.least);
  }
  if (value > limits.most) {
    return QStringLiteral("The most that can stand here is %1.").arg(limits.most);
  }
  return {};
}

QString factorProblem(const QString& text) {
  bool isNumber = false;
  const double value = text.trimmed().toDouble(&isNumber);
  constexpr double most = 1000;
  return isNumber && value > 0 && value <= most
             ? QString()
             : QStringLiteral("A number above 0 belongs here, such as 1.02.");
}

QString positionProblem(const QString& text) {
  const QString position = text.trimmed();
  if (position.isEmpty()) {
    return {};
  }
  static const QRegularExpression form(
      QStringLiteral("^(-?\\d{1,9})(?:-(\\d{1,9}))?(?:\\|-?\\d{1,9})?$"));
  const QRegularExpressionMatch match = form.match(position);
  if (!match.hasMatch()) {
    return QStringLiteral("A position is a number, a range or an alternative: 320, 320-325, "
                          "320|400.");
  }
  if (!match.captured(2).isEmpty() && match.captured(2).toInt() < match.captured(1).toInt()) {
    return QStringLiteral("This range ends before it begins.");
  }
  return {};
}

QString folderProblem(const QString& path) {
  const QString folder = platform::withoutTrailingBlanks(path);
  if (isOtherSystemsPath(folder)) {
    return QStringLiteral("This is a folder of another system.");
  }
  const QFileInfo there = nearestExisting(folder);
  if (!there.isDir()) {
    return QStringLiteral("%1 is no folder.").arg(there.filePath());
  }
  if (!there.isWritable()) {
    return QStringLiteral("Nothing can be written to %1.").arg(there.filePath());
  }
  return {};
}

} // namespace folivex
