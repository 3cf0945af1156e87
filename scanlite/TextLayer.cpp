#include "scanlite/TextLayer.h"

#include "platform/FileSystem.h"
#include "scanlite/Languages.h"
#include "scanlite/Tool.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

namespace scanlite {

namespace {

using folivex::platform::ChildEnd;
using folivex::platform::ChildRun;

// OCRmyPDF's exit codes that mean something to a person.
enum OcrExit { OcrDone = 0, OcrBadInput = 2, OcrMissing = 3, OcrNoAccess = 5, OcrEncrypted = 8 };

constexpr int qpdfErrors = 2;

// Programs tell the reason last; what they wrote before is progress and warnings.
QString lastWords(const QString& output) {
  constexpr qsizetype mostCharacters = 600;
  return output.isEmpty() ? QStringLiteral("it gave no reason") : output.right(mostCharacters);
}

ChildRun runOcr(const QString& source, const QString& target, const QString& languages,
                const QString& workFolder) {
  // The copy is read once and thrown away: no time for archiving, linearising or recompressing it.
  // Pages are not turned: positions must stay those of the source.
  return runTool(QStringLiteral("ocrmypdf"),
                 {QStringLiteral("--skip-text"), QStringLiteral("--output-type"),
                  QStringLiteral("pdf"), QStringLiteral("--optimize"), QStringLiteral("0"),
                  QStringLiteral("--fast-web-view"), QStringLiteral("999999"),
                  QStringLiteral("--quiet"), QStringLiteral("--language=") + languages, source,
                  target},
                 workFolder);
}

ScanOutcome ocrFailure(const ChildRun& run, const QString& languages) {
  if (run.end == ChildEnd::Stopped) {
    return {ScanResult::Stopped, QStringLiteral("stopped")};
  }
  if (run.end == ChildEnd::Missing) {
    return {ScanResult::ProgramMissing,
            QStringLiteral("OCRmyPDF (ocrmypdf) is not installed or not on the search path")};
  }
  if (run.end != ChildEnd::Exited) {
    return {ScanResult::Failed, QStringLiteral("OCRmyPDF crashed: %1").arg(lastWords(run.output))};
  }
  switch (run.exitCode) {
  case OcrBadInput:
    return {ScanResult::NotAPdf,
            QStringLiteral("no PDF that OCRmyPDF can read: %1").arg(lastWords(run.output))};
  case OcrMissing:
    // One code for both; only the text tells a language from a program.
    if (run.output.contains(QLatin1String("language"), Qt::CaseInsensitive)) {
      return {ScanResult::LanguageMissing,
              QStringLiteral("Tesseract has no data for the language %1 (Debian: the "
                             "packages tesseract-ocr-...)")
                  .arg(languages)};
    }
    return {
        ScanResult::ProgramMissing,
        QStringLiteral("a program that OCRmyPDF needs is missing: %1").arg(lastWords(run.output))};
  case OcrNoAccess:
    return {ScanResult::NotWritable,
            QStringLiteral("the copy cannot be written: %1").arg(lastWords(run.output))};
  case OcrEncrypted:
    return {ScanResult::NeedsPassword, QStringLiteral("a password is needed to open it")};
  default:
    return {
        ScanResult::Failed,
        QStringLiteral("OCRmyPDF ended with %1: %2").arg(run.exitCode).arg(lastWords(run.output))};
  }
}

// OCRmyPDF refuses every encrypted file, also one that opens without a password.
ScanOutcome decrypt(const QString& source, const QString& target, const QString& workFolder) {
  const ChildRun run = runTool(
      QStringLiteral("qpdf"),
      {QStringLiteral("--password="), QStringLiteral("--decrypt"), source, target}, workFolder);
  switch (run.end) {
  case ChildEnd::Stopped:
    return {ScanResult::Stopped, QStringLiteral("stopped")};
  case ChildEnd::Missing:
    return {ScanResult::ProgramMissing,
            QStringLiteral("it is encrypted, and qpdf, which decrypts it, is not installed")};
  case ChildEnd::Crashed:
  case ChildEnd::WroteTooMuch: // by a limit of the person's own: we set none
  case ChildEnd::TimedOut:
    return {ScanResult::Failed, QStringLiteral("qpdf crashed")};
  case ChildEnd::Exited:
    break;
  }
  if (run.exitCode != qpdfErrors) {
    return {};
  }
  if (run.output.contains(QLatin1String("password"))) {
    return {ScanResult::NeedsPassword, QStringLiteral("a password is needed to open it")};
  }
  return {ScanResult::Failed,
          QStringLiteral("it cannot be decrypted: %1").arg(lastWords(run.output))};
}

ScanOutcome moveIntoPlace(const QString& made, const QString& copy) {
  QFile::setPermissions(made, QFile::ReadOwner | QFile::WriteOwner);
  folivex::platform::FileFailure problem;
  return folivex::platform::replaceFile(made, copy, problem)
             ? ScanOutcome()
             : ScanOutcome{ScanResult::NotWritable,
                           QStringLiteral("%1 cannot be written: %2").arg(copy, problem.text)};
}

} // namespace

ScanOutcome addTextLayer(const QString& source, const QString& copy) {
  const QFileInfo sourceFile(source);
  if (!sourceFile.isFile() || !sourceFile.isReadable()) {
    return {ScanResult::NotAPdf, QStringLiteral("the file is missing or cannot be read")};
  }
  // Beside the copy, so that moving it into place is one rename.
  const QFileInfo copyFile(copy);
  const QTemporaryDir work(copyFile.absolutePath() + QStringLiteral("/.scanlite-XXXXXX"));
  if (!work.isValid()) {
    return {ScanResult::NotWritable, QStringLiteral("the folder %1 cannot be written: %2")
                                         .arg(copyFile.absolutePath(), work.errorString())};
  }
  const QString made = work.filePath(QStringLiteral("copy.pdf"));
  const QString languages = ocrLanguages(work.path());
  ChildRun run = runOcr(sourceFile.absoluteFilePath(), made, languages, work.path());
  if (run.end == ChildEnd::Exited && run.exitCode == OcrEncrypted) {
    const QString opened = work.filePath(QStringLiteral("opened.pdf"));
    ScanOutcome outcome = decrypt(sourceFile.absoluteFilePath(), opened, work.path());
    if (outcome.result != ScanResult::Done) {
      return outcome;
    }
    run = runOcr(opened, made, languages, work.path());
  }
  if (run.end != ChildEnd::Exited || run.exitCode != OcrDone) {
    return ocrFailure(run, languages);
  }
  return moveIntoPlace(made, copyFile.absoluteFilePath());
}

} // namespace scanlite
