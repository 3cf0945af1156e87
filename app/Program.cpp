#include "app/Program.h"

#include "app/FolderSearch.h"
#include "app/SuggestCommand.h"
#include "app/plan/PlanPrinter.h"
#include "engine/setup/SetupFields.h"
#include "mail/AddressSearch.h"
#include "mail/delivery/UnattendedDelivery.h"
#include "platform/FileSystem.h"
#include "platform/Paths.h"

#include <QFileInfo>

namespace folivex {

namespace {

QString missingLibrary(const QString& name) {
  return QStringLiteral("Error initilizing, dll missing or unable to load %1.dll").arg(name);
}

/// Of a run that was told to stop: not all of its work is done.
constexpr int stoppedExitCode = 1;

/// Failures after which an unattended program does not go on to its next file.
bool endsProgram(RunError error) {
  switch (error) {
  case RunError::TextReport:
  case RunError::CsvReport:
  case RunError::SetupFile:
  case RunError::Append:
    return true;
  default:
    return false;
  }
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

QString Program::loadLibraries() {
  m_text = std::make_unique<CPDFTextDumpInit>();
  if (!m_text->loaded) {
    m_person.note(m_text->error + QStringLiteral(" (%1)").arg(m_text->errorDetail));
    return missingLibrary(QStringLiteral("GlyphrunU"));
  }
  m_split = std::make_unique<CSplitPdfInit>();
  if (!m_split->loaded) {
    m_person.note(m_split->error + QStringLiteral(" (%1)").arg(m_split->errorDetail));
    return missingLibrary(QStringLiteral("CleftorU"));
  }
  m_append = std::make_unique<CAppendPdfInit>();
  if (!m_append->loaded) {
    m_person.note(m_append->error + QStringLiteral(" (%1)").arg(m_append->errorDetail));
    return missingLibrary(QStringLiteral("MelderU"));
  }
  m_driver = std::make_unique<JobDriver>(
      m_store, JobDriver::Libraries{*m_text, *m_split, *m_append}, m_person);
  m_driver->setAddressReaderMaker(addressReaderFor);
  return {};
}

void Program::report(const SetupResult& result) {
  if (!result.message.isEmpty()) {
    if (m_store.automation()) {
      m_person.note(result.message);
    } else {
      m_person.message(result.message);
    }
  }
  if (!result.note.isEmpty()) {
    m_person.note(result.note);
  }
}

void Program::loadDefaultSetup() {
  if (const QString problem = platform::installFolderOfSetup().problem; !problem.isEmpty()) {
    m_person.message(problem);
  }
  const QString path = m_store.DefaultSetupPath();
  report(m_store.LoadSetup(path, LoadMode::AutomationCheck));
  loadSetup(path); // a first start has none
}

bool Program::loadSetup(const QString& path) {
  const SetupResult loaded = m_store.LoadSetup(path);
  m_driver->setAutomation(m_store.automation());
  report(loaded);
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
    m_person.note(line.error);
    return {true, line.errorCode};
  }
  if (!line.ignored.isEmpty()) {
    m_person.note(QStringLiteral("these arguments mean nothing here and are left out: %1")
                      .arg(line.ignored.join(QStringLiteral(", "))));
  }
  tellUnused(line);
  m_driver->beginBatch(sourcesOf(line));
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
  const char* unused = nullptr;
  for (const CommandAction& action : line.actions) {
    switch (action.kind) {
    case CommandAction::Kind::SetSetupPath:
      unused = "-u";
      break;
    case CommandAction::Kind::SetPassword:
      unused = "-p";
      break;
    case CommandAction::Kind::ProcessFile:
    case CommandAction::Kind::ProcessFolder:
      unused = nullptr;
      break;
    case CommandAction::Kind::Close:
      break;
    }
  }
  if (unused != nullptr) {
    m_person.note(QStringLiteral("\"%1\" counts for the \"-f\" behind it, and none stands there")
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
    return processSource(action.value);
  case CommandAction::Kind::ProcessFolder:
    return processFolder(action.value);
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
    m_person.note(QStringLiteral("%1: the setup file cannot be read").arg(m_setupPath));
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

std::optional<int> Program::processSource(const QString& path) {
  setUnattended(true);
  if (!platform::isReadableFile(path)) {
    m_person.note(QStringLiteral("%1: the file cannot be read").arg(path));
    return static_cast<int>(RunError::SourceMissing);
  }
  if (const std::optional<int> code = loadNamedSetup()) {
    return code;
  }
  return runOne(path);
}

std::optional<int> Program::runOne(const QString& path) {
  m_store.edited().fileName = path;
  if (m_line->suggest) {
    return suggestFor(path);
  }
  if (m_plan != PlanOutput::None) {
    return planOne(path);
  }
  if (const std::optional<int> code = goOnMailing(path)) {
    m_exitCode = m_exitCode == 0 ? *code : m_exitCode;
    return m_driver->state().userStop ? std::optional(stoppedExitCode) : std::nullopt;
  }
  const RunError error = m_driver->StartProcessing();
  explainNoMatch();
  int code = static_cast<int>(error);
  if (endsProgram(error)) {
    return code;
  }
  if (m_driver->state().userStop) {
    return stoppedExitCode;
  }
  if (!mailOutputs(path) && code == 0) {
    code = static_cast<int>(RunError::MailFailed);
  }
  if (m_driver->state().userStop) {
    return stoppedExitCode; // while the mails went out
  }
  if (m_exitCode == 0) {
    m_exitCode = code;
  }
  return std::nullopt;
}

std::unique_ptr<UnattendedDelivery> Program::unattendedMail() {
  return std::make_unique<UnattendedDelivery>(DeliveryMeans{m_split.get(), {}}, m_person,
                                              [this] { return m_driver->state().userStop; });
}

std::unique_ptr<LivePlan> Program::livePlan(LivePlan::OnState onState) {
  return std::make_unique<LivePlan>(*m_text, addressReaderFor, std::move(onState));
}

std::optional<int> Program::goOnMailing(const QString& source) {
  SplitSetup setup = m_store.working();
  commitSetup(m_store.edited(), setup);
  const std::optional<UnattendedResult> gone =
      m_mail->goOn(setup, platform::withoutTrailingBlanks(source));
  if (gone) {
    m_driver->keepFolder(outputFolderOf(setup, source));
  }
  return gone ? std::optional(
                    static_cast<int>(gone->complete ? RunError::None : RunError::MailFailed))
              : std::nullopt;
}

bool Program::mailOutputs(const QString& source) {
  const SplitSetup& setup = m_store.working();
  if (!setup.emailEnable) {
    return true;
  }
  const UnattendedResult result = m_mail->send(setup, finishedRun(source, m_driver->emails()));
  // With a confirmation asked for, the list that was saved is all that is wanted here.
  return result.complete || (setup.emailConfirm && !result.savedList.isEmpty());
}

std::optional<int> Program::planOne(const QString& path) {
  const SplitPlan plan = m_driver->Plan();
  if (m_driver->state().userStop) {
    m_person.note(QStringLiteral("%1: stopped; a plan of a part would mislead").arg(path));
    return stoppedExitCode;
  }
  if (!plan.problem.isEmpty()) {
    m_person.note(plan.problem);
    m_exitCode = static_cast<int>(m_driver->state().error);
    return std::nullopt;
  }
  for (const QString& line : plan.notes) {
    m_person.note(QStringLiteral("%1: %2").arg(path, line));
  }
  m_person.print(planText(plan, m_plan));
  explainNoMatch();
  return std::nullopt;
}

/// Without a setup that was named, the outputs go beside the source: the settings of the last run
/// are no part of a proposal.
std::optional<int> Program::suggestFor(const QString& path) {
  SplitSetup base = m_store.edited();
  if (m_setupPath.isEmpty()) {
    base = defaultSetup();
    base.splitToSource = true;
    base.pdfPassword = m_password.value_or(QString());
  }
  base.fileName = path;
  QString problem;
  if (m_driver->PageCount(base, problem) == 0) {
    m_person.note(problem);
    m_exitCode = static_cast<int>(RunError::Unreadable);
    return std::nullopt;
  }
  const int code = suggest(
      {*m_text, m_person, base, m_line->suggestedSetup, m_line->unsure, m_line->force, [this] {
         m_person.handlePendingEvents();
         return !m_driver->state().userStop;
       }});
  m_exitCode = m_exitCode == 0 ? code : m_exitCode;
  return m_driver->state().userStop ? std::optional(code) : std::nullopt;
}

void Program::explainNoMatch() {
  const RunState& state = m_driver->state();
  if (state.rangeCount > 0 || state.emptiedRanges > 0 || state.userStop ||
      state.error != RunError::None) {
    return;
  }
  for (const QString& line : m_driver->NearestWords()) {
    m_person.note(line);
  }
}

int Program::pageCount(const SplitSetup& setup, QString& problem) {
  return m_driver->PageCount(setup, problem);
}

/// A file that was meant and is not split makes the whole search fail.
void Program::tellNotTaken(const QString& pattern, const FolderSearch& found) {
  if (!found.problem.isEmpty()) {
    m_person.note(found.problem);
  }
  for (const QString& line : found.notTaken) {
    m_person.note(line);
  }
  if (!found.notTaken.isEmpty()) {
    m_person.note(
        QStringLiteral("%1: %2 file(s) are not taken").arg(pattern).arg(found.notTaken.size()));
  }
  if (!found.otherSpellings.isEmpty()) {
    m_person.note(
        QStringLiteral("%1: only names that end in .pdf or .PDF are looked for; left out: "
                       "%2")
            .arg(pattern, found.otherSpellings.join(QStringLiteral(", "))));
  }
  if (found.paths.isEmpty()) {
    m_person.note(QStringLiteral("%1: no PDF is there").arg(pattern));
  }
  if (m_exitCode == 0 && (!found.problem.isEmpty() || !found.notTaken.isEmpty())) {
    m_exitCode = static_cast<int>(RunError::SourceMissing);
  }
}

std::optional<int> Program::processFolder(const QString& pattern) {
  setUnattended(true);
  const QString folder = platform::folderOf(pattern);
  if (!folder.isEmpty() && !QFileInfo(folder).isDir()) {
    m_person.note(QStringLiteral("%1: there is no such folder").arg(folder));
    return static_cast<int>(RunError::SourceMissing);
  }
  if (const std::optional<int> code = loadNamedSetup()) {
    return code;
  }
  const FolderSearch found = FolderSearch::of(pattern);
  tellNotTaken(pattern, found);
  for (const QString& file : found.paths) {
    if (const std::optional<int> code = runOne(file)) {
      return code;
    }
  }
  return std::nullopt;
}

void Program::close() {
  const SetupResult saved = m_store.SaveSetup(m_store.DefaultSetupPath(), SavePath::Keep);
  if (!saved.ok()) {
    m_person.note(saved.message);
    if (m_exitCode == 0) {
      m_exitCode = saved.exitCode();
    }
  }
}

} // namespace folivex
