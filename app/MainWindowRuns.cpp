// The main window's runs, and what it is to the engine while they are on.
#include "app/ActivityLine.h"
#include "app/MainWindow.h"
#include "app/NewsLine.h"
#include "app/TerminalOperator.h"
#include "app/viewer/MatchWalker.h"
#include "app/viewer/PagePane.h"
#include "app/viewer/PlanPane.h"
#include "mail/delivery/UnattendedDelivery.h"
#include "widgets/Dialogs.h"

#include <QApplication>
#include <QPointer>

namespace folivex {

class MainWindow::Running {
public:
  Running(MainWindow& window, const QString& title, int passes = 1)
      : m_window(window), m_focus(window.focusWidget()) {
    window.m_isRunning = true;
    window.m_eventPace.reset();
    window.m_rules->setEnabled(false);
    window.m_menus->setRunning(true);
    window.m_activity->begin(title, passes);
  }
  ~Running() {
    m_window.m_isRunning = false;
    m_window.m_activity->end();
    m_window.m_rules->setEnabled(true);
    m_window.m_menus->setRunning(false);
    giveBackKeyboard();
  }
  Running(const Running&) = delete;
  Running& operator=(const Running&) = delete;

private:
  /// All that could have it was disabled while the run was on.
  void giveBackKeyboard() {
    QWidget* now = m_window.focusWidget();
    if (m_focus != nullptr && m_focus->isEnabled() && (now == nullptr || !now->isEnabled() || now == m_window.m_activity->stopButton())) {
      m_focus->setFocus();
    }
  }

