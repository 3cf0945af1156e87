// The main window's runs, and what it is to the engine while they are on.
#include "app/MainWindow.h"
#include "app/NewsLine.h"
#include "app/RunLine.h"
#include "app/TerminalOperator.h"
#include "app/dialogs/CPageNumberDlg.h"
#include "app/dialogs/CStatusDlg.h"
#include "mail/delivery/UnattendedDelivery.h"
#include "widgets/Dialogs.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QPointer>

namespace folivex {

class MainWindow::Running {
public:
  Running(MainWindow& window, const QString& title, Shown shown)
      : m_window(window), m_active(QApplication::activeWindow()), m_focus(window.focusWidget()) {
    m_elapsed.start();
    window.m_isRunning = true;
    window.m_eventPace.reset();
    window.m_paintPace.reset();
    window.m_panel->setEnabled(false);
    window.m_menus->setRunning(true);
    window.m_runLine->begin(title);
    window.m_usesStatusDialog = shown == Shown::StatusDialog;
    if (window.m_usesStatusDialog) {
      window.m_status->begin(title, window.m_program.store().edited().fileName);
    }
  }
  ~Running() {
    // The status window took the keyboard. Whoever went on to another program meanwhile is left
    // there; a run that was over before any window had it says nothing of that.
    constexpr int shortRunMs = 1000;
    const bool isOurs =
        m_window.m_usesStatusDialog && (QApplication::applicationState() == Qt::ApplicationActive ||
                                        m_elapsed.elapsed() < shortRunMs);
    m_window.m_status->end();
    m_window.m_isRunning = false;
    m_window.m_usesStatusDialog = false;
    m_window.m_runLine->end();
    m_window.m_panel->setEnabled(true);
    m_window.m_menus->setRunning(false);
    giveBackKeyboard();
    QWidget* active = m_active != nullptr && m_active->isVisible() ? m_active.data() : &m_window;
    if (isOurs && active->isVisible()) {
      active->activateWindow(); // the list or the plan may have begun the run
    }
  }
  Running(const Running&) = delete;
  Running& operator=(const Running&) = delete;

private:
  /// All that could have it was disabled while the run was on.
  void giveBackKeyboard() {
    QWidget* widget = m_focus != nullptr && m_focus->isEnabled() ? m_focus.data() : nullptr;
    for (QWidget* next = m_window.nextInFocusChain(); widget == nullptr && next != &m_window;
         next = next->nextInFocusChain()) {
      if (next->isEnabled() && next->isVisible() && (next->focusPolicy() & Qt::TabFocus) != 0) {
        widget = next;
      }
    }
    if (widget != nullptr) {
      widget->setFocus();
    }
  }

