// The main window's settings: where they come from and go to, and the file that they are for.
#include "app/ActivityLine.h"
#include "app/MainWindow.h"
#include "app/viewer/PagePane.h"
#include "app/viewer/PageStrip.h"
#include "engine/setup/SetupFields.h"
#include "platform/FileSystem.h"
#include "platform/Paths.h"
#include "widgets/Dialogs.h"
#include "widgets/WindowMemory.h"

#include <QFileInfo>
#include <QPushButton>

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
  tellSetupFile();
  showFile();
}

/// The page and the strip show the file that is to be split.
void MainWindow::showFile() {
  const SplitSetup setup = currentSetup();
  const QString path = platform::withoutTrailingBlanks(setup.fileName);
  if (setup.useCurrent || !m_program.isReady()) {
    return; // what is open is what will be split
  }
  if (!platform::isReadableFile(path)) {
    m_page->closeFile();
    m_strip->closeFile();
    return;
  }
  const ViewedFile file{path, setup.pdfPassword, setup.rotated, setup.horizWordSpacing};
  m_page->openFile(file);
  m_strip->openFile(file);
}

void MainWindow::tellSetupFile() {
  const QString path = m_program.store().currentPath();
  const QString program = QStringLiteral("Folivex");
  setWindowTitle(
      path.isEmpty() ? program : QStringLiteral("%1 - %2").arg(platform::fileTitle(path), program));
  m_setupButton->setText(path.isEmpty()
                             ? QStringLiteral("Set&up")
                             : QStringLiteral("Set&up: %1").arg(QFileInfo(path).fileName()));
}

void MainWindow::openPdf() {
  const QString path = m_dialogs.openFile(
      this, {QStringLiteral("Open the PDF to split"), QStringLiteral("PDF files (*.pdf);;All Files (*)"),
             m_memory.text(QStringLiteral("folders/source")), {}});
  if (!path.isEmpty()) {
    takePdf(path);
  }
}

void MainWindow::takePdf(const QString& path) {
  if (!platform::isReadableFile(path)) {
    m_recentPdfs.gone(path);
    m_menus->setRecentPdfs(m_recentPdfs.paths());
    message(QStringLiteral("%1: there is no such file, or it cannot be read.").arg(path));
    return;
  }
  takeSetup();
  m_program.store().edited().fileName = path;
  m_program.store().edited().useCurrent = false;
  m_recentPdfs.used(path);
  m_menus->setRecentPdfs(m_recentPdfs.paths());
  m_memory.setText(QStringLiteral("folders/source"), platform::folderOf(path));
  m_activity->setStatus(QStringLiteral("%1 is the file to split.").arg(path));
  showSetup();
}

void MainWindow::tellResult(const SetupResult& result) {
  // A save that failed is told in the window's foot: no box, but not passed over either.
  const bool inBox = result.status != SetupStatus::NotWritten;
  if (!result.message.isEmpty()) {
    inBox ? message(result.message) : note(result.message);
  }
  if (!result.note.isEmpty()) {
    note(result.note);
  }
}

void MainWindow::keepUsed(const QString& path) {
  m_recentSetups.used(path);
  m_menus->setRecentSetups(m_recentSetups.paths());
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

void MainWindow::loadSetupFile(const QString& path) {
  m_activity->clearNotes();
  takeSetup();
  const QString source = m_program.store().edited().fileName;
  if (m_program.loadSetup(path)) {
    keepUsed(path);
    m_activity->setStatus(QStringLiteral("%1 loaded.").arg(path));
  } else {
    m_recentSetups.gone(path);
    m_menus->setRecentSetups(m_recentSetups.paths());
  }
  // A setup that is for any file is for the one that is open.
  SplitSetup& edited = m_program.store().edited();
  if (platform::withoutTrailingBlanks(edited.fileName).isEmpty()) {
    edited.fileName = source;
  }
  showSetup();
}

void MainWindow::saveSetup() {
  if (!m_rules->checkInput()) {
    return;
  }
  const QString path =
      m_dialogs.saveFile(this, {QStringLiteral("Save fxs parameters file"), setupFilter(),
                                setupStartPath(), QStringLiteral("fxs")});
  if (path.isEmpty()) {
    return;
  }
  m_activity->clearNotes();
  takeSetup();
  const SetupResult saved = m_program.store().SaveSetup(path);
  tellResult(saved);
  if (saved.ok()) {
    keepUsed(path);
  }
  tellSetupFile();
}

} // namespace folivex