  MainWindow& m_window;
  QPointer<QWidget> m_focus; ///< when the run began
};

namespace {

/// A batch run before there is any list.
class NoRows : public BatchRows {
public:
  int count() const override { return 0; }
  QString useFlag(int /*row*/) const override { return {}; }
  QString path(int /*row*/) const override { return {}; }
  void setStatus(int /*row*/, const QString& /*status*/, const QString& /*result*/) override {}
  void showRow(int /*row*/) override {}
};

} // namespace

bool MainWindow::readyFor(SetupPurpose purpose) {
  SettingFindings more;
  const SplitSetup setup = currentSetup();
  const bool needsDocument = setup.useCurrent && purpose != SetupPurpose::SplittingList;
  const QString document = m_page->pageCount() > 0 ? m_page->file().path : QString();
  if (needsDocument && document.isEmpty()) {
    more.push_back({QStringLiteral("USECURRENT"),
                    QStringLiteral("No PDF is open: there is no page to see."),
                    FindingKind::Problem});
  }
  if (!m_rules->check(purpose, more)) {
    m_docks->bringUp(m_rules);
    m_activity->setStatus(QStringLiteral("Something has to be set right first."));
    return false;
  }
  takeSetup();
  if (needsDocument) {
    m_program.store().edited().fileName = document;
    showSetup();
  }
  return true;
}

void MainWindow::process() {
  if (m_isRunning || !m_program.isReady() || !readyFor(SetupPurpose::Splitting)) {
    return;
  }
  if (!m_program.store().automation() && m_parts.goOnMailing &&
      m_parts.goOnMailing(currentSetup())) {
    return;
  }
  const RunState& state = m_program.driver().state();
  const auto mail = [this, &state] {
    if (!state.userStop && state.outputCount > 0) {
      mailOutputs();
    }
  };
  // Mails that nobody watches are a part of the run, and its Stop is theirs.
  const bool isUnattended = m_program.store().automation();
  {
    const Running running(*this, QStringLiteral("Processing"));
    m_mail = m_program.unattendedMail();
    // The stop of the last run is kept until the next one begins.
    if (!isUnattended || state.userStop || !m_mail->goOn(currentSetup(), currentSetup().fileName)) {
      m_program.driver().StartProcessing();
      m_program.explainNoMatch();
      if (isUnattended) {
        mail();
      }
    }
    m_mail->finish();
  }
  m_activity->setStatus(state.userStop ? QStringLiteral("Stopped.") : QStringLiteral("Ready."));
  if (!isUnattended) {
    mail();
  }
}

/// In automation mode nobody is asked about mails, and what there is to say of them is noted. Where
/// a run before did not mail all, its list is gone on with in place of what was split anew.
void MainWindow::mailUnattended(const SplitSetup& setup) {
  if (!m_mail->goOn(setup, setup.fileName)) {
    static_cast<void>(
        m_mail->send(setup, finishedRun(setup.fileName, m_program.driver().emails())));
  }
}

void MainWindow::mailOutputs() {
  const SplitSetup setup = currentSetup();
  if (setup.emailEnable && m_program.store().automation()) {
    mailUnattended(setup);
  } else if (setup.emailEnable && m_parts.mailOutputs) {
    m_parts.mailOutputs(m_program.driver(), setup);
  }
}

void MainWindow::mailBatchSource() {
  const SplitSetup& setup = m_program.store().working();
  if (setup.emailEnable && m_program.store().automation()) {
    mailUnattended(setup);
  } else if (setup.emailEnable && m_parts.mailBatchSource) {
    m_parts.mailBatchSource(m_program.driver(), setup);
  }
}

void MainWindow::processList() {
  if (m_isRunning || !m_program.isReady() || !m_parts.batchRows ||
      !readyFor(SetupPurpose::SplittingList)) {
    return;
  }
  NoRows none;
  BatchRows* rows = m_parts.batchRows();
  const auto tellList = [this](bool running) {
    if (m_parts.batchRunning) {
      m_parts.batchRunning(running);
    }
  };
  tellList(true);
  BatchResult result;
  {
    const Running running(*this, QStringLiteral("Processing list"));
    m_mail = m_program.unattendedMail();
    result = m_program.driver().ProcessBatch(rows == nullptr ? none : *rows,
                                             [this](const QString&) { mailBatchSource(); });
    m_mail->finish();
  }
  tellList(false);
  if (m_program.store().working().emailEnable && m_parts.mailBatchEnd) {
    m_parts.mailBatchEnd();
  }
  showSetup();
  m_activity->setStatus(
      QStringLiteral("%1 %2 file(s) processed.")
          .arg(result.stopped ? QStringLiteral("Stopped.") : QStringLiteral("Ready."))
          .arg(result.processed));
}

void MainWindow::showMatches() {
  if (!readyFor(SetupPurpose::Reading)) {
    return;
  }
  {
    const Running running(*this, QStringLiteral("Showing matches"));
    JobDriver& driver = m_program.driver();
    MatchWalker walker(*m_page, [&driver] { driver.Stop(); });
    m_walker = &walker;
    driver.ShowMatches(walker);
    m_walker = nullptr;
    m_program.explainNoMatch();
  }
  m_activity->setStatus(QStringLiteral("Ready."));
}

void MainWindow::plan() {
  if (!readyFor(SetupPurpose::Reading)) {
    return;
  }
  SplitPlan plan;
  {
    const Running running(*this, QStringLiteral("Planning"));
    plan = m_program.driver().Plan();
    m_program.explainNoMatch();
  }
  if (m_program.driver().state().userStop) {
    m_activity->setStatus(QStringLiteral("Stopped: there is no plan of a part."));
    return;
  }
  m_activity->setStatus(QStringLiteral("Ready."));
  if (!plan.problem.isEmpty()) {
    message(plan.problem);
    return;
  }
  m_plan->setPlan(m_program.store().edited().fileName,
                  std::make_unique<PlanRows>(std::make_shared<SplitPlan>(plan), m_plan->order()));
  m_docks->bringUp(m_plan);
}

void MainWindow::listPage() {
  if (!readyFor(SetupPurpose::Viewing)) {
    return;
  }
  {
    const int page = std::max(m_page->page(), 1);
    const Running running(*this, QStringLiteral("Listing page %1").arg(page));
    m_program.driver().ListPagePositions(page);
  }
  m_activity->setStatus(QStringLiteral("Ready."));
}

void MainWindow::runCommandLine(const CommandLine& line) {
  Program::Ended ended;
  {
    const Running running(*this, QStringLiteral("Processing"));
    ended = m_program.handleCommandLine(line);
  }
  showSetup();
  m_activity->setStatus(
      m_program.isReady() && m_program.driver().state().userStop ? QStringLiteral("Stopped.")
      : ended.exitCode == 0                                      ? QStringLiteral("Ready.")
                            : QStringLiteral("Ready. The run ended with %1.").arg(ended.exitCode));
  if (ended.mustEnd) {
    QApplication::exit(ended.exitCode);
  }
}

void MainWindow::stop() {
  m_program.driver().Stop();
  if (m_walker != nullptr) {
    m_walker->stop();
  }
  m_activity->tellStopping();
}

void MainWindow::message(const QString& text) {
  m_dialogs.message(this, text);
}

Answer MainWindow::question(const QString& text, const QString& caption) {
  return m_dialogs.question(this, text, caption) ? Answer::Yes : Answer::No;
}

void MainWindow::note(const QString& text) {
  if (m_program.isReady() && m_program.driver().state().commandLine) {
    tellTerminal(text); // the window may close before anybody has read it
  }
  m_activity->note(text);
}

QStringList MainWindow::lastTold() const {
  return m_activity->lastTold();
}

void MainWindow::remember(const QString& text) {
  m_activity->remember(text);
}

void MainWindow::tellNews(const QString& text, const std::function<void()>& onMore) {
  m_news->tell(text, onMore);
}

void MainWindow::print(const QString& text) {
  m_activity->note(text);
}

void MainWindow::progress(const Progress& progress) {
  m_activity->progress(progress);
}

void MainWindow::handlePendingEvents() {
  if (m_eventPace.isDue()) {
    QApplication::processEvents();
  }
}

void MainWindow::openDocument(const QString& path) {
  if (!m_dialogs.openOutside(path)) {
    note(QStringLiteral("No program opens %1").arg(path));
  }
}

} // namespace folivex