  MainWindow& m_window;
  QPointer<QWidget> m_active; ///< when the run began
  QPointer<QWidget> m_focus;
  QElapsedTimer m_elapsed;
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
  const QString document = m_parts.currentDocument ? m_parts.currentDocument() : QString();
  if (needsDocument && document.isEmpty()) {
    more.push_back({QStringLiteral("USECURRENT"),
                    QStringLiteral("No PDF is open in the page viewer."), FindingKind::Problem});
  }
  if (!m_panel->check(purpose, more)) {
    m_runLine->setStatus(QStringLiteral("Something has to be set right first."));
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
    const Running running(*this, QStringLiteral("Processing"), Shown::StatusDialog);
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
  m_runLine->setStatus(state.userStop ? QStringLiteral("Stopped.") : QStringLiteral("Ready."));
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
    const Running running(*this, QStringLiteral("Processing list"), Shown::StatusDialog);
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
  m_runLine->setStatus(
      QStringLiteral("%1 %2 file(s) processed.")
          .arg(result.stopped ? QStringLiteral("Stopped.") : QStringLiteral("Ready."))
          .arg(result.processed));
}

void MainWindow::showMatches() {
  if (!readyFor(SetupPurpose::Reading)) {
    return;
  }
  {
    const Running running(*this, QStringLiteral("Showing matches"), Shown::StatusLine);
    m_parts.walkMatches(m_program.driver(), currentSetup());
    m_program.explainNoMatch();
  }
  m_runLine->setStatus(QStringLiteral("Ready."));
}

void MainWindow::plan() {
  if (!readyFor(SetupPurpose::Reading)) {
    return;
  }
  SplitPlan plan;
  {
    const Running running(*this, QStringLiteral("Planning"), Shown::StatusDialog);
    plan = m_program.driver().Plan();
    m_program.explainNoMatch();
  }
  if (m_program.driver().state().userStop) {
    m_runLine->setStatus(QStringLiteral("Stopped: there is no plan of a part."));
    return;
  }
  m_runLine->setStatus(QStringLiteral("Ready."));
  if (!plan.problem.isEmpty()) {
    message(plan.problem);
    return;
  }
  m_parts.showPlan(m_program.store().edited().fileName, plan);
}

int MainWindow::askForPage() {
  if (!readyFor(SetupPurpose::Viewing)) {
    return 0;
  }
  QString problem;
  const int pages = m_program.pageCount(currentSetup(), problem);
  if (pages == 0) {
    message(problem);
    return 0;
  }
  CPageNumberDlg dialog(pages, m_lastPage, this);
  if (dialog.exec() != QDialog::Accepted) {
    return 0;
  }
  m_lastPage = dialog.page();
  return m_lastPage;
}

void MainWindow::viewPage() {
  if (const int page = askForPage(); page > 0) {
    m_parts.viewPage(currentSetup(), page);
  }
}

void MainWindow::listPage() {
  const int page = askForPage();
  if (page == 0) {
    return;
  }
  {
    const Running running(*this, QStringLiteral("Listing page %1").arg(page), Shown::StatusLine);
    m_program.driver().ListPagePositions(page);
  }
  m_runLine->setStatus(QStringLiteral("Ready."));
}

void MainWindow::runCommandLine(const CommandLine& line) {
  Program::Ended ended;
  {
    const Running running(*this, QStringLiteral("Processing"), Shown::StatusDialog);
    ended = m_program.handleCommandLine(line);
  }
  showSetup();
  m_runLine->setStatus(
      m_program.isReady() && m_program.driver().state().userStop ? QStringLiteral("Stopped.")
      : ended.exitCode == 0                                      ? QStringLiteral("Ready.")
                            : QStringLiteral("Ready. The run ended with %1.").arg(ended.exitCode));
  if (ended.mustEnd) {
    QApplication::exit(ended.exitCode);
  }
}

void MainWindow::stop() {
  m_program.driver().Stop();
  if (m_parts.stopWalk) {
    m_parts.stopWalk();
  }
  m_runLine->setStatus(QStringLiteral("Stopping..."));
}

void MainWindow::message(const QString& text) {
  m_status->end(); // the next step of a run that goes on shows it again
  m_dialogs.message(this, text);
}

Answer MainWindow::question(const QString& text, const QString& caption) {
  m_status->end();
  return m_dialogs.question(this, text, caption) ? Answer::Yes : Answer::No;
}

void MainWindow::note(const QString& text) {
  if (m_program.isReady() && m_program.driver().state().commandLine) {
    tellTerminal(text); // the window may close before anybody has read it
  }
  m_runLine->note(text);
}

QStringList MainWindow::lastTold() const {
  return m_runLine->lastTold();
}

void MainWindow::remember(const QString& text) {
  m_runLine->remember(text);
}

void MainWindow::tellNews(const QString& text, const std::function<void()>& onMore) {
  m_news->tell(text, onMore);
}

void MainWindow::print(const QString& text) {
  m_runLine->note(text);
}

void MainWindow::progress(const Progress& progress) {
  if (m_usesStatusDialog) {
    m_status->progress(progress);
  } else if (m_paintPace.isDue()) {
    m_runLine->progress(progress);
  }
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
