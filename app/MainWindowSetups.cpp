// The main window's settings: where they come from and go to, and the file that they are for.
#include "app/ActivityLine.h"
#include "app/EndPanel.h"
#include "app/MainWindow.h"
#include "app/viewer/PagePane.h"
#include "engine/setup/SetupFields.h"
#include "engine/setup/SetupReach.h"
#include "platform/FileDigest.h"
#include "platform/FileSystem.h"
#include "platform/Paths.h"
#include "widgets/AgreedOnce.h"
#include "widgets/Dialogs.h"
#include "widgets/WindowMemory.h"

#include <QDir>
#include <QFileInfo>
#include <QPushButton>
#include <QStandardPaths>

namespace folivex {

namespace {

QString setupFilter() {
  return QStringLiteral("Setup files (*.fxs);;All Files (*.*)");
}

} // namespace

SplitSetup MainWindow::currentSetup() const {
  const SetupStore& store = m_program.store();
  SplitSetup edited = store.edited();
  m_rules->take(edited);
  SplitSetup setup = store.working();
  commitSetup(edited, setup);
  return setup;
}

void MainWindow::takeSetup() {
  m_rules->take(m_program.store().edited());
}

void MainWindow::showSetup() {
  const SetupStore& store = m_program.store();
  SplitSetup setup = store.working();
  commitSetup(store.edited(), setup);
  m_rules->setSetup(setup);
  settingsChanged();
}

/// What was set has been taken; all that depends on it follows.
void MainWindow::settingsChanged() {
  m_activity->forgetProblem();
  tellSetupFile();
  showFile();
  replan();
}

/// A change that did not come from a field: one step, that can be undone.
void MainWindow::change(const SplitSetup& setup, const QString& what) {
  m_end->giveWay();
  const SplitSetup before = currentSetup();
  m_history.push(before, setup, what);
  put(setup);
}

void MainWindow::put(const SplitSetup& setup) {
  m_program.store().edited() = m_program.store().working() = setup;
  showSetup();
}

void MainWindow::refresh() {
  m_end->giveWay();
  showSetup();
  beginAnew();
}

/// From here on, what is changed can be undone, and saved.
void MainWindow::beginAnew() {
  m_history.clear();
  m_savedSetup = currentSetup();
  tellSetupFile();
}

/// The file that is split and its password are no part of what one calls a setup.
bool MainWindow::isUnsaved() const {
  SplitSetup setup = currentSetup();
  setup.fileName = m_savedSetup.fileName;
  setup.pdfPassword = m_savedSetup.pdfPassword;
  return setup != m_savedSetup;
}

bool MainWindow::mayLeaveSetup() {
  const QString path = m_program.store().currentPath();
  if (path.isEmpty() || !isUnsaved() || m_program.store().automation()) {
    return true; // settings without a name are kept for the next start
  }
  const int chosen = m_dialogs.choice(
      this, QStringLiteral("%1 has changes that are not saved.\n\nSave changes?").arg(path),
      QStringLiteral("Folivex"), {QStringLiteral("&Save..."), QStringLiteral("&Do not save")});
  return chosen == 0 ? saveSetup() : chosen == 1;
}

/// The sample and its setup are copied to where outputs may stand beside them.
void MainWindow::openSample() {
  const QString home = platform::programFolder();
  QDir documents(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation));
  const QString folder = documents.filePath(QStringLiteral("Folivex sample/"));
  for (const char* place : {"/samples/", "/../bin/samples/", "/../../share/folivex/samples/"}) {
    const QString samples = home + QLatin1String(place);
    if (QFile::exists(samples + QStringLiteral("statements.pdf"))) {
      documents.mkpath(folder);
      for (const char* name : {"statements.pdf", "example.fxs"}) {
        QFile::copy(samples + QLatin1String(name), folder + QLatin1String(name)); // once is enough
      }
      loadSetupFile(QDir::toNativeSeparators(folder + QStringLiteral("example.fxs")));
      takePdf(QDir::toNativeSeparators(folder + QStringLiteral("statements.pdf")));
      return;
    }
  }
  message(QStringLiteral("The sample is not installed with this program. Open a PDF of your own."));
}

/// The page and the strip show the file that is to be split.
void MainWindow::showFile() {
  const SplitSetup setup = currentSetup();
  const QString path = platform::withoutTrailingBlanks(setup.fileName);
  if (setup.useCurrent || !m_program.isReady()) {
    return; // what is open is what will be split
  }
  if (path.isEmpty()) {
    m_page->closeFile();
    return;
  }
  if (m_page->file().path != path) {
    m_propose = LivePlan::Propose::IfNothingIsFound;
  }
  m_page->openFile({path, setup.pdfPassword, setup.rotated, setup.horizWordSpacing});
}

