#include "sheetflat/Flatten.h"

#include "sheetflat/Csv.h"
#include "sheetflat/SheetKind.h"

#include "platform/ChildProgram.h"
#include "platform/FileSystem.h"

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <algorithm>

namespace sheetflat {

namespace {

namespace platform = folivex::platform;

constexpr int timeLimitMilliseconds = 120'000;
constexpr qint64 memoryLimit = 2LL * 1024 * 1024 * 1024;

/// Runs ssconvert of Gnumeric in `workFolder`, which also holds its settings and temporary files:
/// it reads and keeps settings of the person's own where it is let.
platform::ChildRun runConverter(const QStringList& arguments, const QString& workFolder,
                                const QDeadlineTimer& deadline) {
  platform::ChildProgram converter;
  converter.name = QStringLiteral("ssconvert");
  converter.arguments = arguments;
  converter.workingFolder = workFolder;
  converter.deadline = deadline;
  converter.mostMemory = memoryLimit;
  converter.longestFile = csvSizeLimit;
  for (const char* variable :
       {"HOME", "TMPDIR", "XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME"}) {
    converter.environment.insert(QString::fromLatin1(variable), workFolder);
  }
  converter.environment.insert(QStringLiteral("GSETTINGS_BACKEND"), QStringLiteral("memory"));
  converter.environment.remove(QStringLiteral("DISPLAY"));
  converter.environment.remove(QStringLiteral("WAYLAND_DISPLAY"));
  return runChild(converter);
}

FlattenOutcome tooLarge() {
  return {FlattenResult::TooLarge,
          QStringLiteral("the sheet holds more than %1 MB, or a cell far from the others")
              .arg(csvSizeLimit / 1024 / 1024)};
}

constexpr QChar minusSign = QChar(0x2212);

/// Digits with or without a decimal point or comma, and perhaps an exponent.
bool isPlainNumber(const QString& text) {
  static const QRegularExpression number(
      QStringLiteral("\\A-?[0-9]+(?:[.,][0-9]+)?(?:[eE][-+]?[0-9]+)?\\z"));
  return number.match(text).hasMatch();
}

double valueOf(QString number) {
  return number.replace(u',', u'.').toDouble();
}

bool isFilledWithHashes(const QString& text) {
  return !text.isEmpty() && std::ranges::all_of(text, [](QChar c) { return c == u'#'; });
}

/// `shown` is what a sheet shows in a cell, by its number format and the width of its column;
/// `exact` is the whole value. The text for the cell is what is shown ("000123", "04.03.2026",
/// "12,50 EUR"), but for a number that is shown rounded, with an exponent or as "###" for want of
/// room: that is given in full.
QString cellText(const QString& shown, const QString& exact) {
  if (shown == exact) {
    return shown;
  }
  if (isFilledWithHashes(shown)) {
    return exact;
  }
  QString number = shown;
  number.replace(minusSign, u'-');
  if (!isPlainNumber(number) || !isPlainNumber(exact)) {
    return shown;
  }
  const bool isWhole = valueOf(number) == valueOf(exact) && !number.contains(u'E');
  return isWhole ? number : exact;
}

/// The same for whole sheets of equal shape. False when the shapes differ.
bool mergeCells(CsvRecords& shown, const CsvRecords& exact) {
  if (shown.size() != exact.size()) {
    return false;
  }
  for (std::size_t row = 0; row < shown.size(); row++) {
    QStringList& cells = shown[row];
    if (cells.size() != exact[row].size()) {
      return false;
    }
    for (qsizetype column = 0; column < cells.size(); column++) {
      cells[column] = cellText(cells[column], exact[row][column]);
    }
  }
  return true;
}

/// One source on its way through the converter.
class Conversion {
public:
  Conversion(SheetKind kind, const QString& workFolder)
      : m_importer(importerOf(kind)), m_workFolder(workFolder), m_deadline(timeLimitMilliseconds) {}

  /// Where the source is to be put: a name without anything that the converter could take for an
  /// address or a pattern.
  static QString sourceName() { return QStringLiteral("sheet"); }

