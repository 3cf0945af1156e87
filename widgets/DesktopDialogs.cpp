#include "widgets/DesktopDialogs.h"

#include "widgets/Controls.h"

#include <QDesktopServices>
#include <QDir>
#include <QFileDialog>
#include <QMessageBox>
#include <QUrl>

namespace folivex {

namespace {

/// Runs a chooser; the paths that were agreed on. Any file may be saved to.
QStringList chosen(QWidget* over, const FileRequest& request, QFileDialog::FileMode mode) {
  QFileDialog chooser(over, request.title);
  chooser.setFileMode(mode);
  chooser.setAcceptMode(mode == QFileDialog::AnyFile ? QFileDialog::AcceptSave
                                                     : QFileDialog::AcceptOpen);
  chooser.setOption(QFileDialog::ShowDirsOnly, mode == QFileDialog::Directory);
  if (!request.filter.isEmpty()) {
    chooser.setNameFilters(request.filter.split(QStringLiteral(";;")));
  }
  chooser.setDefaultSuffix(request.defaultSuffix);
  const QFileInfo start(request.startPath);
  if (start.isDir()) {
    chooser.setDirectory(start.filePath());
  } else if (!request.startPath.isEmpty()) {
    chooser.setDirectory(start.path());
    chooser.selectFile(start.fileName());
  }
  resizeOnScreen(&chooser, chooser.sizeHint());
  if (chooser.exec() != QDialog::Accepted) {
    return {};
  }
  QStringList paths;
  for (const QString& path : chooser.selectedFiles()) {
    paths += QDir::toNativeSeparators(path);
  }
  return paths;
}

} // namespace

void DesktopDialogs::message(QWidget* over, const QString& text) {
  QMessageBox box(QMessageBox::Information, QStringLiteral("Folivex"), text, QMessageBox::Ok, over);
  box.setTextFormat(Qt::PlainText); // paths and page text are no markup
  box.exec();
}

bool DesktopDialogs::question(QWidget* over, const QString& text, const QString& caption) {
  QMessageBox box(QMessageBox::Question, caption, text, QMessageBox::Yes | QMessageBox::No, over);
  box.setTextFormat(Qt::PlainText);
  box.setEscapeButton(QMessageBox::No);
  box.setDefaultButton(QMessageBox::No); // Enter pressed too soon sends and loses nothing
  return box.exec() == QMessageBox::Yes;
}

int DesktopDialogs::choice(QWidget* over, const QString& text, const QString& caption,
                           const QStringList& answers) {
  QMessageBox box(QMessageBox::Question, caption, text, QMessageBox::Cancel, over);
  box.setTextFormat(Qt::PlainText);
  box.setEscapeButton(QMessageBox::Cancel);
  box.setDefaultButton(QMessageBox::Cancel);
  QList<QAbstractButton*> buttons;
  for (const QString& answer : answers) {
    buttons += box.addButton(answer, QMessageBox::AcceptRole);
  }
  box.exec();
  return static_cast<int>(buttons.indexOf(box.clickedButton()));
}

QString DesktopDialogs::openFile(QWidget* over, const FileRequest& request) {
  return chosen(over, request, QFileDialog::ExistingFile).value(0);
}

QStringList DesktopDialogs::openFiles(QWidget* over, const FileRequest& request) {
  return chosen(over, request, QFileDialog::ExistingFiles);
}

QString DesktopDialogs::saveFile(QWidget* over, const FileRequest& request) {
  return chosen(over, request, QFileDialog::AnyFile).value(0);
}

QString DesktopDialogs::chooseFolder(QWidget* over, const QString& title,
                                     const QString& startPath) {
  return chosen(over, {title, {}, startPath, {}}, QFileDialog::Directory).value(0);
}

bool DesktopDialogs::openOutside(const QString& pathOrAddress) {
  return QDesktopServices::openUrl(
      QUrl::fromUserInput(pathOrAddress, QString(), QUrl::AssumeLocalFile));
}

} // namespace folivex