void MainWindow::tellSetupFile() {
  const QString path = m_program.store().currentPath();
  const QString program = QStringLiteral("Folivex");
  setWindowTitle(path.isEmpty()
                     ? program
                     : QStringLiteral("%1[*] - %2").arg(platform::fileTitle(path), program));
  setWindowModified(!path.isEmpty() && isUnsaved());
  m_setupButton->setText(path.isEmpty() ? QStringLiteral("Setup")
                                        : QStringLiteral("Setup: %1%2")
                                              .arg(QFileInfo(path).fileName().replace(u'&', "&&"),
                                                   isUnsaved() ? QStringLiteral(" *") : QString()));
}

void MainWindow::openPdf() {
  const QString path = m_dialogs.openFile(this, {QStringLiteral("Open the PDF to split"),
                                                 QStringLiteral("PDF files (*.pdf);;All Files (*)"),
                                                 m_memory.text(QStringLiteral("folders/source")),
                                                 {}});
  if (!path.isEmpty()) {
    takePdf(path);
  }
}

void MainWindow::takePdf(const QString& path) {
  if (!platform::isReadableFile(path)) {
    m_recentPdfs.gone(path);
    tellRecent();
    message(QStringLiteral("%1: there is no such file, or it cannot be read.").arg(path));
    return;
  }
  SplitSetup setup = currentSetup();
  setup.fileName = path;
  setup.useCurrent = false;
  m_recentPdfs.used(path);
  tellRecent();
  m_memory.setText(QStringLiteral("folders/source"), platform::folderOf(path));
  change(setup, QStringLiteral("Open PDF"));
  m_activity->setStatus(QStringLiteral("%1 is the file to split.").arg(path));
}

void MainWindow::keepUsed(const QString& path) {
  m_recentSetups.used(path);
  tellRecent();
  m_memory.setText(QStringLiteral("folders/setup"), platform::folderOf(path));
}

void MainWindow::loadSetup() {
  const QString path = m_dialogs.openFile(
      this, {QStringLiteral("Load fxs parameters file"), setupFilter(), setupStartPath(), {}});
  if (!path.isEmpty()) {
    loadSetupFile(path);
  }
}

QString MainWindow::setupStartPath() const {
  const QString current = m_program.store().currentPath();
  return current.isEmpty() ? m_memory.text(QStringLiteral("folders/setup")) : current;
}

/// Whether the setup that was just loaded, and may be anybody's, may do what it does beyond writing
/// PDFs. A Yes is for the bytes of the file and for what was shown of them.
bool MainWindow::isAllowed(const QString& path) {
  const QString reach = reachOf(m_program.store().edited()).join(QStringLiteral("\n\n"));
  return reach.isEmpty() ||
         isAgreedOnce(m_dialogs, m_memory, this,
                      {QStringLiteral("%1 does more than write PDFs:\n\n%2\n\nDo you allow this, "
                                      "now and later? With No it is loaded without.")
                           .arg(path, reach),
                       QStringLiteral("A setup from elsewhere"),
                       platform::FileDigest::of(path).sha256 + reach.toUtf8()});
}

/// Of a setup that is only shown, neither a name among the recent ones nor any reach stays when it
/// is not allowed.
void MainWindow::loadSetupFile(const QString& path, LoadMode mode) {
  if (!mayLeaveSetup()) {
    return;
  }
  m_activity->clearNotes();
  takeSetup();
  const QString source = m_program.store().edited().fileName;
  const bool isLoaded = m_program.loadSetup(path, mode);
  if (isLoaded && mode == LoadMode::Shown && !isAllowed(path)) {
    restrain(m_program.store().edited());
    m_program.store().commit();
    m_activity->setStatus(QStringLiteral("%1 loaded; it only writes PDFs.").arg(path));
  } else if (isLoaded) {
    keepUsed(path);
    m_activity->setStatus(QStringLiteral("%1 loaded.").arg(path));
  } else {
    m_recentSetups.gone(path);
    tellRecent();
  }
  // A setup that is for any file is for the one that is open.
  SplitSetup& edited = m_program.store().edited();
  if (platform::withoutTrailingBlanks(edited.fileName).isEmpty()) {
    edited.fileName = source;
  }
  refresh();
}

bool MainWindow::saveSetup() {
  if (!m_rules->checkInput()) {
    return false;
  }
  const QString path =
      m_dialogs.saveFile(this, {QStringLiteral("Save fxs parameters file"), setupFilter(),
                                setupStartPath(), QStringLiteral("fxs")});
  if (path.isEmpty()) {
    return false;
  }
  m_activity->clearNotes();
  takeSetup();
  const SetupResult saved = m_program.store().SaveSetup(path);
  m_program.tell(saved);
  if (saved.ok()) {
    keepUsed(path);
    m_savedSetup = currentSetup();
  }
  tellSetupFile();
  return saved.ok();
}

} // namespace folivex
