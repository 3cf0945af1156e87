#include "app/program/ProgramWindows.h"

#include "app/help/CProblemReportDlg.h"
#include "app/help/HelpWindow.h"
#include "app/help/ProblemReport.h"
#include "batch/CBatchList.h"
#include "mail/delivery/UnattendedDelivery.h"
#include "mail/windows/EmailSession.h"
#include "mail/windows/RunSendTest.h"
#include "platform/DropFilter.h"
#include "platform/LoadedLibrary.h"
#include "updates/CUpdateIntervalDlg.h"
#include "updates/UpdateCheck.h"
#include "widgets/Dialogs.h"
#include "widgets/WindowMemory.h"

#include <QApplication>

namespace folivex {

namespace {

void bringUp(QWidget& window) {
  window.show();
  window.raise();
  window.activateWindow();
}

/// The program's own libraries, as they tell themselves just now.
std::vector<LibraryVersion> libraryVersions() {
  std::vector<LibraryVersion> versions;
  for (const auto& [name, operation] : {std::pair{"GlyphrunU", "GlyphrunInterfaceVersion"},
                                        {"CleftorU", "CleftorInterfaceVersion"},
                                        {"MelderU", "MelderInterfaceVersion"}}) {
    QLibrary loaded;
    QString told;
    if (platform::loadLibrary(loaded, QString::fromLatin1(name)) != 0) {
      told = QStringLiteral("not loaded: ") + loaded.errorString();
    } else {
      const platform::Operation<int()> version(loaded, operation);
      told = version.isThere() ? QStringLiteral("interface %1").arg(version())
                               : QStringLiteral("of another program");
      loaded.unload();
    }
    versions.push_back({QString::fromLatin1(name), told});
  }
  return versions;
}

} // namespace

ProgramWindows::ProgramWindows(Dialogs& dialogs, WindowMemory& memory)
    : m_dialogs(dialogs), m_memory(memory), m_main(m_dialogs, memory),
      m_updates(std::make_unique<UpdateCheck>(
          memory.settings(), UpdateSurroundings{QStringLiteral(FOLIVEX_VERSION)})) {
  m_dialogs.onHeard = [this](const QString& text) { m_main.remember(text); };
  m_helpKey.onHelp = [this](const QString& topic) { openHelp(topic); };
  m_main.setParts(parts());
}

ProgramWindows::~ProgramWindows() {
  for (QWidget* window : std::initializer_list<QWidget*>{m_list.get(), m_help.get()}) {
    if (window != nullptr) {
      m_memory.keep(window);
      window->close();
    }
  }
}

void ProgramWindows::start(const CommandLine& line) {
  m_main.start(line);
  if (m_main.program().isReady() && line.argumentCount == 0) {
    lookForUpdate();
  }
}

WindowParts ProgramWindows::parts() {
  WindowParts parts;
  parts.prepareList = [this] { prepareList(); };
  parts.batchRows = [this]() -> BatchRows* { return m_list ? &m_list->rows() : nullptr; };
  parts.batchRunning = [this](bool running) {
    if (m_list) {
      m_list->setRunning(running);
    }
  };
  parts.loadEmailList = [this] { emails().loadEmailList(m_main.currentSetup()); };
  parts.goOnMailing = [this](const SplitSetup& setup) { return emails().goOn(setup); };
  parts.mailOutputs = [this](JobDriver& driver, const SplitSetup& setup) {
    emails().afterRun(setup, finishedRun(setup.fileName, driver.emails()));
  };
  parts.mailBatchSource = [this](JobDriver& driver, const SplitSetup& setup) {
    emails().afterSourceOfBatch(setup, finishedRun(setup.fileName, driver.emails()));
  };
  parts.mailBatchEnd = [this] { emails().afterBatch(); };
  parts.waitingMails = {[this] { return m_emails ? static_cast<int>(m_emails->waiting()) : 0; },
                        [this] { emails().showWaiting(); }, [this] { emails().sendWaiting(); },
                        [this] { emails().forgetWaiting(); }};
  parts.sendTest = [this](const SplitSetup& setup) {
    QWidget* over = QApplication::activeWindow();
    runSendTest(setup, m_dialogs, over != nullptr ? over : &m_main);
  };
  parts.openHelp = [this](const QString& topic) { openHelp(topic); };
  parts.problemReport = [this] { reportProblem(); };
  parts.updateCheck = [this] { editUpdateCheck(); };
  return parts;
}

void ProgramWindows::prepareList() {
  if (!m_list) {
    m_list = std::make_unique<CBatchList>(m_dialogs);
    m_list->onProcessList = [this] { m_main.processList(); };
    m_memory.restore(m_list.get());
    platform::allowDropsOn(m_list->winId());
  }
  bringUp(*m_list);
}

EmailSession& ProgramWindows::emails() {
  if (!m_emails) {
    m_emails = std::make_unique<EmailSession>(EmailSession::Parts{
        m_dialogs, &m_main, [this](const QString& text) { m_main.note(text); },
        [this] { return m_main.program().driver().state().userStop; },
        [this](const EmailProgress& progress) { m_main.progress(sendingProgress(progress)); }});
    m_emails->setMeans({&m_main.program().splitLibrary(), {}});
  }
  return *m_emails;
}

void ProgramWindows::openHelp(const QString& topic) {
  if (!m_help) {
    m_help = std::make_unique<HelpWindow>(m_dialogs);
    m_memory.restore(m_help.get());
  }
  m_help->openTopic(topic);
}

void ProgramWindows::reportProblem() {
  CProblemReportDlg dialog(
      ProblemReport(systemFacts(QStringLiteral(FOLIVEX_VERSION), libraryVersions()),
                    m_main.currentSetup(), m_main.lastTold()),
      m_dialogs, m_memory, &m_main);
  dialog.exec();
}

void ProgramWindows::editUpdateCheck() {
  CUpdateIntervalDlg dialog(*m_updates, m_dialogs, &m_main);
  dialog.exec();
}

void ProgramWindows::lookForUpdate() {
  if (m_updates->isDue()) {
    m_updates->start(m_updates->settings().address,
                     [this](const UpdateResult& result) { tellUpdate(result); });
  }
}

/// Only news is told unasked.
void ProgramWindows::tellUpdate(const UpdateResult& result) {
  if (result.outcome != UpdateOutcome::Newer) {
    return;
  }
  m_main.tellNews(result.text, [this, page = result.offer.page] {
    if (page.isEmpty()) {
      editUpdateCheck();
    } else if (!m_dialogs.openOutside(page)) {
      m_dialogs.message(&m_main, QStringLiteral("Unable to open: ") + page);
    }
  });
}

} // namespace folivex
