// What the pictures of windows are taken with.
#pragma once

#include "engine/setup/SplitSetup.h"
#include "widgets/Dialogs.h"
#include "widgets/Theme.h"

#include <QApplication>
#include <QDir>
#include <QImage>
#include <QWidget>

#include <cstdio>

namespace folivex::pictures {

/// Nobody is asked anything.
class QuietDialogs : public Dialogs {
public:
  void message(QWidget*, const QString& text) override { std::puts(text.toLocal8Bit()); }
  bool question(QWidget*, const QString&, const QString&) override { return false; }
  int choice(QWidget*, const QString&, const QString&, const QStringList&) override {
    return noChoice;
  }
  QString openFile(QWidget*, const FileRequest&) override { return {}; }
  QStringList openFiles(QWidget*, const FileRequest&) override { return {}; }
  QString saveFile(QWidget*, const FileRequest&) override { return {}; }
  QString chooseFolder(QWidget*, const QString&, const QString&) override { return {}; }
  bool openOutside(const QString&) override { return true; }
};

/// Takes pictures named NAME-LOOK-PERCENT.png.
class Camera {
public:
  explicit Camera(const QDir& folder) : m_folder(folder) {}

  bool isComplete() const { return m_isComplete; }

  void setLook(Theme theme) {
    applyTheme(theme);
    m_look = themeName(theme);
  }
  /// Shows the window at its own size, no smaller than it likes to be, and hides it again.
  void take(QWidget& window, const QString& name) {
    window.show();
    // The window was bounded by the screen; the picture need not be.
    take(window, name, window.size().expandedTo(window.sizeHint()));
  }
  void take(QWidget& window, const QString& name, QSize size) {
    window.show();
    window.resize(size);
    QApplication::processEvents();
    QApplication::processEvents(); // what the new size has asked for
    takeShown(window, name);
    window.hide();
  }
  /// The window as it is just now.
  void takeShown(QWidget& window, const QString& name) {
    const int percent = qRound(window.devicePixelRatioF() * 100);
    keep(window.grab().toImage(), QStringLiteral("%1-%2-%3.png").arg(name, m_look).arg(percent));
  }

private:
  void keep(const QImage& picture, const QString& fileName) {
    const QString path = m_folder.filePath(fileName);
    if (!picture.save(path)) {
      std::fprintf(stderr, "cannot write %s\n", path.toLocal8Bit().constData());
      m_isComplete = false;
    }
  }

  QDir m_folder;
  QString m_look;
  bool m_isComplete = true;
};

/// A folder that tells nothing of the computer that the pictures were taken on.
inline QString shownFolder() {
  return QStringLiteral("/home/anna/");
}

/// Splits at "Account:" and names by the number behind it, as the help's first split does.
SplitSetup firstSplit(const QString& source);
/// A setup that uses much of what there is.
SplitSetup byPosition();
/// One with something wrong in every group.
SplitSetup withFaults();

} // namespace folivex::pictures
