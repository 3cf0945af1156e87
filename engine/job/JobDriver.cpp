#include "engine/job/JobDriver.h"

#include "engine/job/OcrFirst.h"
#include "engine/job/OutputFolder.h"
#include "engine/job/SourceFile.h"
#include "engine/job/SourceRun.h"
#include "engine/naming/OutputNamer.h"
#include "engine/naming/OutputReservation.h"
#include "engine/output/CAppendPdfInit.h"
#include "engine/output/CSplitPdfInit.h"
#include "engine/output/OutputRangeSaver.h"
#include "engine/output/OutputWriter.h"
#include "engine/plan/SplitMethod.h"
#include "engine/report/ReportPaths.h"
#include "engine/report/Reports.h"
#include "engine/words/CPDFTextDumpInit.h"
#include "engine/words/ViewWordLookup.h"
#include "platform/Paths.h"

#include <QDateTime>

namespace folivex {

namespace {

/// What two messages say about a search without a match.
QString searchHint() {
  return QStringLiteral(
      "please note: word searching is case sensitive & must contain the full word");
}

/// The folder of a run: `SPLITTOSOURCE` stands above `OUTPUTDIR`.
QString outputFolderOf(const SplitSetup& setup, const QString& source) {
  const QString folder = setup.splitToSource ? platform::folderOf(source) : setup.outputDir;
  return platform::withoutTrailingBlanks(folder);
}

/// Nothing is written in a show-only run.
class NoSaver : public RangeSaver {
public:
  void saveRange(SplitRange&) override {}
  QString cleanRestOfLine(const QString& text) override { return text; }
};

} // namespace

QString contradictionIn(const SplitSetup& setup) {
  const SplitMethod method = splitMethodOf(setup.pageExtract);
  const bool byPosition = method == SplitMethod::MatchToNextMatchAtPosition ||
                          method == SplitMethod::MatchToNextUniqueMatchAtPosition;
  if (byPosition && setup.findString.contains(QLatin1Char(' '))) {
    return QStringLiteral("When using h,v position only one word is allowed in search, that word "
                          "is the position");
  }
  return {};
}

JobDriver::JobDriver(SetupStore& store, Libraries libraries, Operator& person)
    : m_store(store), m_libraries(libraries), m_person(person),
      m_folderWritable(currentFolderIsWritable()) {}

void JobDriver::Stop() {
  m_state.userStop = true;
  m_state.abortRun = true;
}

void JobDriver::resetState() {
  const bool automation = m_state.automation;
  const bool commandLine = m_state.commandLine;
  m_state = RunState();
  m_state.automation = automation;
  m_state.commandLine = commandLine;
  m_account.start(0);
  m_emails.clear();
  m_writtenFiles = 0;
}

void JobDriver::tell(const QString& text) {
  if (m_state.automation) {
    m_person.note(text);
  } else {
    m_person.message(text);
  }
}

RunError JobDriver::fail(RunError error, const QString& text) {
  m_state.error = error;
  tell(text);
  return error;
}

void JobDriver::clearFolder(const QString& outputFolder, const QString& source) {
  const SplitSetup& setup = m_store.working();
  if (!setup.otherSettingsRemoveFiles || setup.splitToSource || outputFolder.isEmpty()) {
    return;
  }
  if (const QString problem = clearOutputFolder(outputFolder, source); !problem.isEmpty()) {
    m_person.note(problem);
  }
}

void JobDriver::saveDefaultSetup() {
  const SetupResult saved = m_store.SaveSetup(m_store.DefaultSetupPath(), SavePath::Keep);
  if (!saved.note.isEmpty()) {
    m_person.note(saved.note);
  }
  if (!saved.ok()) {
    m_state.error = RunError::SetupFile;
    m_person.note(saved.message);
  }
}

RunError JobDriver::StartProcessing() {
  m_store.commit();
  resetState();
  const SplitSetup& setup = m_store.working();
  const QString source = platform::withoutTrailingBlanks(setup.fileName);
  const QString outputFolder = outputFolderOf(setup, source);
  clearFolder(outputFolder, source);

  Reports reports;
  const Reports::Opened opened =
      reports.open(reportPaths(setup, source, outputFolder, m_folderWritable), source,
                   setup.findString, QDateTime::currentDateTime());
  if (opened.error != RunError::None) {
    return fail(opened.error, opened.message);
  }
  saveDefaultSetup();
  if (m_state.error == RunError::SetupFile && m_state.automation) {
    return m_state.error;
  }
  if (const QString problem = makeOutputFolder(outputFolder); !problem.isEmpty()) {
    m_person.note(problem);
  }
  if (const QString contradiction = contradictionIn(setup); !contradiction.isEmpty()) {
    return fail(RunError::Contradiction, contradiction);
  }
  SplitSetup runSetup = setup;
  runSetup.outputDir = outputFolder;
  processFile(runSetup, source, reports);

  if (const Reports::Opened closed = reports.close(); closed.error != RunError::None) {
    fail(closed.error, closed.message);
  }
  tellEnd(reports);
  return m_state.error;
}

void JobDriver::processFile(const SplitSetup& setup, const QString& source, Reports& reports) {
  m_person.progress({QStringLiteral("Getting page count"), 0, 0, 0});
  SourceFile file({m_libraries.text, m_libraries.split});
  file.openForSplitting(source, setup);
  const int pageCount = file.countPages(source, setup);
  if (pageCount > 0) {
    m_person.progress({QStringLiteral("Processing"), 0, pageCount, 0});
    const bool useCopy =
        setup.ocrFirst && OcrFirst(source, platform::temporaryFolder(), m_state, m_person);
    file.openWords(useCopy ? m_state.ocrFile : source, setup);
  }
  if (!file.problem().isEmpty()) {
    fail(RunError::Unreadable, file.problem());
    reports.writeTotals(0);
    return;
  }
  if (const QString protection = file.protection(); !protection.isEmpty()) {
    m_person.note(QStringLiteral("%1: %2").arg(source, protection));
  }

  m_account.start(pageCount);
  OutputWriter writer(setup, m_state, {m_libraries.split, m_libraries.append}, m_person, m_account);
  writer.startSource(source, pageCount);
  const QString& scanned = m_state.ocrFile.isEmpty() ? source : m_state.ocrFile;
  DiskOutputPlaces places({source, scanned});
  OutputReservation reservation({setup.alwaysOverwrite, setup.alwaysAppend}, places, writer);
  ViewWordLookup lookup(m_libraries.text, scanned, setup.pdfPassword, setup.rotated,
                        [this](const QString& text) { tell(text); });
  OutputNamer namer(setup, lookup, [] { return QDateTime::currentDateTime(); });
  namer.startSource(source, setup.outputDir, pageCount);
  OutputRangeSaver saver(setup, m_state, {namer, reservation, reports, m_emails}, m_person);

  SourceRun run(setup, m_state, m_libraries.text, saver, m_person);
  run.run(pageCount);
  reservation.flush();
  m_libraries.append.FinishAppends();
  m_writtenFiles = writer.writtenFiles();

  if (m_state.outputCount == 0 && m_state.rangeCount > 0) {
    m_state.outputCount = 1;
  }
  reports.writeTotals(m_state.outputCount);
  for (const QString& line : run.findings().lines()) {
    m_person.note(QStringLiteral("%1: %2").arg(source, line));
  }
}

void JobDriver::tellEnd(const Reports& reports) {
  if (m_state.error == RunError::Unreadable) {
    return; // told already, and "no matches" would be the wrong reason
  }
  if (m_state.userStop) {
    tell(QStringLiteral("Process Stopped!"));
  } else if (m_state.outputCount == 0) {
    tell(QStringLiteral("Done! and no matches we're found!,\r\n") + searchHint());
  } else {
    const QString done = QStringLiteral("Done! - %1 PDF file(s) output").arg(m_state.outputCount);
    const bool asks = !m_state.automation && m_store.working().reportOptionsTxt;
    if (!asks) {
      tell(done);
    } else if (m_person.question(done + QStringLiteral("\r\n\r\nReport files have been generated, "
                                                       "do you want to view text report ?"),
                                 QStringLiteral("Folivex")) == Answer::Yes) {
      m_person.openDocument(reports.paths().text);
    }
  }
  m_person.note(m_account.summary(m_writtenFiles));
}

void JobDriver::ShowMatches(MatchObserver& observer) {
  m_store.commit();
  resetState();
  const SplitSetup& setup = m_store.working();
  if (bookmarkMethodOf(setup.pageExtract) != BookmarkMethod::None) {
    tell(QStringLiteral("Sorry can't show with bookmarks, can extract only"));
    return;
  }
  m_state.showOnly = true;
  const QString source = platform::withoutTrailingBlanks(setup.fileName);
  SourceFile file({m_libraries.text, m_libraries.split});
  const int pageCount = file.countPages(source, setup);
  if (pageCount > 0) {
    file.openWords(source, setup);
  }
  if (!file.problem().isEmpty()) {
    fail(RunError::Unreadable, file.problem());
    return;
  }
  NoSaver saver;
  SourceRun run(setup, m_state, m_libraries.text, saver, m_person);
  run.setObserver(&observer);
  run.run(pageCount);
  tellShowEnd();
}

void JobDriver::tellShowEnd() {
  if (m_state.userStop) {
    return;
  }
  if (m_state.matchesShown == 0) {
    tell(QStringLiteral("No matches found,\r\n") + searchHint());
  } else {
    tell(QStringLiteral("No more matches found."));
  }
}

BatchResult JobDriver::ProcessBatch(BatchRows& rows) {
  return runBatch(rows, m_state, m_person, [this](const QString& path) {
    m_store.edited().fileName = path;
    return StartProcessing() != RunError::Unreadable;
  });
}

} // namespace folivex
