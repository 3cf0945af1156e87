// The main window's runs, and what it is to the engine while they are on.
#include "app/ActivityLine.h"
#include "app/EndPanel.h"
#include "app/MainWindow.h"
#include "app/TerminalOperator.h"
#include "app/viewer/MatchWalker.h"
#include "app/viewer/PagePane.h"
#include "app/viewer/PlanPane.h"
#include "engine/report/ReportPaths.h"
#include "mail/delivery/UnattendedDelivery.h"
#include "widgets/DesktopNotice.h"
#include "widgets/Dialogs.h"
#include "widgets/OfferLine.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QPointer>
#include <QPushButton>
#include <QScopedValueRollback>

namespace folivex {

namespace {

/// What is gone through for each source with these settings.
std::vector<Phase> phasesOf(const SplitSetup& setup) {
  std::vector<Phase> phases{Phase::Reading};
  if (setup.alwaysOverwrite || setup.alwaysAppend) {
    phases.push_back(Phase::Writing);
  }
  if (setup.emailEnable && !setup.emailConfirm) {
    phases.push_back(Phase::Sending);
  }
  return phases;
}

} // namespace

/// Meanwhile nothing but Stop can be used. Afterwards the keyboard is where it was: all that could
/// have it was disabled.
void MainWindow::work(const QString& title, const std::function<void()>& job,
                      const std::vector<Phase>& phases) {
  const QPointer<QWidget> focus(focusWidget());
  const auto lock = [this](bool isOn) {
    m_isRunning = isOn;
    m_rules->setEnabled(!isOn);
    m_end->setEnabled(!isOn);
    m_menus.setRunning(isOn);
  };
  lock(true);
  m_end->giveWay();
  m_eventPace.reset();
  m_activity->begin(title, phases);
  const QPointer<QWidget> driven(focusWidget()); // out of what was disabled
  job();
  m_onStop = nullptr;
  m_activity->end();
  lock(false);
  const QWidget* now = focusWidget();
  if (focus != nullptr && focus->isEnabled() &&
      (now == nullptr || !now->isEnabled() || now == driven || now == m_activity->stopButton())) {
    focus->setFocus();
  }
  m_activity->setStatus(QStringLiteral("Ready."));
}

/// The settings are taken, when work of this kind can be done with them.
bool MainWindow::readyFor(SetupPurpose purpose) {
  if (m_isRunning || !m_program.isReady()) {
    return false;
  }
  SettingFindings more;
  const bool needsDocument = currentSetup().useCurrent && purpose != SetupPurpose::SplittingList;
  const QString document = m_page->pageCount() > 0 ? m_page->file().path : QString();
  if (needsDocument && document.isEmpty()) {
    more.push_back({QStringLiteral("USECURRENT"),
                    QStringLiteral("No PDF is open: there is no page to see."),
                    FindingKind::Problem});
  }
  if (!m_rules->check(purpose, more)) {
    m_docks->bringUp(m_rules);
    m_activity->tellProblem(QStringLiteral("Something has to be set right first."));
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
  if (!readyFor(SetupPurpose::Splitting)) {
    return;
  }
  // Nobody watches, nobody is asked.
  const bool isUnattended = m_program.store().automation();
  if (!isUnattended && m_parts.goOnMailing && m_parts.goOnMailing(currentSetup())) {
    return;
  }
  if (!isUnattended && !isAgreedOn()) {
    m_activity->setStatus(QStringLiteral("Nothing was made."));
    return;
  }
  const SplitSetup setup = currentSetup();
  JobDriver& driver = m_program.driver();
  const auto mail = [&] {
    if (!driver.state().userStop && driver.state().outputCount > 0) {
      mailOutputs(setup, m_parts.mailOutputs);
    }
  };
  const bool mailsAtOnce = isUnattended || !setup.emailConfirm;
  split(QStringLiteral("Processing"), setup, [&](RunEnd& /*end*/) {
    // The stop of the last run is kept until the next one begins.
    if (isUnattended && !driver.state().userStop && m_mail->goOn(setup, setup.fileName)) {
      return false;
    }
    driver.StartProcessing(m_shownPlan.get());
    m_program.driver().explainNoMatch();
    if (mailsAtOnce) {
      mail();
    }
    return true;
  });
  if (!mailsAtOnce) {
    mail();
  }
  tellWaitingMails();
}

/// How `job` ended is told above the page, and on the desktop when the person looks elsewhere;
/// unless it says that nothing was to be split.
void MainWindow::split(const QString& title, const SplitSetup& setup,
                       const std::function<bool(RunEnd& end)>& job) {
  if (m_parts.waitingMails.forget) {
    m_parts.waitingMails.forget();
  }
  m_end->hide();
  m_feed->setPaused(true);
  QElapsedTimer elapsed;
  elapsed.start();
  RunEnd end;
  bool isSplit = false;
  work(
      title,
      [&] {
        const QScopedValueRollback telling(m_ending, &end);
        m_mail = m_program.unattendedMail();
        isSplit = job(end);
        m_mail->finish();
      },
      phasesOf(setup));
  if (m_program.driver().state().userStop) {
    m_activity->setStatus(QStringLiteral("Stopped."));
  }
  m_feed->setPaused(false);
  showSetup(); // and plan against what is in the folder now
  end.elapsedMs = elapsed.elapsed();
  if (isSplit) {
    tellEnd(end);
  }
}

void MainWindow::tellEnd(RunEnd& end) {
  const JobDriver& driver = m_program.driver();
  const RunTotals& totals = driver.totals();
  const SplitSetup setup = currentSetup();
  end.sources = totals.sources;
  end.account = totals.account;
  end.files = totals.files;
  end.isListOnly = setup.createList;
  end.isStopped = driver.state().userStop;
  end.hasFailed = end.hasFailed || totals.hasFailed;
  const QString folder = outputFolderOf(setup, totals.lastSource);
  if (end.files > 0 && (end.sources == 1 || !setup.splitToSource)) {
    end.folder = folder;
  }
  const QString report =
      reportPaths(setup, totals.lastSource, folder, currentFolderIsWritable()).text;
  if (end.sources == 1 && setup.reportOptionsTxt && QFileInfo(report).isFile()) {
    end.report = report;
  }
  end.findings.removeAll(end.account.summary(end.files)); // the panel says it in its own words
  m_end->tell(end);
  m_activity->clearNotes();
  if (!isActiveWindow()) {
    showDesktopNotice(QStringLiteral("Folivex"), summaryOf(end).headline);
  }
}

void MainWindow::tellWaitingMails() {
  if (m_parts.waitingMails.count) {
    m_end->tellMails(m_parts.waitingMails.count());
  }
}

/// In automation mode nobody is asked about mails, and what there is to say of them is noted. Where
/// a run before did not mail all, its list is gone on with in place of what was split anew.
void MainWindow::mailOutputs(const SplitSetup& setup, const WindowParts::Mailing& attended) {
  JobDriver& driver = m_program.driver();
  if (!setup.emailEnable) {
    return;
  }
  if (!m_program.store().automation()) {
    if (attended) {
      attended(driver, setup);
    }
  } else if (!m_mail->goOn(setup, setup.fileName)) {
    static_cast<void>(m_mail->send(setup, finishedRun(setup.fileName, driver.emails())));
  }
}

void MainWindow::processList() {
  if (!m_parts.batchRows || !readyFor(SetupPurpose::SplittingList)) {
    return;
  }
  BatchRows* rows = m_parts.batchRows();
  if (rows == nullptr || rows->count() == 0) {
    message(noListText());
    return;
  }
  const auto tellList = [this](bool isRunning) {
    if (m_parts.batchRunning) {
      m_parts.batchRunning(isRunning);
    }
  };
  const SplitSetup setup = currentSetup();
  BatchResult result;
  tellList(true);
  split(QStringLiteral("Processing list"), setup, [&](RunEnd& end) {
    result = m_program.driver().ProcessBatch(*rows, [this](const QString&) {
      mailOutputs(m_program.store().working(), m_parts.mailBatchSource);
    });
    end.hasFailed = result.failed > 0;
    return true;
  });
  tellList(false);
  if (setup.emailEnable && m_parts.mailBatchEnd) {
    m_parts.mailBatchEnd();
  }
  tellWaitingMails();
  m_activity->setStatus(
      QStringLiteral("%1 %2 file(s) processed.")
          .arg(result.stopped ? QStringLiteral("Stopped.") : QStringLiteral("Ready."))
          .arg(result.processed));
}

void MainWindow::showMatches() {
  if (!readyFor(SetupPurpose::Reading)) {
    return;
  }
  work(QStringLiteral("Showing matches"), [this] {
    JobDriver& driver = m_program.driver();
    MatchWalker walker(*m_page, [&driver] { driver.Stop(); });
    m_onStop = [&walker] { walker.stop(); };
    driver.ShowMatches(walker);
    m_program.driver().explainNoMatch();
  });
}

void MainWindow::plan() {
  m_docks->bringUp(m_plan);
  if (readyFor(SetupPurpose::Reading)) {
    replan();
  }
}

/// Page by page, for a file that is too large for its words to be kept.
void MainWindow::planWhole() {
  if (!readyFor(SetupPurpose::Reading)) {
    return;
  }
  SplitPlan plan;
  work(QStringLiteral("Planning"), [&] {
    plan = m_program.driver().Plan();
    m_program.driver().explainNoMatch();
  });
  if (m_program.driver().state().userStop) {
    m_activity->setStatus(QStringLiteral("Stopped: there is no plan of a part."));
  } else if (!plan.problem.isEmpty()) {
    message(plan.problem);
  } else {
    m_plan->setPlan(m_program.store().edited().fileName,
                    std::make_unique<PlanRows>(std::make_shared<SplitPlan>(plan), m_plan->order()));
  }
}

/// Makes the copy whose words the plan waits for.
void MainWindow::recognise() {
  if (!readyFor(SetupPurpose::Reading)) {
    return;
  }
  bool isMade = false;
  work(QStringLiteral("Recognising"), [&] { isMade = m_program.driver().Recognise(); });
  if (!isMade) {
    m_activity->setStatus(QStringLiteral("The words were not recognised."));
  }
  replan();
}

void MainWindow::listPage() {
  if (!readyFor(SetupPurpose::Viewing)) {
    return;
  }
  const int page = std::max(m_page->page(), 1);
  work(QStringLiteral("Listing page %1").arg(page),
       [&] { m_program.driver().ListPagePositions(page); });
}

void MainWindow::runCommandLine(const CommandLine& line) {
  Program::Ended ended;
  split(QStringLiteral("Processing"), currentSetup(), [&](RunEnd& end) {
    ended = m_program.handleCommandLine(line);
    end.hasFailed = ended.exitCode != 0;
    return end.hasFailed || m_program.driver().totals().sources > 0;
  });
  if (ended.exitCode != 0 && !m_program.driver().state().userStop) {
    m_activity->setStatus(QStringLiteral("Ready. The run ended with %1.").arg(ended.exitCode));
  }
  if (ended.mustEnd) {
    QApplication::exit(ended.exitCode);
  }
}

void MainWindow::stop() {
  if (m_onStop) {
    m_onStop();
  } else {
    m_program.driver().Stop();
  }
  m_activity->tellStopping();
}

void MainWindow::message(const QString& text) {
  if (m_ending != nullptr) {
    m_ending->told += text;
    remember(text);
    return;
  }
  m_dialogs.message(this, text);
}

Answer MainWindow::question(const QString& text, const QString& caption) {
  // The closing question is answered by a button of the panel.
  if (m_ending != nullptr && text.startsWith(QLatin1String("Done!"))) {
    message(text);
    return Answer::No;
  }
  return m_dialogs.question(this, text, caption) ? Answer::Yes : Answer::No;
}

void MainWindow::note(const QString& text) {
  if (m_program.isReady() && m_program.driver().state().commandLine) {
    tellTerminal(text); // the window may close before anybody has read it
  }
  if (m_ending != nullptr) {
    m_ending->findings += text;
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
  m_news->offer(text, {{QStringLiteral("More..."), onMore}});
}

void MainWindow::print(const QString& text) {
  m_activity->note(text);
}

void MainWindow::progress(const Progress& progress) {
  m_activity->progress(progress);
}

void MainWindow::beginSource(int source, int sources) {
  m_activity->beginSource(source, sources);
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
