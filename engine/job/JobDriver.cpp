#include "engine/job/JobDriver.h"

#include "engine/job/OcrFirst.h"
#include "engine/job/OutputFolder.h"
#include "engine/job/PageLooks.h"
#include "engine/job/PlanRun.h"
#include "engine/job/RepairedCopies.h"
#include "engine/job/SavedPlan.h"
#include "engine/job/SourceFile.h"
#include "engine/job/SplitRun.h"
#include "engine/report/ReportPaths.h"
#include "engine/report/Reports.h"
#include "engine/setup/FileNameMethod.h"
#include "engine/words/CPDFTextDumpInit.h"
#include "platform/Paths.h"

#include <QDateTime>

#include <algorithm>
#include <iterator>
#include <utility>

namespace folivex {

namespace {

/// False for a failure that came before the first page.
bool wasProcessed(RunError error) {
  switch (error) {
  case RunError::TextReport:
  case RunError::CsvReport:
  case RunError::Contradiction:
  case RunError::Unreadable:
  case RunError::FolderBusy:
    return false;
  default:
    return true;
  }
}

} // namespace

JobDriver::JobDriver(SetupStore& store, Libraries libraries, Operator& person)
    : m_store(store), m_job{{person, m_state}, libraries}, m_batch(person, m_state),
      m_folderWritable(currentFolderIsWritable()) {
  libraries.text.setStandIn(
      [copies = std::make_shared<RepairedCopies>(libraries.text, libraries.split)](
          const QString& path, const QString& password) { return copies->of(path, password); });
}

void JobDriver::Stop() {
  m_state.userStop = true;
  m_state.abortRun = true;
}

/// Forgets the last run. The setup of the next one, its source and its output folder as they are
/// meant.
SplitSetup JobDriver::begin() {
  m_store.commit();
  const bool automation = m_state.automation;
  const bool commandLine = m_state.commandLine;
  const PagePart part = m_state.part;
  m_state = RunState();
  m_state.automation = automation;
  m_state.commandLine = commandLine;
  m_state.part = part;
  m_outcome = RunOutcome();
  m_batch.namesTaken(); // by a run that ended early
  return runSetup(m_store.working());
}

/// Empty when nothing is to be cleared.
QString JobDriver::folderToClear() const {
  const QString folder = folivex::folderToClear(m_store.working());
  return m_batch.mayClear(folder) ? folder : QString();
}

/// What speaks against these settings, or against making a part of the outputs with them: parts are
/// made in any order and at the same time, and must come to what one run makes.
QString JobDriver::contradictionOf(const SplitSetup& setup) const {
  const QString contradiction = contradictionIn(setup);
  const bool isPart = !m_state.part.isAll() || !m_planFile.isEmpty();
  if (!contradiction.isEmpty() || !isPart) {
    return contradiction;
  }
  if (m_state.part.isAll() || !m_state.part.isValid()) {
    return QStringLiteral("\"--pages\" needs a range of pages like 1-5000");
  }
  const std::pair<bool, const char*> findings[] = {
      {setup.alwaysAppend, "ALWAYSAPPEND: outputs of several parts may go to one file, and their "
                           "order would be left to chance"},
      {!folderToClear().isEmpty(), "clearing the output folder: each part would remove the outputs "
                                   "of the others"},
      {setup.createList, "the list of outputs: it is one file, and no PDF is written"},
      {setup.emailEnable && !setup.emailConfirm,
       "sending e-mail: mails leave when all parts are there. With EMAILCONFIRM each part saves "
       "its list of mails"}};
  const auto* finding = std::ranges::find(findings, true, &std::pair<bool, const char*>::first);
  return finding == std::end(findings)
             ? QString()
             : QStringLiteral("A part of the pages cannot be made together with %1")
                   .arg(QLatin1StringView(finding->second));
}

/// Makes the output folder and waits until this run may write there. False when it may not; then
/// everything is told.
bool JobDriver::lockFolder(const SplitSetup& setup) {
  if (const QString problem = makeOutputFolder(setup.outputDir); !problem.isEmpty()) {
    m_job.person.found(RunFinding::OutputFolder, problem);
  }
  const bool alone = setup.alwaysOverwrite || setup.alwaysAppend || !folderToClear().isEmpty();
  m_batch.folders().begin(alone ? platform::LockUse::Alone : platform::LockUse::Shared,
                          setup.fileName);
  switch (m_batch.folders().take(setup.outputDir)) {
  case FolderLocks::Outcome::Free:
    return true;
  case FolderLocks::Outcome::Stopped:
    tellRunEnd(m_outcome, setup, {}, m_job);
    return false;
  case FolderLocks::Outcome::Refused:
    m_job.fail(RunError::FolderBusy, m_batch.folders().problem());
    return false;
  }
  return false;
}

void JobDriver::clearFolder(const SplitSetup& setup) {
  const QString folder = folderToClear();
  if (folder.isEmpty() || m_state.mustEnd()) {
    return;
  }
  if (const QString problem = m_batch.clear(folder, setup.fileName, setup.reportUseFileList);
      !problem.isEmpty()) {
    m_job.person.found(RunFinding::OutputFolder, problem);
  }
}

/// False when the next start will not find the settings of this run: told.
bool JobDriver::saveDefaultSetup() {
  const SetupResult saved = m_store.SaveSetup(m_store.DefaultSetupPath(), SavePath::Keep);
  if (!saved.note.isEmpty()) {
    m_job.person.found(RunFinding::Settings, saved.note);
  }
  if (!saved.ok() && !std::exchange(m_isUnsavedTold, m_isList)) {
    m_job.person.found(RunFinding::SetupFile, saved.message);
  }
  return saved.ok();
}

RunError JobDriver::StartProcessing(const SplitPlan* expected) {
  SplitSetup setup = begin();
  // What is planned needs words for addresses only: pages are not recognised once more in each
  // part.
  setup.ocrFirst = setup.ocrFirst && (m_planFile.isEmpty() || setup.emailEnable);
  // Before anything is touched: a refused run must not have cleared a folder.
  if (const QString contradiction = contradictionOf(setup); !contradiction.isEmpty()) {
    m_job.fail(RunError::Contradiction, contradiction);
  } else {
    if (const QString finding = fileNameMethodFinding(setup); !finding.isEmpty()) {
      m_job.person.found(RunFinding::Settings, finding);
    }
    const SavedPlan saved = m_planFile.isEmpty() ? SavedPlan() : SavedPlan::load(m_planFile, setup);
    if (!saved.problem.isEmpty()) {
      m_job.fail(RunError::Contradiction, saved.problem);
    } else if (lockFolder(setup)) {
      runLocked(setup, expected, saved);
    }
    m_batch.runEnded();
  }
  addToTotals(setup.fileName);
  return m_state.error;
}

void JobDriver::addToTotals(const QString& source) {
  if (!m_batch.isOpen()) {
    m_totals = RunTotals();
  }
  ++m_totals.sources;
  m_totals.lastSource = source;
  m_totals.account.add(m_outcome.account);
  m_totals.files += m_outcome.writtenFiles;
  m_totals.hasFailed =
      m_totals.hasFailed || m_state.error != RunError::None || m_outcome.outputsFailed;
}

/// Clears the folder only for a source that can be split.
void JobDriver::runLocked(const SplitSetup& setup, const SplitPlan* expected,
                          const SavedPlan& saved) {
  SourceFile file(m_job);
  const int pageCount = file.openForSplitting(setup);
  if (pageCount > 0) {
    clearFolder(setup);
  }
  m_outcome.source = file.stamp();
  const bool isPlanned = !m_planFile.isEmpty();
  if (isPlanned && pageCount > 0 && !saved.isOf(file.stamp(), pageCount)) {
    m_job.fail(RunError::SourceChanged,
               QStringLiteral("%1: is no longer the file that was planned").arg(setup.fileName));
    return;
  }
  Reports reports;
  const Reports::Opened opened = reports.open(
      reportPaths(setup, setup.fileName, setup.outputDir, m_folderWritable, m_state.part),
      setup.fileName, setup.findString, QDateTime::currentDateTime());
  if (opened.error != RunError::None) {
    m_job.fail(opened.error, opened.message);
    return;
  }
  m_outcome.reports = reports.paths();
  const bool isSaved = saveDefaultSetup();
  if (!isSaved && m_state.automation && !m_isList) {
    m_state.error = RunError::SetupFile;
    return;
  }
  splitSource({setup, m_job, m_batch, addressReaderFor(setup).get(), m_outcome, expected,
               isPlanned ? &saved.outputs : nullptr},
              file, pageCount, reports);
  if (const Reports::Opened closed = reports.close(); closed.error != RunError::None) {
    m_job.fail(closed.error, closed.message);
  }
  if (!isSaved && m_state.error == RunError::None) {
    m_state.error = RunError::SetupFile;
  }
  tellRunEnd(m_outcome, setup, reports.paths().text, m_job);
}

std::unique_ptr<AddressReader> JobDriver::addressReaderFor(const SplitSetup& setup) const {
  return setup.emailEnable && m_addressReader ? m_addressReader(setup) : nullptr;
}

int JobDriver::PageCount(const SplitSetup& setup, QString& problem) const {
  SplitSetup trimmed = setup;
  trimmed.fileName = platform::withoutTrailingBlanks(setup.fileName);
  SourceFile file(m_job);
  const int pages = file.countPages(trimmed);
  problem = file.problem();
  return pages;
}

SplitPlan JobDriver::Plan() {
  const SplitSetup setup = begin();
  SplitPlan plan;
  plan.problem = m_planFile.isEmpty()
                     ? contradictionOf(setup)
                     : QStringLiteral("\"--planned\" is for a run, not for a plan");
  if (!plan.problem.isEmpty()) {
    m_state.error = RunError::Contradiction;
    return plan;
  }
  SourceFile file(m_job);
  const int pageCount = file.openForSplitting(setup);
  m_outcome.source = file.stamp();
  if (pageCount == 0) {
    plan.problem = file.problem();
    m_state.error = RunError::Unreadable;
    return plan;
  }
  TextLibraryWords words = file.words(setup);
  planPages({setup,
             m_job,
             m_batch.names(setup.reportUseFileList),
             addressReaderFor(setup).get(),
             file.scanned(),
             {folderToClear(), m_batch.kept(setup.fileName)}},
            words, pageCount, plan);
  m_batch.namesTaken();
  m_outcome.account = plan.account;
  m_outcome.writtenFiles = plan.fileCount;
  return plan;
}

bool JobDriver::Recognise() {
  const QString source = begin().fileName;
  const QString folder = platform::temporaryFolder();
  const bool isMade = OcrFirst(source, folder, m_state, m_job.person);
  const bool isKept = m_state.ocrFile == ocrCopyPath(source, folder);
  m_state.ocrHold.reset();
  m_state.ocrFile.clear();
  if (m_state.userStop) {
    m_job.tell(QStringLiteral("Process Stopped!"));
  } else if (isMade && !isKept) {
    m_job.tell(QStringLiteral("%1: its recognised words could not be kept, since another run reads "
                              "the copy of a file of the same name; try again when it is done")
                   .arg(source));
  }
  return isKept;
}

void JobDriver::explainNoMatch() {
  if (m_state.rangeCount > 0 || m_state.emptiedRanges > 0 || m_state.rangesElsewhere > 0 ||
      m_state.userStop || m_state.error != RunError::None) {
    return;
  }
  SplitSetup setup = m_store.working();
  setup.fileName = platform::withoutTrailingBlanks(setup.fileName);
  for (const QString& line : nearestWords(setup, m_job)) {
    m_job.person.found(RunFinding::NearMiss, line);
  }
}

void JobDriver::ShowMatches(MatchObserver& observer) {
  showMatches(begin(), m_job, observer);
}

void JobDriver::ListPagePositions(int page) {
  listPagePositions(begin(), m_job, page);
}

RowResult JobDriver::processRow(const QString& path,
                                const std::function<void(const QString& source)>& onProcessed) {
  m_store.edited().fileName = path;
  const RunError error = StartProcessing();
  const bool stopped = m_state.userStop; // in the split, not while its mails go out
  QStringList told;
  if (!m_state.problem.isEmpty()) {
    told += m_state.problem.startsWith(path + QStringLiteral(": "))
                ? m_state.problem.mid(path.size() + 2)
                : m_state.problem;
  }
  if (m_outcome.account.pageCount() > 0 && !m_store.working().createList) {
    told += m_outcome.account.summary(m_outcome.writtenFiles);
  }
  if (wasProcessed(error) && onProcessed && !m_state.userStop && m_state.outputCount > 0) {
    onProcessed(path);
  }
  // Settings that could not be saved are no fault of the file.
  const bool isDone = error == RunError::None || error == RunError::SetupFile;
  return {stopped ? RowEnd::Stopped : isDone ? RowEnd::Done : RowEnd::Failed, told.join(u' ')};
}

BatchResult JobDriver::ProcessBatch(BatchRows& rows,
                                    const std::function<void(const QString& source)>& onProcessed) {
  QStringList sources;
  for (int row = 0; row < rows.count(); ++row) {
    sources += rows.path(row);
  }
  beginBatch(sources);
  m_isList = true;
  m_isUnsavedTold = false;
  const QString fileName = m_store.edited().fileName;
  const BatchResult result = runBatch(rows, m_state, m_job.person, [&](const QString& path) {
    return processRow(path, onProcessed);
  });
  if (result.processed > 0) {
    m_store.edited().fileName = fileName;
    saveDefaultSetup(); // the next start finds it, too
  }
  m_isList = m_isUnsavedTold = false;
  m_batch.end();
  return result;
}

} // namespace folivex
