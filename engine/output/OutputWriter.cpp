#include "engine/output/OutputWriter.h"

#include "engine/base/Utf16.h"
#include "engine/output/CAppendPdfInit.h"
#include "engine/output/CSplitPdfInit.h"
#include "engine/output/ExternalCommand.h"
#include "engine/output/FolderLocks.h"
#include "engine/words/CPDFTextDumpInit.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <utility>

namespace folivex {

namespace {

/// While the library is waited for, a window is kept alive this often.
constexpr int waitStepMs = 20;

/// What is to be added to a file. A hidden name of ours: a person's file is never in the way.
QString additionFor(const QString& path) {
  return QFileInfo(path).path() + QStringLiteral("/.folivex-addition.part");
}

bool isThere(const QString& path) {
  const QFileInfo file(path);
  return file.exists() || file.isSymLink();
}

} // namespace

OutputWriter::OutputWriter(const SplitSetup& setup, RunState& state, Libraries libraries,
                           FolderLocks& locks, Operator& person, PageAccount& account)
    : m_setup(setup), m_state(state), m_libraries(libraries), m_locks(locks), m_person(person),
      m_account(account), m_handed(libraries.split) {
  libraries.split.SetDigests(setup.emailEnable ? 1 : 0);
  libraries.append.SetDigests(setup.emailEnable ? 1 : 0);
}

void OutputWriter::startSource(const Source& source) {
  m_source = source;
  m_isSourceChanged = false;
  m_written.clear();
  m_unwritten.clear();
  m_unmailable.clear();
  m_writesOnStop = false;
  m_failedOutputs = 0;
  m_held.clear();
  m_heldFor.clear();
  m_appendEndsRun = false;
}

QSet<QString> OutputWriter::unmailablePaths() const {
  return QSet<QString>(m_unwritten.keyBegin(), m_unwritten.keyEnd()) + m_unmailable;
}

bool OutputWriter::isMissing(const QString& path, int firstPage) const {
  const auto unwritten = m_unwritten.constFind(path);
  return unwritten != m_unwritten.constEnd() &&
         (unwritten->contains(firstPage) || !m_written.contains(path));
}

void OutputWriter::output(const ReservedOutput& output) {
  m_person.handlePendingEvents();
  if (output.path.isEmpty()) {
    return;
  }
  if (isSourceChanged() || (m_state.mustEnd() && !m_writesOnStop)) {
    m_account.stopped(output.firstPage, output.lastPage);
    m_unwritten[output.path].insert(output.firstPage);
    return;
  }
  ++m_state.outputCount;
  if (!takeFolderOf(output)) {
    return;
  }
  tellProgress(output);
  if (usesExternalCommand(m_setup)) {
    runExternalCommand(output);
  } else {
    writeWithLibrary(output);
  }
}

void OutputWriter::tellProgress(const ReservedOutput& output) {
  m_person.progress({QStringLiteral("Splitting/Saving to: %1").arg(output.path), output.firstPage,
                     m_source.totalPages, m_state.outputCount,
                     m_state.isRead ? Phase::Writing : Phase::Reading});
}

void OutputWriter::wereComplete() {
  // A command that may take its time is not started after a Stop.
  m_writesOnStop = !usesExternalCommand(m_setup);
}

void OutputWriter::replaced(const ReservedOutput& lost) {
  m_account.replaced(lost.firstPage, lost.lastPage);
}

void OutputWriter::elsewhere(const ReservedOutput& output) {
  m_account.elsewhere(output.firstPage, output.lastPage);
}

void OutputWriter::occupied(const ReservedOutput& output) {
  ++m_state.outputCount;
  failed(output, QStringLiteral("there is a file of this name, and a part of a source takes no "
                                "other"));
}

bool OutputWriter::isSourceChanged() {
  if (!m_isSourceChanged && m_source.isChanged && m_source.isChanged()) {
    m_isSourceChanged = true;
    m_state.abortRun = true;
  }
  return m_isSourceChanged;
}

/// Each folder is another run's or this one's. False when the output's is not to be had: told.
bool OutputWriter::takeFolderOf(const ReservedOutput& output) {
  switch (m_locks.takeFor(output.path)) {
  case FolderLocks::Outcome::Free:
    return true;
  case FolderLocks::Outcome::Stopped:
    leaveOut({output});
    break;
  case FolderLocks::Outcome::Refused:
    failed(output, m_locks.problem());
    break;
  }
  m_libraries.split.ReleaseTarget(utf16(output.path));
  return false;
}

/// Makes room for a program that may replace nothing, or everything. Empty, or what is in the way.
QString OutputWriter::placeProblem(const QString& path, bool& isNew) {
  isNew = !isThere(path);
  if (isNew) {
    return {};
  }
  if (!m_setup.alwaysOverwrite) {
    return QStringLiteral("another program has put a file there");
  }
  QFile old(path);
  return old.remove() ? QString() : old.errorString();
}

void OutputWriter::runExternalCommand(const ReservedOutput& output) {
  const ExternalCommand command =
      externalCommand(m_setup, m_source.path, output.path, output.firstPage, output.lastPage);
  HandedFile file{output.path, {output}};
  if (const QString problem = placeProblem(output.path, file.isNew); !problem.isEmpty()) {
    failed(output, problem);
    return;
  }
  platform::OutsideProgram program;
  program.program = command.program;
  program.arguments = command.arguments;
  program.workingFolder = QDir::currentPath();
  program.onStop = platform::OutsideProgram::OnStop::KeepWaiting;
  const platform::ProgramEnd end = platform::runOutsideProgram(program, [this] {
    m_person.handlePendingEvents();
    return m_state.userStop;
  });
  if (end.started) {
    settleCommand(file, command.program, end);
  } else {
    failed(output, QStringLiteral("the external command \"%1\" could not be started: %2")
                       .arg(command.program, end.errorOutput));
  }
  m_libraries.split.ReleaseTarget(utf16(output.path));
}

/// The range stays in the reports: the command has had it. What is not surely its document is not
/// mailed.
void OutputWriter::settleCommand(const HandedFile& file, const QString& command,
                                 const platform::ProgramEnd& end) {
  const ReservedOutput& output = file.ranges.front();
  const bool isGood = !end.crashed && end.exitCode == 0;
  const bool hasFile = QFileInfo(output.path).isFile();
  if (!isGood || !end.errorOutput.isEmpty()) {
    m_person.found(
        RunFinding::Command,
        QStringLiteral("%1: the external command \"%2\" %3%4%5")
            .arg(output.path, command,
                 end.crashed ? QStringLiteral("crashed")
                             : QStringLiteral("ended with %1").arg(end.exitCode),
                 hasFile ? QString() : QStringLiteral(" and left no file"),
                 end.errorOutput.isEmpty() ? QString() : QStringLiteral(": ") + end.errorOutput));
  }
  if (!isGood && m_state.error == RunError::None) {
    m_state.error = RunError::OutputFailed;
  }
  if (hasFile && (isGood || isWhole(output))) {
    wrote(file, platform::FileStamp::of(output.path).value_or(platform::FileStamp()),
          m_setup.emailEnable ? platform::FileDigest::of(output.path) : platform::FileDigest());
    return;
  }
  m_unmailable.insert(output.path);
  if (isGood) {
    m_account.handedOn(output.firstPage, output.lastPage);
  } else {
    m_account.failed(output.firstPage, output.lastPage);
  }
}

bool OutputWriter::isWhole(const ReservedOutput& output) {
  return endsLikePdf(output.path) && m_libraries.text.GetPageCount(utf16(output.path), u"") ==
                                         output.lastPage - output.firstPage + 1;
}

void OutputWriter::writeWithLibrary(const ReservedOutput& output) {
  m_person.handlePendingEvents();
  settle(0);
  if (m_setup.alwaysAppend) {
    hold(output);
  } else {
    handOver({output.path, {output}, !m_setup.alwaysOverwrite || !isThere(output.path)});
  }
}

void OutputWriter::hold(const ReservedOutput& output) {
  const QString place = m_rules.comparable(output.path);
  const auto known = m_heldFor.constFind(place);
  if (known == m_heldFor.constEnd()) {
    m_heldFor.insert(place, m_held.size());
    m_held.push_back({output});
  } else {
    m_held[*known].push_back(output);
  }
}

void OutputWriter::writeHeld(Ranges ranges) {
  const QString& path = ranges.front().path;
  tellProgress(ranges.front());
  m_person.handlePendingEvents();
  if (m_handed.holds(path)) {
    waitForHanded();
  }
  if (m_libraries.split.ReserveTarget(utf16(path)) != CSplitPdfInit::taken) {
    handOver({path, std::move(ranges)});
    return;
  }
  const QString addition = additionFor(path);
  QFile::remove(addition);
  handOver({addition, std::move(ranges), false});
  waitForHanded();
}

void OutputWriter::leaveOut(const Ranges& ranges) {
  for (const ReservedOutput& range : ranges) {
    m_account.stopped(range.firstPage, range.lastPage);
    m_unwritten[range.path].insert(range.firstPage);
    --m_state.outputCount;
  }
}

void OutputWriter::handOver(HandedFile file) {
  std::vector<std::int32_t> pages;
  qint64 pageCount = 0;
  for (const ReservedOutput& range : file.ranges) {
    pages.push_back(range.firstPage);
    pages.push_back(range.lastPage);
    pageCount += range.lastPage - range.firstPage + 1;
  }
  const auto count = static_cast<std::int32_t>(file.ranges.size());
  const auto room = static_cast<std::int32_t>(std::min<qint64>(pageCount, m_source.totalPages));
  CSplitPdfInit& split = m_libraries.split;
  while (split.WaitForRoom(room, waitStepMs) != 0) {
    m_person.handlePendingEvents();
  }
  const int result =
      count == 1 ? split.SplitPdfPages(utf16(file.path), pages[0], pages[1], m_source.totalPages)
                 : split.SplitPdfRanges(utf16(file.path), pages.data(), count, m_source.totalPages);
  m_person.handlePendingEvents();
  split.GetProcessingStatus();
  if (result == CSplitPdfInit::ok) {
    m_handed.add(std::move(file));
  } else {
    missed(file, split.lastErrorText());
  }
}

void OutputWriter::settle(int milliseconds) {
  for (const HandedOutputs::Fate& fate : m_handed.settled(milliseconds)) {
    if (fate.code != CSplitPdfInit::ok) {
      missed(fate.file, fate.problem);
    } else if (fate.file.isAddition()) {
      join(fate.file);
    } else {
      wrote(fate.file, fate.written.stamp(), fate.written.digest());
    }
  }
}

void OutputWriter::waitForHanded() {
  settle(waitStepMs);
  while (!m_handed.isEmpty()) {
    m_person.handlePendingEvents();
    settle(waitStepMs);
  }
}

void OutputWriter::finish() {
  const bool stoppedBefore = m_state.userStop;
  m_heldFor.clear();
  do {
    while (!m_held.empty()) {
      Ranges ranges = std::move(m_held.front());
      m_held.pop_front();
      if (isSourceChanged() || m_appendEndsRun || (m_state.userStop && !stoppedBefore)) {
        leaveOut(ranges);
      } else {
        writeHeld(std::move(ranges));
      }
    }
    // What could not be written in one is held again, range by range.
    waitForHanded();
  } while (!m_held.empty());
}

void OutputWriter::join(const HandedFile& addition) {
  const QString& path = addition.ranges.front().path;
  const bool joined =
      m_libraries.append.getAppendPDFToFile(utf16(addition.path), utf16(path), u"") != 0;
  m_libraries.append.GetStatus();
  if (joined) {
    WrittenFile written;
    m_libraries.append.GetWrittenFile(&written);
    HandedFile grown = addition;
    grown.path = path;
    wrote(grown, written.stamp(), written.digest());
  } else {
    appendFailed(addition);
  }
  QFile::remove(addition.path);
}

/// One page that cannot be copied must not cost the ranges beside it.
void OutputWriter::missed(const HandedFile& file, const QString& reason) {
  if (file.ranges.size() == 1) {
    failed(file.ranges.front(), reason);
    return;
  }
  for (const ReservedOutput& range : file.ranges) {
    m_held.push_back({range});
  }
}

void OutputWriter::appendFailed(const HandedFile& addition) {
  m_state.error = RunError::Append;
  for (const ReservedOutput& range : addition.ranges) {
    failed(range, m_libraries.append.lastErrorText());
  }
  if (m_state.commandLine) {
    m_state.abortRun = true;
    m_appendEndsRun = true;
  } else if (!m_state.automation) {
    m_person.message(
        QStringLiteral("problem appending to file: %1").arg(addition.ranges.front().path));
  }
}

void OutputWriter::wrote(const HandedFile& file, const platform::FileStamp& stamp,
                         const platform::FileDigest& identity) {
  const auto known = m_written.find(file.path);
  const bool isAgain = known != m_written.end();
  Written& written = isAgain ? *known : m_written[file.path];
  if (isAgain && !m_setup.alwaysAppend) {
    for (const auto& [first, last] : std::exchange(written.pages, {})) {
      m_account.overwritten(first, last);
    }
  }
  written.isNew = isAgain ? written.isNew : file.isNew;
  written.stamp = stamp;
  written.identity = identity;
  for (const ReservedOutput& range : file.ranges) {
    written.pages.push_back({range.firstPage, range.lastPage});
    m_account.written(range.firstPage, range.lastPage);
  }
}

void OutputWriter::withdraw() {
  m_isSourceChanged = true;
  m_written.removeIf([this](QHash<QString, Written>::iterator entry) {
    if (!entry->isNew) {
      return false;
    }
    const auto now = platform::FileStamp::of(entry.key());
    QFile file(entry.key());
    if (!now || !now->isSameContent(entry->stamp) || !file.remove()) {
      m_person.found(RunFinding::OutputLeft,
                     QStringLiteral("%1: is left, since it was changed after it was written")
                         .arg(entry.key()));
    }
    for (const auto& [first, last] : entry->pages) {
      m_account.withdrawn(first, last);
      m_unwritten[entry.key()].insert(first);
      ++m_failedOutputs;
    }
    return true;
  });
}

void OutputWriter::failed(const ReservedOutput& output, const QString& reason) {
  m_account.failed(output.firstPage, output.lastPage);
  ++m_failedOutputs;
  m_unwritten[output.path].insert(output.firstPage);
  if (isSourceChanged()) {
    return; // told once, for all
  }
  if (m_state.error == RunError::None) {
    m_state.error = RunError::OutputFailed;
  }
  m_person.found(RunFinding::OutputFailed,
                 QStringLiteral("%1: pages %2-%3 could not be written: %4")
                     .arg(output.path)
                     .arg(output.firstPage)
                     .arg(output.lastPage)
                     .arg(reason));
}

} // namespace folivex
