// The main window, its dialogs and its messages.
#include "app/MainWindow.h"
#include "app/dialogs/SettingDialogs.h"
#include "app/viewer/PageCanvas.h"
#include "engine/setup/SplitMethod.h"
#include "scripts/pictures/Scenes.h"
#include "widgets/DesktopDialogs.h"
#include "widgets/ProgramIcon.h"

#include <QAbstractButton>
#include <QAction>
#include <QLabel>
#include <QTableView>
#include <QTest>
#include <QTimer>

namespace folivex::pictures {

ReadyMainWindow::ReadyMainWindow(const Studio& studio)
    : m_window(std::make_unique<MainWindow>(studio.dialogs, studio.memory)) {
  WindowParts parts;
  parts.batchRows = []() -> BatchRows* { return nullptr; };
  parts.prepareList = [] {};
  parts.openHelp = [](const QString&) {};
  m_window->setParts(parts);
  m_window->start({});
}

ReadyMainWindow::~ReadyMainWindow() = default;

void ReadyMainWindow::show(const SplitSetup& setup) {
  m_window->program().store().edited() = setup;
  m_window->refresh();
}

void ReadyMainWindow::waitForPage() {
  constexpr int patienceMs = 60'000;
  const auto* process = m_window->findChild<QAbstractButton*>(QStringLiteral("processButton"));
  const auto* canvas = m_window->findChild<PageCanvas*>(QStringLiteral("pageCanvas"));
  static_cast<void>(QTest::qWaitFor(
      [&] { return process->text().contains(u'(') && !canvas->page().image.isNull(); },
      patienceMs));
}

void ReadyMainWindow::waitForPlan() {
  constexpr int patienceMs = 60'000;
  constexpr int outputs = 12;
  const auto* table = m_window->findChild<QTableView*>(QStringLiteral("planTable"));
  static_cast<void>(
      QTest::qWaitFor([&] { return table->model()->rowCount() == outputs; }, patienceMs));
}

void ReadyMainWindow::trigger(const char* action) {
  m_window->findChild<QAction*>(QString::fromLatin1(action))->trigger();
}

void takeMainWindow(Camera& camera, const Studio& studio) {
  ReadyMainWindow main(studio);
  MainWindow& window = main.window();
  constexpr QSize usual(1280, 900);
  camera.take(window, QStringLiteral("main-empty"), usual);
  main.show(firstSplit(studio.sample));
  window.show();
  main.waitForPage();
  camera.take(window, QStringLiteral("main"), usual);
  camera.take(window, QStringLiteral("main-wide"), QSize(1920, 1080));
  camera.take(window, QStringLiteral("main-small"), QSize(1024, 700));
  camera.take(window, QStringLiteral("main-tabs"), QSize(960, 520));
  main.show(withFaults());
  window.process();
  camera.take(window, QStringLiteral("main-faults"), usual);
  {
    ReadyMainWindow other(studio);
    other.show(byPosition());
    other.window().tellNews(QStringLiteral("Version 4.10.0 is available; this is version 4.9.2."),
                            [] {});
    other.window().note(QStringLiteral("page 17: the page is damaged; its words were not read"));
    camera.take(other.window(), QStringLiteral("main-news"), usual);
  }
}

namespace {

template <typename Dialog>
void takeDialog(Camera& camera, Dialogs& dialogs, const QString& name, const SplitSetup& setup) {
  Dialog dialog(dialogs);
  dialog.onHelp = [](const QString&) {};
  dialog.setSetup(setup);
  camera.take(dialog, name);
}

} // namespace

void takeSettings(Camera& camera, const Studio& studio) {
  Dialogs& dialogs = studio.dialogs;
  takeDialog<CReportOptionsDlg>(camera, dialogs, QStringLiteral("report-options"), byPosition());
  takeDialog<COtherSettingsDlg>(camera, dialogs, QStringLiteral("other-settings"), withFaults());
  SplitSetup external = byPosition();
  takeDialog<CConfigureDlg>(camera, dialogs, QStringLiteral("split-command-unused"), external);
  external.configUseExternal = true;
  external.configExternalCommand = QStringLiteral("/usr/local/bin/splitpdf");
  external.configExternalParams = QStringLiteral("\"[IN]\" -o\"[OUT]\"");
  takeDialog<CConfigureDlg>(camera, dialogs, QStringLiteral("split-command"), external);
  takeDialog<CEmailSettingsDlg>(camera, dialogs, QStringLiteral("email-settings"), byPosition());
  CEmailSettingsDlg faults(dialogs);
  faults.setSetup(withFaults());
  faults.accept(); // tells what is wrong, and stays
  camera.take(faults, QStringLiteral("email-settings-faults"));
}

namespace {

/// The box that `open` shows and waits for.
template <typename Open> void takeBox(Camera& camera, const QString& name, Open&& open) {
  QTimer::singleShot(0, qApp, [&] {
    QWidget* box = QApplication::activeModalWidget();
    QApplication::processEvents();
    camera.takeShown(*box, name);
    box->close();
  });
  open();
}

} // namespace

void takeMessages(Camera& camera) {
  QLabel icon;
  constexpr int iconSize = 128;
  icon.setPixmap(programIcon().pixmap(iconSize));
  camera.take(icon, QStringLiteral("icon"));
  DesktopDialogs dialogs;
  takeBox(camera, QStringLiteral("message"), [&] {
    dialogs.message(nullptr, QStringLiteral("There was a problem opening/reading the PDF file: "
                                            "/srv/scans/2026/march/statements-of-the-month.pdf"));
  });
  takeBox(camera, QStringLiteral("question"), [&] {
    dialogs.question(nullptr, QStringLiteral("Send selected only?"),
                     QStringLiteral("Email List to Send"));
  });
}

} // namespace folivex::pictures
