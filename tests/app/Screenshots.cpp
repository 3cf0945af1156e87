// Pictures of every window, in both themes and at the scale that QT_SCALE_FACTOR asks for:
//   screenshots FOLDER
#include "app/MainWindow.h"
#include "app/dialogs/CConfigureDlg.h"
#include "app/dialogs/CEmailSettingsDlg.h"
#include "app/dialogs/COtherSettingsDlg.h"
#include "app/dialogs/CPageNumberDlg.h"
#include "app/dialogs/CReportOptionsDlg.h"
#include "app/dialogs/CStatusDlg.h"
#include "engine/naming/FileNameMethod.h"
#include "engine/plan/SplitMethod.h"
#include "widgets/Dialogs.h"
#include "widgets/Theme.h"
#include "widgets/WindowMemory.h"

#include <QApplication>
#include <QDir>
#include <QLibrary>
#include <QPixmap>
#include <QTemporaryDir>

#include <cstdio>

using namespace folivex;

namespace {

/// Nobody is asked anything.
class NoDialogs : public Dialogs {
public:
  void message(QWidget*, const QString& text) override { std::puts(text.toLocal8Bit()); }
  bool question(QWidget*, const QString&, const QString&) override { return false; }
  QString openFile(QWidget*, const FileRequest&) override { return {}; }
  QStringList openFiles(QWidget*, const FileRequest&) override { return {}; }
  QString saveFile(QWidget*, const FileRequest&) override { return {}; }
  QString chooseFolder(QWidget*, const QString&, const QString&) override { return {}; }
  bool openOutside(const QString&) override { return true; }
};

class Camera {
public:
  explicit Camera(const QDir& folder) : m_folder(folder) {}

  void setLook(Theme theme) {
    applyTheme(theme);
    m_look = themeName(theme);
  }
  void take(QWidget& window, const QString& name) {
    window.show();
    // The screen of the offscreen platform is smaller than a real one.
    window.resize(window.size().expandedTo(window.sizeHint()));
    QApplication::processEvents();
    const int percent = qRound(window.devicePixelRatioF() * 100);
    const QString path =
        m_folder.filePath(QStringLiteral("%1-%2-%3.png").arg(name, m_look).arg(percent));
    if (!window.grab().save(path)) {
      std::fprintf(stderr, "cannot write %s\n", path.toLocal8Bit().constData());
    }
    window.hide();
  }

private:
  QDir m_folder;
  QString m_look;
};

SplitSetup byPosition() {
  SplitSetup setup = defaultSetup();
  setup.fileName = QStringLiteral("/srv/scans/2026/march/statements-of-the-month.pdf");
  setup.outputDir = QStringLiteral("/srv/split/2026/march");
  setup.findString = QStringLiteral("Account:");
  setup.pageExtract = splitMethodTexts()[2];
  setup.extract = fileNameMethodTexts()[7];
  setup.extractFileName = QStringLiteral("Account:");
  setup.matchPosH = QStringLiteral("397-399");
  setup.matchPosV = QStringLiteral("117|120");
  setup.addBWords = QStringLiteral("_");
  setup.prefixFileName = QStringLiteral("[YYYY]-[MM]_");
  setup.emailSmtp = QStringLiteral("tls:smtp.example.com:587");
  setup.emailFrom = QStringLiteral("billing@example.com");
  setup.emailLogin = QStringLiteral("billing");
  setup.emailPassword = QStringLiteral("secret");
  setup.emailSubject = QStringLiteral("Your statement");
  setup.emailMsg = QStringLiteral("Dear customer,\r\n\r\nyour statement is attached.");
  setup.emailEnable = true;
  return setup;
}

SplitSetup withFaults() {
  SplitSetup setup = byPosition();
  setup.matchPosH = QStringLiteral("left");
  setup.findString = QStringLiteral("Account number");
  setup.fileName = QStringLiteral("/no/such/file.pdf");
  setup.prefixFileName = QStringLiteral("[DATE]_");
  setup.otherSettingsRemoveFiles = true;
  return setup;
}

template <typename Dialog>
void takeDialog(Camera& camera, Dialogs& dialogs, const QString& name, const SplitSetup& setup) {
  Dialog dialog(dialogs);
  dialog.onHelp = [](const QString&) {};
  dialog.setSetup(setup);
  camera.take(dialog, name);
}

void takeMainWindow(Camera& camera, Dialogs& dialogs, WindowMemory& memory) {
  MainWindow window(dialogs, memory);
  WindowParts parts;
  parts.walkMatches = [](JobDriver&, const SplitSetup&) {};
  parts.showPlan = [](const QString&, const SplitPlan&) {};
  parts.viewPage = [](const SplitSetup&, int) {};
  window.setParts(parts);
  window.start({});
  SetupStore& store = window.session().store();
  const auto take = [&](const SplitSetup& setup, const char* name) {
    store.edited() = setup;
    window.refresh();
    camera.take(window, QString::fromLatin1(name));
  };
  take(byPosition(), "main");
  SplitSetup bookmarks = byPosition();
  bookmarks.pageExtract = bookmarkMethodTexts()[1];
  bookmarks.splitToSource = true;
  take(bookmarks, "main-bookmarks");
  store.edited() = withFaults();
  window.refresh();
  window.process();
  camera.take(window, QStringLiteral("main-faults"));
}

void takeAll(Camera& camera, Dialogs& dialogs, WindowMemory& memory) {
  const SplitSetup setup = byPosition();
  takeMainWindow(camera, dialogs, memory);
  takeDialog<CReportOptionsDlg>(camera, dialogs, QStringLiteral("report-options"), setup);
  takeDialog<COtherSettingsDlg>(camera, dialogs, QStringLiteral("other-settings"), withFaults());
  SplitSetup external = setup;
  external.configUseExternal = true;
  external.configExternalCommand = QStringLiteral("/usr/local/bin/splitpdf");
  external.configExternalParams = QStringLiteral("\"[IN]\" -o\"[OUT]\"");
  takeDialog<CConfigureDlg>(camera, dialogs, QStringLiteral("split-command"), external);
  takeDialog<CEmailSettingsDlg>(camera, dialogs, QStringLiteral("email-settings"), setup);
  CPageNumberDlg page(1204, 17);
  camera.take(page, QStringLiteral("page-number"));
  CStatusDlg status;
  status.begin(QStringLiteral("Processing"), setup.fileName);
  // The first is shown at once; a later one could fall into the pause between two.
  status.progress({QStringLiteral("Processing page: 411"), 412, 1204, 137});
  camera.take(status, QStringLiteral("status"));
}

} // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fputs("screenshots FOLDER\n", stderr);
    return 2;
  }
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
  }
  const QTemporaryDir own;
  qputenv("TMPDIR", own.path().toLocal8Bit());
  const QApplication application(argc, argv);
  const QDir folder(QString::fromLocal8Bit(argv[1]));
  QDir().mkpath(folder.path());
  // The program looks for them beside itself, which this one is not; loaded ones are found by name.
  for (const char* library : {"GlyphrunU", "CleftorU", "MelderU"}) {
    QLibrary(QStringLiteral(FOLIVEX_BIN_DIR "/lib%1.so").arg(QLatin1String(library))).load();
  }
  NoDialogs dialogs;
  WindowMemory memory(own.filePath(QStringLiteral("window.ini")));
  Camera camera(folder);
  for (const Theme theme : {Theme::Light, Theme::Dark}) {
    camera.setLook(theme);
    takeAll(camera, dialogs, memory);
  }
  return 0;
}
