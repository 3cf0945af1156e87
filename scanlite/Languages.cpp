#include "scanlite/Languages.h"

#include "scanlite/Tool.h"

#include <QLocale>
#include <QRegularExpression>

namespace scanlite {

namespace {

const QString& english() {
  static const QString name = QStringLiteral("eng");
  return name;
}

// Tesseract names its languages by ISO 639-2/T, with some exceptions.
QString languageOfLocale(const QLocale& locale) {
  switch (locale.language()) {
  case QLocale::C:
    return english();
  case QLocale::Chinese:
    return locale.script() == QLocale::TraditionalHanScript ? QStringLiteral("chi_tra")
                                                            : QStringLiteral("chi_sim");
  case QLocale::NorwegianBokmal:
  case QLocale::NorwegianNynorsk:
    return QStringLiteral("nor");
  default:
    return QLocale::languageToCode(locale.language(), QLocale::ISO639Part2T);
  }
}

QStringList installedLanguages(const QString& workFolder) {
  const folivex::platform::ChildRun run =
      runTool(QStringLiteral("tesseract"), {QStringLiteral("--list-langs")}, workFolder);
  static const QRegularExpression lineEnd(QStringLiteral("[\r\n]+"));
  return run.output.split(lineEnd, Qt::SkipEmptyParts);
}

} // namespace

QString ocrLanguages(const QString& workFolder) {
  QString wanted = qEnvironmentVariable("FOLIVEX_OCR_LANGUAGE").trimmed();
  if (!wanted.isEmpty()) {
    return wanted;
  }
  const QString own = languageOfLocale(QLocale::system());
  if (own == english() || !installedLanguages(workFolder).contains(own)) {
    return english();
  }
  return own + QLatin1Char('+') + english();
}

} // namespace scanlite