  FlattenOutcome run(CsvRecords& records) {
    CsvRecords exact;
    CsvRecords top;
    FlattenOutcome outcome =
        convert(QStringLiteral("shown"), QStringLiteral("format=preserve"), {}, records);
    if (outcome.result == FlattenResult::Done) {
      outcome =
          convert(QStringLiteral("exact"), QStringLiteral("format=automatic locale=C"), {}, exact);
    }
    if (outcome.result != FlattenResult::Done) {
      return outcome;
    }
    if (!mergeCells(records, exact)) {
      return {FlattenResult::Failed,
              QStringLiteral("the converter read it differently a second time")};
    }
    outcome = convert(QStringLiteral("top"), QStringLiteral("format=raw"),
                      {QStringLiteral("--export-range=A1:DX128")}, top);
    if (outcome.result == FlattenResult::Done) {
      padRows(records, top);
    }
    return outcome;
  }

private:
  static QString importerOf(SheetKind kind) {
    return kind == SheetKind::Binary         ? QStringLiteral("Gnumeric_Excel:excel")
           : kind == SheetKind::OpenDocument ? QStringLiteral("Gnumeric_OpenCalc:openoffice")
                                             : QStringLiteral("Gnumeric_Excel:xlsx");
  }

  // A file for each sheet is the one documented way to the first sheet, whichever was last used.
  FlattenOutcome convert(const QString& name, const QString& options, const QStringList& further,
                         CsvRecords& records) const {
    const QStringList arguments =
        QStringList{
            QStringLiteral("--export-file-per-sheet"),
            QStringLiteral("--import-type=%1").arg(m_importer),
            QStringLiteral("--export-type=Gnumeric_stf:stf_assistant"),
            QStringLiteral("--export-options=eol=unix separator=, charset=UTF-8 %1").arg(options)} +
        further + QStringList{sourceName(), name + QStringLiteral(".%n")};
    const platform::ChildRun converter = runConverter(arguments, m_workFolder, m_deadline);
    const QString made = m_workFolder + u'/' + name + QStringLiteral(".0");
    FlattenOutcome outcome = outcomeOf(converter, made);
    QString text;
    if (outcome.result == FlattenResult::Done && !readTextFile(made, text, outcome.text)) {
      outcome.result = FlattenResult::Failed;
    }
    records = parseCsv(text, u',').records;
    return outcome;
  }

  static FlattenOutcome outcomeOf(const platform::ChildRun& converter, const QString& made) {
    switch (converter.end) {
    case platform::ChildEnd::Stopped:
      return {FlattenResult::Stopped, QStringLiteral("stopped")};
    case platform::ChildEnd::TimedOut:
      return {FlattenResult::TimedOut,
              QStringLiteral("the sheet took longer to read than %1 seconds")
                  .arg(timeLimitMilliseconds / 1000)};
    case platform::ChildEnd::Missing:
      return {FlattenResult::ProgramMissing,
              QStringLiteral("the converter of Gnumeric (ssconvert, Debian: the package "
                             "gnumeric) is not installed or not on the search path")};
    case platform::ChildEnd::Crashed:
      return {FlattenResult::NotASheet,
              QStringLiteral("it is damaged: the converter crashed over it")};
    case platform::ChildEnd::WroteTooMuch:
      return tooLarge();
    case platform::ChildEnd::Exited:
      break;
    }
    if (converter.exitCode == 0 && QFileInfo::exists(made)) {
      return {};
    }
    const QString reason = reasonIn(converter.output);
    return {FlattenResult::NotASheet,
            QStringLiteral("it is damaged, or no spreadsheet") +
                (reason.isEmpty() ? QString() : QStringLiteral(" (%1)").arg(reason))};
  }

  // Its errors begin with "E "; around them stand warnings that mean nothing to a person.
  static QString reasonIn(const QString& output) {
    QString reason;
    for (const QString& line : output.split(u'\n')) {
      if (line.startsWith(QStringLiteral("E "))) {
        reason = line.sliced(2);
      }
    }
    return reason;
  }

  // The converter leaves out what is blank before the first cell; row numbers would be wrong.
  static void padRows(CsvRecords& records, const CsvRecords& top) {
    const auto isBlank = [](const QStringList& record) {
      return std::ranges::all_of(record, [](const QString& field) { return field.isEmpty(); });
    };
    const auto firstUsed = std::ranges::find_if_not(top, isBlank);
    if (firstUsed != top.end()) {
      records.insert(records.begin(), static_cast<std::size_t>(firstUsed - top.begin()),
                     QStringList{QString()});
    }
  }

