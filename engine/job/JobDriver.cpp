#include "engine/job/JobDriver.h"

#include "engine/job/OcrFirst.h"
#include "engine/job/OutputFolder.h"
#include "engine/job/RangePipeline.h"
#include "engine/job/SourceFile.h"
#include "engine/job/SourceRun.h"
#include "engine/match/NearMisses.h"
#include "engine/output/CAppendPdfInit.h"
#include "engine/output/CSplitPdfInit.h"
#include "engine/output/ExternalCommand.h"
#include "engine/output/OutputFileList.h"
#include "engine/output/OutputWriter.h"
#include "engine/plan/SplitMethod.h"
#include "engine/report/PagePositions.h"
#include "engine/report/ReportPaths.h"
#include "engine/report/Reports.h"
#include "engine/words/CPDFTextDumpInit.h"
#include "platform/FileSystem.h"
#include "platform/Paths.h"

#include <QDateTime>

#include <algorithm>

namespace folivex {

namespace {

/// What two messages say about a search without a match.
QString searchHint() {
  return QStringLiteral(
      "please note: word searching is case sensitive & must contain the full word");
}

/// The folder of a run: `SPLITTOSOURCE` stands above `OUTPUTDIR`, and no folder means the default.
QString outputFolderOf(const SplitSetup& setup, const QString& source) {
  if (setup.splitToSource) {
    return platform::folderOf(source);
  }
  const QString folder = platform::withoutTrailingBlanks(setup.outputDir);
  return folder.isEmpty() ? platform::defaultOutputFolder() : folder;
}

bool clearsOutputFolder(const SplitSetup& setup) {
  return setup.otherSettingsRemoveFiles && !setup.splitToSource && !setup.outputDir.isEmpty();
}

/// False for a failure that came before the first page.
bool wasProcessed(RunError error) {
  switch (error) {
  case RunError::TextReport:
  case RunError::CsvReport:
  case RunError::SetupFile:
  case RunError::Contradiction:
  case RunError::Unreadable:
    return false;
  default:
    return true;
  }
}

/// A run that was stopped is not mailed; whoever waits for the mails must know. Empty when none of
/// its outputs has an address.
QString unmailedSentence(const EmailRecords& records) {
  const auto count = std::ranges::count_if(
      records.all(), [](const EmailRecord& record) { return !record.addresses.address.isEmpty(); });
  return count == 0
             ? QString()
             : QStringLiteral("%1 output(s) with an e-mail address were written before the stop; "
                              "none of them was mailed.")
                   .arg(count);
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
  m_outputsFailed = false;
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

void JobDriver::beginBatch(const QStringList& sources) {
  m_inBatch = true;
  m_batchSources = sources;
  m_names.reset();
  m_clearedFolders.clear();
}

void JobDriver::endBatch() {
  m_inBatch = false;
  m_names.reset();
  m_batchSources.clear();
  m_clearedFolders.clear();
}

bool JobDriver::clearsFolder(const QString& outputFolder) const {
  return clearsOutputFolder(m_store.working()) && !m_clearedFolders.contains(outputFolder);
}

QStringList JobDriver::sourcesToKeep(const QString& source) const {
  return m_batchSources + QStringList(source);
}

void JobDriver::clearFolder(const QString& outputFolder, const QString& source) {
  if (!clearsFolder(outputFolder)) {
    return;
  }
  if (m_inBatch) {
    m_clearedFolders += outputFolder;
  }
  const QString problem = clearOutputFolder(outputFolder, sourcesToKeep(source));
  if (!problem.isEmpty()) {
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
  // Before anything is touched: a refused run must not have cleared a folder.
  if (const QString contradiction = contradictionIn(setup); !contradiction.isEmpty()) {
    return fail(RunError::Contradiction, contradiction);
  }
  clearFolder(outputFolder, source);
  if (const QString problem = makeOutputFolder(outputFolder); !problem.isEmpty()) {
    m_person.note(problem);
  }

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
  SplitSetup runSetup = setup;
  runSetup.outputDir = outputFolder;
  processFile(runSetup, source, reports);

  if (const Reports::Opened closed = reports.close(); closed.error != RunError::None) {
    fail(closed.error, closed.message);
  }
  tellEnd(reports);
  return m_state.error;
}

const QString& JobDriver::scannedFile(const QString& source) const {
  return m_state.ocrFile.isEmpty() ? source : m_state.ocrFile;
}

int JobDriver::openSource(SourceFile& file, const SplitSetup& setup, const QString& source) {
  m_person.progress({QStringLiteral("Getting page count"), 0, 0, 0});
  file.beginForSplitting(source, setup);
  const int pageCount = file.countPages(source, setup);
  // Bookmarks need no words.
  const bool recognises =
      setup.ocrFirst && bookmarkMethodOf(setup.pageExtract) == BookmarkMethod::None;
  // The reading of words begins while the split library still opens the file, unless a file that it
  // refuses would be read by the hour first.
  if (pageCount > 0 && !recognises) {
    file.openWords(scannedFile(source), setup);
  }
  file.openForSplitting(source, setup);
  if (pageCount == 0 || !file.problem().isEmpty()) {
    return 0;
  }
  m_person.progress({QStringLiteral("Processing"), 0, pageCount, 0});
  if (recognises) {
    recognise(file, setup, source);
  }
  return file.problem().isEmpty() ? pageCount : 0;
}

void JobDriver::recognise(SourceFile& file, const SplitSetup& setup, const QString& source) {
  OcrFirst(source, platform::temporaryFolder(), m_state, m_person);
  file.openWords(scannedFile(source), setup);
  if (!file.problem().isEmpty() && !m_state.ocrFile.isEmpty()) {
    m_person.note(QStringLiteral("%1: this copy of \"%2\" with its recognised words is made anew "
                                 "when it is not there; remove it and run again")
                      .arg(m_state.ocrFile, source));
  }
}

void JobDriver::processFile(const SplitSetup& setup, const QString& source, Reports& reports) {
  SourceFile file({m_libraries.text, m_libraries.split});
  const int pageCount = openSource(file, setup, source);
  if (pageCount == 0) {
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
  const bool deletesOldFiles = usesExternalCommand(setup) && !setup.createList;
  DiskOutputPlaces places({source, scannedFile(source)},
                          deletesOldFiles ? DiskOutputPlaces::OldFile::Deleted
                                          : DiskOutputPlaces::OldFile::KeptUntilWritten);
  OutputFileList list(setup, source);
  const std::unique_ptr<AddressReader> addressReader = addressReaderFor(setup);
  RangePipeline pipeline(setup, m_state, m_libraries.text, m_person,
                         {source, scannedFile(source), pageCount},
                         {places,
                          setup.createList ? static_cast<OutputList&>(list) : writer,
                          nameList(setup),
                          reports,
                          m_emails,
                          addressReader.get(),
                          {}});
  pipeline.run();
  closeNameList();
  writer.finish();
  m_emails.drop(writer.unwrittenPaths());
  if (setup.createList) {
    m_emails.clear(); // no file was written
  }
  m_writtenFiles = writer.writtenFiles();
  if (setup.createList) {
    tellFileList(list);
  }

  if (const int page = pipeline.firstUnfinishedPage(); page > 0) {
    m_account.stopped(page, pageCount);
  }
  settleCounts(writer);
  reports.dropRanges(
      [&writer](const QString& path, int firstPage) { return writer.isMissing(path, firstPage); });
  reports.writeTotals(m_state.outputCount);
  if (m_account.failedPages() > 0 || m_account.stoppedPages() > 0) {
    reports.writeFinding(m_account.summary(m_writtenFiles));
  }
  for (const QString& line : pipeline.findings().lines()) {
    m_person.note(QStringLiteral("%1: %2").arg(source, line));
  }
}

/// A batch goes through one list; every other run begins it.
NameList& JobDriver::nameList(const SplitSetup& setup) {
  if (!m_inBatch || !m_names || m_names->path() != setup.reportUseFileList) {
    m_names.emplace(setup.reportUseFileList);
  }
  return *m_names;
}

/// Nobody could save the list while it is open.
void JobDriver::closeNameList() {
  if (!m_inBatch) {
    m_names.reset();
  }
}

void JobDriver::settleCounts(const OutputWriter& writer) {
  m_outputsFailed = writer.failedOutputs() > 0;
  if (m_outputsFailed) {
    m_state.outputCount = std::max(m_state.outputCount - writer.failedOutputs(), 0);
  } else if (m_state.outputCount == 0 && m_state.rangeCount > 0 && !m_state.mustEnd()) {
    m_state.outputCount = 1;
  }
}

void JobDriver::tellFileList(OutputFileList& list) {
  if (m_state.mustEnd()) {
    return; // a list of a part would pass for all of it
  }
  if (const QString problem = list.close(); !problem.isEmpty()) {
    fail(RunError::OutputFailed, problem);
  } else if (list.count() > 0) {
    m_person.note(QStringLiteral("%1: lists %2 output(s); no PDF was written")
                      .arg(list.path())
                      .arg(list.count()));
  }
}

std::unique_ptr<AddressReader> JobDriver::addressReaderFor(const SplitSetup& setup) const {
  return setup.emailEnable && m_addressReader ? m_addressReader(setup) : nullptr;
}

SplitPlan JobDriver::Plan() {
  m_store.commit();
  resetState();
  SplitSetup setup = m_store.working();
  const QString source = platform::withoutTrailingBlanks(setup.fileName);
  setup.outputDir = outputFolderOf(setup, source);
  SplitPlan plan;
  plan.problem = contradictionIn(setup);
  if (!plan.problem.isEmpty()) {
    m_state.error = RunError::Contradiction;
    return plan;
  }
  SourceFile file({m_libraries.text, m_libraries.split});
  const int pageCount = openSource(file, setup, source);
  if (pageCount == 0) {
    plan.problem = file.problem();
    m_state.error = RunError::Unreadable;
    return plan;
  }
  plan.account.start(pageCount);
  const QString scanned = scannedFile(source);
  PlanBuilder builder(plan, {setup.alwaysOverwrite, setup.alwaysAppend}, {source, scanned},
                      [&, clears = clearsFolder(setup.outputDir)](const QString& path) {
                        return clears &&
                               isClearedWithFolder(setup.outputDir, sourcesToKeep(source), path);
                      });
  Reports noReports;
  const std::unique_ptr<AddressReader> addressReader = addressReaderFor(setup);
  RangePipeline pipeline(
      setup, m_state, m_libraries.text, m_person, {source, scanned, pageCount},
      {builder, builder, nameList(setup), noReports, m_emails, addressReader.get(),
       [&builder](const ReportLine& line, const QString& namedPath, const QString& address) {
         builder.saved({line.firstPage, line.lastPage, line.matchedText, line.outputPath,
                        PlannedOutput::Fate::New, address},
                       namedPath);
       }});
  pipeline.run();
  closeNameList();
  plan.notes = pipeline.findings().lines();
  return plan;
}

void JobDriver::tellEnd(const Reports& reports) {
  if (m_state.error == RunError::Unreadable) {
    return; // told already, and "no matches" would be the wrong reason
  }
  if (m_state.userStop) {
    tell(QStringLiteral("Process Stopped!"));
    if (const QString unmailed = unmailedSentence(m_emails); !unmailed.isEmpty()) {
      m_person.note(unmailed);
    }
  } else if (m_state.outputCount == 0 && !m_outputsFailed && m_state.emptiedRanges == 0) {
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
  if (!m_store.working().createList) {
    m_person.note(m_account.summary(m_writtenFiles));
  }
}

QStringList JobDriver::NearestWords() {
  const SplitSetup& setup = m_store.working();
  if (bookmarkMethodOf(setup.pageExtract) != BookmarkMethod::None) {
    return {};
  }
  const QString source = platform::withoutTrailingBlanks(setup.fileName);
  SourceFile file({m_libraries.text, m_libraries.split});
  const int pageCount = file.countPages(source, setup);
  if (pageCount > 0) {
    file.openWords(scannedFile(source), setup);
  }
  if (!file.problem().isEmpty()) {
    return {};
  }
  NearMisses misses = NearMisses::forSearchText(setup);
  TextLibraryWords words(m_libraries.text);
  const PageWindow window = pageWindow(setup.startFromPage, setup.startEndPage, pageCount);
  for (int page = window.first; page < window.end && !m_state.userStop; ++page) {
    m_person.handlePendingEvents();
    misses.scanPage(page, words);
  }
  return misses.sentences();
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
  const int pageCount = openForReading(file, source);
  if (pageCount == 0) {
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

int JobDriver::openForReading(SourceFile& file, const QString& source) {
  const SplitSetup& setup = m_store.working();
  const int pageCount = file.countPages(source, setup);
  if (pageCount > 0 && setup.ocrFirst) {
    recognise(file, setup, source);
  } else if (pageCount > 0) {
    file.openWords(source, setup);
  }
  if (!file.problem().isEmpty()) {
    fail(RunError::Unreadable, file.problem());
    return 0;
  }
  return pageCount;
}

void JobDriver::ListPagePositions(int page) {
  m_store.commit();
  resetState();
  const SplitSetup& setup = m_store.working();
  const QString source = platform::withoutTrailingBlanks(setup.fileName);
  if (!platform::isReadableFile(source)) {
    tell(QStringLiteral("Unable to open file: %1").arg(source));
    return;
  }
  m_state.showOnly = true;
  SourceFile file({m_libraries.text, m_libraries.split});
  const int pageCount = openForReading(file, source);
  if (pageCount == 0) {
    return;
  }
  if (page < 1 || page > pageCount) {
    tell(QStringLiteral("%1: has %2 page(s), there is no page %3")
             .arg(source)
             .arg(pageCount)
             .arg(page));
    return;
  }
  PagePositions listing(m_person);
  const QString path = pagePositionsPath(platform::temporaryFolder());
  if (const QString problem = listing.open(path, source, page); !problem.isEmpty()) {
    tell(problem);
    return;
  }
  NoSaver saver;
  SourceRun run(setup, m_state, m_libraries.text, saver, m_person);
  run.setObserver(&listing);
  run.listPage(page - 1);
  if (m_state.userStop) {
    tell(QStringLiteral("Process Stopped!"));
    return;
  }
  if (!listing.close()) {
    tell(QStringLiteral("file error! can't write to page positions file: %1").arg(path));
    return;
  }
  m_person.openDocument(path);
}

BatchResult JobDriver::ProcessBatch(BatchRows& rows,
                                    const std::function<void(const QString& source)>& onProcessed) {
  QStringList sources;
  for (int row = 0; row < rows.count(); ++row) {
    sources += rows.path(row);
  }
  beginBatch(sources);
  const BatchResult result = runBatch(rows, m_state, m_person, [&](const QString& path) {
    m_store.edited().fileName = path;
    const RunError error = StartProcessing();
    const bool stopped = m_state.userStop; // in the split, not while its mails go out
    if (wasProcessed(error) && onProcessed && !m_state.userStop && m_state.outputCount > 0) {
      onProcessed(path);
    }
    return stopped ? RowEnd::Stopped : error == RunError::None ? RowEnd::Done : RowEnd::Failed;
  });
  endBatch();
  return result;
}

} // namespace folivex
