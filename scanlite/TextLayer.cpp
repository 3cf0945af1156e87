#include "scanlite/TextLayer.h"

#include "platform/ChildProgram.h"
#include "platform/FileLocks.h"
#include "platform/FileSystem.h"
#include "scanlite/BarcodeLayer.h"
#include "scanlite/Barcodes.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QRegularExpression>
#include <QTemporaryDir>

namespace scanlite {

namespace {

using folivex::platform::ChildEnd;
using folivex::platform::ChildRun;

// OCRmyPDF's exit codes that mean something to a person.
enum OcrExit { OcrDone = 0, OcrBadInput = 2, OcrMissing = 3, OcrNoAccess = 5, OcrEncrypted = 8 };

constexpr int qpdfErrors = 2;

/// Temporary files of the program go into `workFolder`; what it writes is in English.
ChildRun runTool(const QString& name, const QStringList& arguments, const QString& workFolder) {
  folivex::platform::ChildProgram program;
  program.name = name;
  program.arguments = arguments;
  program.environment.insert(QStringLiteral("TMPDIR"), workFolder);
  program.environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
  return runChild(program);
}

constexpr QLatin1String english("eng");

// Tesseract names its languages by ISO 639-2/T, with some exceptions.
QString languageOfLocale(const QLocale& locale) {
  switch (locale.language()) {
  case QLocale::C:
    return english;
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
  const ChildRun run =
      runTool(QStringLiteral("tesseract"), {QStringLiteral("--list-langs")}, workFolder);
  static const QRegularExpression lineEnd(QStringLiteral("[\r\n]+"));
  return run.output.split(lineEnd, Qt::SkipEmptyParts);
}

/// FOLIVEX_OCR_LANGUAGE when it is set, installed or not: who names a language wants to hear that
/// it is missing. Else the language of the person's locale beside English, when it is installed.
QString ocrLanguages(const QString& workFolder) {
  QString wanted = qEnvironmentVariable("FOLIVEX_OCR_LANGUAGE").trimmed();
  if (!wanted.isEmpty()) {
    return wanted;
  }
  const QString own = languageOfLocale(QLocale::system());
  if (own == english || !installedLanguages(workFolder).contains(own)) {
    return english;
  }
  return own + QLatin1Char('+') + english;
}

// Programs tell the reason last; what they wrote before is progress and warnings.
QString lastWords(const QString& output) {
  constexpr qsizetype mostCharacters = 600;
  return output.isEmpty() ? QStringLiteral("it gave no reason") : output.right(mostCharacters);
}

ChildRun runOcr(const QString& source, const QString& target, const QString& languages,
                const QString& workFolder) {
  // The copy is read once and thrown away: no time for archiving, linearising or recompressing it.
  // Pages are not turned: positions must stay those of the source.
  return runTool(
      QStringLiteral("ocrmypdf"),
      QStringLiteral("--skip-text --output-type pdf --optimize 0 --fast-web-view 999999 --quiet")
              .split(u' ') +
          QStringList{QStringLiteral("--language=") + languages, source, target},
      workFolder);
}

struct OcrExitMeaning {
  int code;
  ScanResult result;
  const char* text; ///< "%1" stands for the program's last words
};

constexpr OcrExitMeaning ocrExitMeanings[] = {
    {OcrBadInput, ScanResult::NotAPdf, "no PDF that OCRmyPDF can read: %1"},
    {OcrMissing, ScanResult::ProgramMissing, "a program that OCRmyPDF needs is missing: %1"},
    {OcrNoAccess, ScanResult::NotWritable, "the copy cannot be written: %1"},
    {OcrEncrypted, ScanResult::NeedsPassword, "a password is needed to open it"},
};

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
  // One code for both; only the text tells a language from a program.
  if (run.exitCode == OcrMissing &&
      run.output.contains(QLatin1String("language"), Qt::CaseInsensitive)) {
    return {ScanResult::LanguageMissing,
            QStringLiteral("Tesseract has no data for the language %1 (Debian: the packages "
                           "tesseract-ocr-...)")
                .arg(languages)};
  }
  for (const auto& [code, result, text] : ocrExitMeanings) {
    if (run.exitCode == code) {
      return {result,
              QString::fromLatin1(text).replace(QLatin1String("%1"), lastWords(run.output))};
    }
  }
  return {
      ScanResult::Failed,
      QStringLiteral("OCRmyPDF ended with %1: %2").arg(run.exitCode).arg(lastWords(run.output))};
}

// OCRmyPDF refuses every encrypted file, also one that opens without a password.
ScanOutcome decrypt(const QString& source, const QString& target, const QString& workFolder) {
  const ChildRun run = runTool(
      QStringLiteral("qpdf"),
      {QStringLiteral("--password="), QStringLiteral("--decrypt"), source, target}, workFolder);
  if (run.end == ChildEnd::Stopped) {
    return {ScanResult::Stopped, QStringLiteral("stopped")};
  }
  if (run.end == ChildEnd::Missing) {
    return {ScanResult::ProgramMissing,
            QStringLiteral("it is encrypted, and qpdf, which decrypts it, is not installed")};
  }
  if (run.end != ChildEnd::Exited) {
    return {ScanResult::Failed, QStringLiteral("qpdf crashed")};
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

/// Writes `made` from `source`.
ScanOutcome recogniseWords(const QString& source, const QString& made, const QString& workFolder) {
  const QString languages = ocrLanguages(workFolder);
  ChildRun run = runOcr(source, made, languages, workFolder);
  if (run.end == ChildEnd::Exited && run.exitCode == OcrEncrypted) {
    const QString opened = QDir(workFolder).filePath(QStringLiteral("opened.pdf"));
    ScanOutcome outcome = decrypt(source, opened, workFolder);
    if (outcome.result != ScanResult::Done) {
      return outcome;
    }
    run = runOcr(opened, made, languages, workFolder);
  }
  return run.end == ChildEnd::Exited && run.exitCode == OcrDone ? ScanOutcome()
                                                                : ocrFailure(run, languages);
}

ScanOutcome whatToRead(bool& words, bool& barcodes) {
  const QString wanted = qEnvironmentVariable("FOLIVEX_OCR_READS").trimmed();
  const QStringList kinds = wanted.split(u'+');
  const QString wordsKind = QStringLiteral("words");
  const QString barcodesKind = QStringLiteral("barcodes");
  words = wanted.isEmpty() || kinds.contains(wordsKind);
  barcodes = wanted.isEmpty() || kinds.contains(barcodesKind);
  if (!wanted.isEmpty() && kinds.count(wordsKind) + kinds.count(barcodesKind) != kinds.size()) {
    return {ScanResult::Failed,
            QStringLiteral("FOLIVEX_OCR_READS is \"%1\"; words, barcodes and words+barcodes are "
                           "known")
                .arg(wanted)};
  }
  return {};
}

/// Puts a copy of `made` with its barcodes into its place, `made` becoming the copy's path; where
/// there are none a copy is written only when it `mustBe`. Words that were recognised are not lost
/// for want of barcodes.
ScanOutcome addBarcodes(QString& made, const QString& workFolder, bool mustBe) {
  const PageBarcodes barcodes = readBarcodes(made, workFolder);
  ScanOutcome outcome;
  if (barcodes.stopped) {
    return {ScanResult::Stopped, QStringLiteral("stopped")};
  }
  if (mustBe || !barcodes.ofPage.empty()) {
    const QString coded = QDir(workFolder).filePath(QStringLiteral("barcodes.pdf"));
    outcome = writeBarcodeLayer(made, coded, barcodes);
    if (outcome.result == ScanResult::Done) {
      made = coded;
    } else if (!mustBe) {
      outcome = {ScanResult::Done, {}, {outcome.text}};
    }
  }
  outcome.notes += barcodes.problems;
  return outcome;
}

constexpr QLatin1String workFolderStart(".scanlite-");
constexpr QLatin1String workLock("lock");

/// Those beside `own` of programs that were killed: they are gone, and their locks with them.
void removeDeadWorkFolders(const QFileInfo& own) {
  if (!folivex::platform::hasDependableLocks(own.path())) {
    return;
  }
  for (const QFileInfo& entry : own.dir().entryInfoList(
           {workFolderStart + u'*'}, QDir::Dirs | QDir::Hidden | QDir::NoSymLinks)) {
    QDir dead(entry.filePath());
    QFile lock;
    // Another user's folder could become a link to one of ours under our hands.
    if (entry.ownerId() == own.ownerId() &&
        folivex::platform::openForLock(lock, dead.filePath(workLock), false) == 0 &&
        folivex::platform::lockFile(lock, folivex::platform::LockUse::Alone) ==
            folivex::platform::LockResult::Locked) {
#ifdef Q_OS_WIN
      lock.close(); // else the folder would stay with it
#endif
      dead.removeRecursively();
    }
  }
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
  const QTemporaryDir work(copyFile.absolutePath() + u'/' + workFolderStart +
                           QStringLiteral("XXXXXX"));
  if (!work.isValid()) {
    return {ScanResult::NotWritable, QStringLiteral("the folder %1 cannot be written: %2")
                                         .arg(copyFile.absolutePath(), work.errorString())};
  }
  QFile lock;
  if (folivex::platform::openForLock(lock, work.filePath(workLock), true) == 0) {
    // Without a lock the folder stays for a person when we are killed.
    static_cast<void>(folivex::platform::lockFile(lock, folivex::platform::LockUse::Alone));
  }
  removeDeadWorkFolders(QFileInfo(work.path()));
  bool words = false;
  bool barcodes = false;
  if (ScanOutcome outcome = whatToRead(words, barcodes); outcome.result != ScanResult::Done) {
    return outcome;
  }
  QString made = sourceFile.absoluteFilePath();
  if (words) {
    const QString recognised = work.filePath(QStringLiteral("copy.pdf"));
    ScanOutcome outcome = recogniseWords(made, recognised, work.path());
    if (outcome.result != ScanResult::Done) {
      return outcome;
    }
    made = recognised;
  }
  ScanOutcome layer;
  if (barcodes) {
    layer = addBarcodes(made, work.path(), !words);
    if (layer.result != ScanResult::Done) {
      return layer;
    }
  }
  ScanOutcome outcome = moveIntoPlace(made, copyFile.absoluteFilePath());
  outcome.notes = layer.notes;
  return outcome;
}

} // namespace scanlite