  QString m_importer;
  QString m_workFolder;
  QDeadlineTimer m_deadline;
};

FlattenOutcome normaliseText(const QString& path, CsvRecords& records) {
  QString text;
  QString problem;
  if (!readTextFile(path, text, problem)) {
    return {FlattenResult::NotASheet, problem};
  }
  QStringView rest = text;
  const QChar separator = takeSeparator(rest);
  CsvText csv = parseCsv(rest, separator);
  if (csv.unclosedQuote > 0) {
    return {
        FlattenResult::NotASheet,
        QStringLiteral("a quote that is opened in row %1 is never closed").arg(csv.unclosedQuote)};
  }
  records = std::move(csv.records);
  return {};
}

FlattenOutcome recordsOf(SheetKind kind, const QByteArray& content, const QString& workFolder,
                         CsvRecords& records) {
  switch (kind) {
  case SheetKind::Encrypted:
    return {FlattenResult::NeedsPassword,
            QStringLiteral("it is protected by a password: save it without one first")};
  case SheetKind::WebPage:
    return {FlattenResult::NotASheet,
            QStringLiteral("it is a web page, whatever its name: save it as .xlsx first")};
  case SheetKind::Other:
    return {FlattenResult::NotASheet, QStringLiteral("it is no spreadsheet")};
  case SheetKind::OpenXml:
  case SheetKind::Binary:
  case SheetKind::OpenDocument:
  case SheetKind::Text:
    break;
  }
  const QString path = workFolder + u'/' + Conversion::sourceName();
  QFile copy(path);
  if (!copy.open(QFile::WriteOnly) || copy.write(content) != content.size() || !copy.flush()) {
    return {FlattenResult::NotWritable, copy.errorString()};
  }
  copy.close();
  return kind == SheetKind::Text ? normaliseText(path, records)
                                 : Conversion(kind, workFolder).run(records);
}

FlattenOutcome readSource(const QString& source, QByteArray& content) {
  QFile file;
  platform::FileFailure problem;
  if (!platform::openForReading(file, source, platform::FileAccess::Ordinary, problem)) {
    return {FlattenResult::NotASheet, problem.text};
  }
  if (file.size() > csvSizeLimit) {
    return tooLarge();
  }
  content = file.readAll();
  return {};
}

FlattenOutcome moveIntoPlace(const QByteArray& csv, const QString& made, const QString& output) {
  QFile file(made);
  platform::FileFailure problem;
  if (!file.open(QFile::WriteOnly) || file.write(csv) != csv.size() || !file.flush()) {
    problem.text = file.errorString();
  } else {
    file.setPermissions(QFile::ReadOwner | QFile::WriteOwner);
    file.close();
    if (platform::replaceFile(made, output, problem)) {
      return {};
    }
  }
  return {FlattenResult::NotWritable,
          QStringLiteral("%1 cannot be written: %2").arg(output, problem.text)};
}

} // namespace

FlattenOutcome flattenSheet(const QString& source, const QString& output) {
  QByteArray content;
  FlattenOutcome outcome = readSource(source, content);
  if (outcome.result != FlattenResult::Done) {
    return outcome;
  }
  // Beside the output, so that moving it into place is one rename.
  const QFileInfo outputFile(output);
  const QTemporaryDir work(outputFile.absolutePath() + QStringLiteral("/.sheetflat-XXXXXX"));
  if (!work.isValid()) {
    return {FlattenResult::NotWritable, QStringLiteral("the folder %1 cannot be written: %2")
                                            .arg(outputFile.absolutePath(), work.errorString())};
  }
  CsvRecords records;
  outcome = recordsOf(kindOf(content), content, work.path(), records);
  if (outcome.result != FlattenResult::Done) {
    return outcome;
  }
  const QByteArray csv = csvOf(records);
  if (csv.size() > csvSizeLimit) {
    return tooLarge();
  }
  return moveIntoPlace(csv, work.filePath(QStringLiteral("made")), outputFile.absoluteFilePath());
}

} // namespace sheetflat
