#include "app/Program.h"

#include "app/FolderSearch.h"
#include "app/SuggestCommand.h"
#include "engine/job/OutputRecords.h"
#include "engine/job/PlanPrinter.h"
#include "engine/setup/SetupFields.h"
#include "mail/AddressSearch.h"
#include "mail/delivery/MailRecords.h"
#include "mail/delivery/UnattendedDelivery.h"
#include "platform/FileSystem.h"
#include "platform/Paths.h"

#include <QFileInfo>

#include <map>

namespace folivex {

namespace {

QString missingLibrary(const QString& name) {
  return QStringLiteral("Error initilizing, dll missing or unable to load %1.dll").arg(name);
}

/// Of a run that was told to stop: not all of its work is done.
constexpr int stoppedExitCode = 1;

/// Failures after which an unattended program does not go on to its next file.
bool endsProgram(RunError error) {
  return error == RunError::TextReport || error == RunError::CsvReport ||
         error == RunError::SetupFile || error == RunError::Append;
}

/// Every file that the arguments name for processing.
QStringList sourcesOf(const CommandLine& line) {
  QStringList sources;
  for (const CommandAction& action : line.actions) {
    if (action.kind == CommandAction::Kind::ProcessFile) {
      sources += platform::withoutTrailingBlanks(action.value);
    } else if (action.kind == CommandAction::Kind::ProcessFolder) {
      sources += FolderSearch::of(action.value).paths;
    }
  }
  return sources;
}

} // namespace

Program::Program(Operator& person) : m_person(person) {}

Program::~Program() = default;

/// Of the first library that does not load: the message.
QString Program::loadAll() {
  const auto load = [this](auto& library, const char* name) {
    library = std::make_unique<std::decay_t<decltype(*library)>>();
    if (library->loaded) {
      return QString();
    }
    m_person.found(RunFinding::Library,
                   QStringLiteral("%1 (%2)").arg(library->error, library->errorDetail));
    return missingLibrary(QString::fromLatin1(name));
  };
  if (QString missing = load(m_text, "GlyphrunU"); !missing.isEmpty()) {
    return missing;
  }
  if (QString missing = load(m_split, "CleftorU"); !missing.isEmpty()) {
    return missing;
  }
  return load(m_append, "MelderU");
}

QString Program::loadLibraries() {
  QString missing = loadAll();
  if (missing.isEmpty()) {
    m_driver = std::make_unique<JobDriver>(
        m_store, JobDriver::Libraries{*m_text, *m_split, *m_append}, m_person);
    m_driver->setAddressReaderMaker(addressReaderFor);
  }
  return missing;
}

void Program::tell(const SetupResult& result) {
  if (m_store.automation() || result.status == SetupStatus::NotWritten) {
    note(result.message);
  } else if (!result.message.isEmpty()) {
    m_person.message(result.message);
  }
  note(result.note);
}

void Program::note(const QString& text) {
  if (!text.isEmpty()) {
    m_person.found(RunFinding::Settings, text);
  }
}

void Program::loadDefaultSetup() {
  if (const QString problem = platform::installFolderOfSetup().problem; !problem.isEmpty()) {
    m_person.message(problem);
  }
  const QString path = m_store.DefaultSetupPath();
  tell(m_store.LoadSetup(path, LoadMode::AutomationCheck));
  loadSetup(path); // a first start has none
}

bool Program::loadSetup(const QString& path, LoadMode mode) {
  const SetupResult loaded = m_store.LoadSetup(path, mode);
  m_driver->setAutomation(m_store.automation());
  tell(loaded);
  return loaded.ok();
}

void Program::setUnattended(bool on) {
  m_store.setUnattended(on);
  m_driver->setAutomation(m_store.automation());
}

Program::Ended Program::handleCommandLine(const CommandLine& line) {
  m_driver->setCommandLine(true);
  m_line = &line;
  m_plan = line.plan;
  m_setupPath.clear();
  m_password.reset();
  m_exitCode = 0;
  if (!line.error.isEmpty()) {
    m_person.found(runFindingOf(line.errorCode), line.error);
    return {true, line.errorCode};
  }
  if (!line.ignored.isEmpty()) {
    m_person.found(RunFinding::Arguments,
                   QStringLiteral("these arguments mean nothing here and are left out: %1")
                       .arg(line.ignored.join(QStringLiteral(", "))));
  }
  tellUnused(line);
  const QStringList sources = sourcesOf(line);
  m_source = 0;
  m_sources = static_cast<int>(sources.size());
  m_driver->beginBatch(sources, line.pages, line.planFile);
  m_mail = unattendedMail();
  const std::optional<int> code = performAll(line);
  m_mail->finish();
  m_mail.reset();
  m_line = nullptr;
  m_driver->endBatch();
  m_driver->setCommandLine(false);
  setUnattended(false);
  // A person who stopped the work has not asked for the window to go.
  return {code && (line.closes() || *code != stoppedExitCode), code.value_or(m_exitCode)};
}

std::optional<int> Program::performAll(const CommandLine& line) {
  for (const CommandAction& action : line.actions) {
    if (const std::optional<int> code = perform(action)) {
      return code;
    }
  }
  return std::nullopt;
}

/// A setup or a password behind the last file is most likely a slip.
void Program::tellUnused(const CommandLine& line) {
  static const std::map<CommandAction::Kind, const char*> options = {
      {CommandAction::Kind::SetSetupPath, "-u"}, {CommandAction::Kind::SetPassword, "-p"}};
  const char* unused = nullptr;
  for (const CommandAction& action : line.actions) {
    if (action.kind != CommandAction::Kind::Close) {
      const auto option = options.find(action.kind);
      unused = option == options.end() ? nullptr : option->second;
    }
  }
  if (unused != nullptr) {
    m_person.found(RunFinding::Arguments,
                   QStringLiteral("\"%1\" counts for the \"-f\" behind it, and none stands there")
                       .arg(QLatin1String(unused)));
  }
}

std::optional<int> Program::perform(const CommandAction& action) {
  switch (action.kind) {
  case CommandAction::Kind::SetPassword:
    m_password = action.value;
    m_store.edited().pdfPassword = action.value;
    break;
  case CommandAction::Kind::SetSetupPath:
    m_setupPath = action.value;
    break;
  case CommandAction::Kind::ProcessFile:
  case CommandAction::Kind::ProcessFolder:
    return process(action);
  case CommandAction::Kind::SendList:
    return sendList(action.value);
  case CommandAction::Kind::Close:
    if (m_plan == PlanOutput::None && !m_line->suggest) {
      close();
    }
    return m_exitCode;
  }
  return std::nullopt;
}

std::optional<int> Program::loadNamedSetup() {
  if (m_setupPath.isEmpty()) {
    return std::nullopt;
  }
  if (!platform::isReadableFile(m_setupPath)) {
    m_person.found(RunFinding::SetupMissing,
                   QStringLiteral("%1: the setup file cannot be read").arg(m_setupPath));
    return static_cast<int>(RunError::SetupMissing);
  }
  if (!loadSetup(m_setupPath)) {
    return static_cast<int>(RunError::SetupMissing);
  }
  if (m_password) {
    // What the command line says stands above what the setup file says.
    m_store.edited().pdfPassword = *m_password;
  }
  return std::nullopt;
}

/// What the source or the folder and the setup must be. Else the code to end with: told.
std::optional<int> Program::prepare(const CommandAction& action) {
  const QString& path = action.value;
  const QString folder = platform::folderOf(path);
  const bool isPattern = action.kind == CommandAction::Kind::ProcessFolder;
  const bool isThere =
      isPattern ? folder.isEmpty() || QFileInfo(folder).isDir() : platform::isReadableFile(path);
  if (!isThere) {
    m_person.found(RunFinding::SourceMissing,
                   isPattern ? QStringLiteral("%1: there is no such folder").arg(folder)
                             : QStringLiteral("%1: the file cannot be read").arg(path));
    return static_cast<int>(RunError::SourceMissing);
  }
  return loadNamedSetup();
}

std::optional<int> Program::process(const CommandAction& action) {
  setUnattended(true);
  const QString& path = action.value;
  if (action.kind == CommandAction::Kind::ProcessFile) {
    beginSource(path);
    const std::optional<int> code = prepare(action);
    return code ? endSource({path, *code}, true) : runOne(path);
  }
  if (const std::optional<int> code = prepare(action)) {
    return code;
  }
  const FolderSearch found = FolderSearch::of(path);
  for (const QString& line : found.told) {
    m_person.found(RunFinding::Search, line);
  }
  if (!found.isWhole) {
    keepCode(static_cast<int>(RunError::SourceMissing));
  }
  for (const QString& file : found.paths) {
    beginSource(file);
    if (const std::optional<int> code = runOne(file)) {
      return code;
    }
  }
  return std::nullopt;
}

void Program::beginSource(const QString& path) {
  ++m_source;
  const int sources = std::max(m_source, m_sources); // a file may have come since
  m_person.beginSource(m_source, sources);
  m_person.record(sourceRecord(path, sources));
}

std::optional<int> Program::endSource(const SourceResult& result, bool mustEnd) {
  if (m_person.wantsRecords()) {
    m_person.record(resultRecord(result));
  }
  if (mustEnd) {
    return result.exitCode;
  }
  keepCode(result.exitCode);
  return std::nullopt;
}

std::optional<int> Program::runOne(const QString& path) {
  m_store.edited().fileName = path;
  SourceResult result{path};
  result.source = platform::FileStamp::beforeReading(path);
  const Ended ended = m_line->suggest              ? suggestFor(result)
                      : m_plan != PlanOutput::None ? planOne(result)
                                                   : split(result);
  result.exitCode = ended.exitCode;
  return endSource(result, ended.mustEnd);
}

Program::Ended Program::split(SourceResult& result) {
  const auto stopped = [this] { return m_driver->state().userStop; };
  const Ended stoppedEnd = {true, stoppedExitCode};
  if (const std::optional<int> code = goOnMailing(result)) {
    return stopped() ? stoppedEnd : Ended{false, *code};
  }
  const RunError error = m_driver->StartProcessing();
  result.outcome = &m_driver->outcome();
  m_driver->explainNoMatch();
  const int code = static_cast<int>(error);
  if (endsProgram(error)) {
    return {true, code};
  }
  if (stopped()) {
    return stoppedEnd;
  }
  const bool isMailed = mailOutputs(result);
  if (stopped()) {
    return stoppedEnd; // while the mails went out
  }
  return {false, isMailed || code != 0 ? code : static_cast<int>(RunError::MailFailed)};
}

std::unique_ptr<UnattendedDelivery> Program::unattendedMail() {
  return std::make_unique<UnattendedDelivery>(DeliveryMeans{m_split.get(), {}}, m_person,
                                              [this] { return m_driver->state().userStop; });
}

std::unique_ptr<LivePlan> Program::livePlan(LivePlan::OnState onState) {
  return std::make_unique<LivePlan>(*m_text, addressReaderFor, std::move(onState));
}

std::optional<int> Program::goOnMailing(SourceResult& result) {
  SplitSetup setup = m_store.working();
  commitSetup(m_store.edited(), setup);
  std::optional<UnattendedResult> gone;
  if (m_line->pages.isAll()) { // else a list that is there may be another part's
    gone = m_mail->goOn(setup, platform::withoutTrailingBlanks(result.path));
  }
  if (gone) {
    result.mails = mailsRecord(gone->summary, gone->savedList);
    m_driver->keepFolder(outputFolderOf(setup, result.path));
  }
  return gone ? std::optional(
                    static_cast<int>(gone->complete ? RunError::None : RunError::MailFailed))
              : std::nullopt;
}

bool Program::mailOutputs(SourceResult& result) {
  const SplitSetup& setup = m_store.working();
  if (!setup.emailEnable) {
    return true;
  }
  const UnattendedResult sent = m_mail->send(setup, finishedRun(result.path, m_driver->emails()));
  result.mails = mailsRecord(sent.summary, sent.savedList);
  // Where a person is wanted, the list that was saved is all that is.
  return sent.complete || (sent.waitsForPerson && !sent.savedList.isEmpty());
}

std::optional<int> Program::sendList(const QString& path) {
  setUnattended(true);
  if (const std::optional<int> code = loadNamedSetup()) {
    return code;
  }
  const bool isSent = m_mail->sendList(m_store.edited(), path).complete;
  keepCode(static_cast<int>(isSent ? RunError::None : RunError::MailFailed));
  return m_driver->state().userStop ? std::optional(stoppedExitCode) : std::nullopt;
}

Program::Ended Program::planOne(SourceResult& result) {
  const SplitPlan plan = m_driver->Plan();
  result.outcome = &m_driver->outcome();
  if (m_driver->state().userStop) {
    m_person.found(RunFinding::Stopped,
                   QStringLiteral("%1: stopped; a plan of a part would mislead").arg(result.path));
    return {true, stoppedExitCode};
  }
  if (!plan.problem.isEmpty()) {
    m_exitCode = static_cast<int>(m_driver->state().error);
    m_person.found(runFindingOf(m_exitCode), plan.problem);
    return {false, m_exitCode};
  }
  for (const Finding& note : plan.notes) {
    m_person.found({note.kind, QStringLiteral("%1: %2").arg(result.path, note.text), note.pages});
  }
  if (m_person.wantsRecords()) {
    recordPlan(plan, m_person);
  } else {
    m_person.print(planText(plan, m_plan));
  }
  m_driver->explainNoMatch();
  return {};
}

/// Without a setup that was named, the outputs go beside the source: the settings of the last run
/// are no part of a proposal.
Program::Ended Program::suggestFor(SourceResult& result) {
  SplitSetup base = m_store.edited();
  if (m_setupPath.isEmpty()) {
    base = defaultSetup();
    base.splitToSource = true;
    base.pdfPassword = m_password.value_or(QString());
  }
  base.fileName = result.path;
  QString problem;
  if (m_driver->PageCount(base, problem) == 0) {
    m_person.found(RunFinding::Unreadable, problem);
    m_exitCode = static_cast<int>(RunError::Unreadable);
    return {false, m_exitCode};
  }
  const int code = suggest(
      {*m_text, m_person, base, m_line->suggestedSetup, m_line->unsure, m_line->force, [this] {
         m_person.handlePendingEvents();
         return !m_driver->state().userStop;
       }});
  return {m_driver->state().userStop, code};
}

void Program::close() {
  const SetupResult saved = m_store.SaveSetup(m_store.DefaultSetupPath(), SavePath::Keep);
  if (!saved.ok()) {
    m_person.found(RunFinding::SetupFile, saved.message);
    keepCode(saved.exitCode());
  }
}

} // namespace folivex
