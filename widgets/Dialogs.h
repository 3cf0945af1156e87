// Dialogs: the message boxes and file choosers that a window opens over itself.
#pragma once

#include <QString>
#include <QStringList>

class QWidget;

namespace folivex {

/// What a file chooser is opened with.
struct FileRequest {
  QString title;
  QString filter;        ///< as QFileDialog writes it: "Setup files (*.fxs);;All files (*)"
  QString startPath;     ///< folder, or file that is offered; may be empty
  QString defaultSuffix; ///< added to a typed name that has none; without a dot; may be empty
};

/// The one way to everything that a window asks and waits for outside its own controls, so that a
/// test can give the answers. `over` is the window that is asked from. Paths come back with the
/// system's separators.
class Dialogs {
public:
  virtual ~Dialogs() = default;

  virtual void message(QWidget* over, const QString& text) = 0;
  /// True for Yes. Enter, Escape and closing the box mean No.
  virtual bool question(QWidget* over, const QString& text, const QString& caption) = 0;
  /// Which of `answers`, texts of buttons, was chosen, from 0. There is "Cancel" beside them; it,
  /// Enter, Escape and closing the box give noChoice.
  static constexpr int noChoice = -1;
  virtual int choice(QWidget* over, const QString& text, const QString& caption,
                     const QStringList& answers) = 0;
  /// Empty when the person gave up; so with the three below.
  virtual QString openFile(QWidget* over, const FileRequest& request) = 0;
  virtual QStringList openFiles(QWidget* over, const FileRequest& request) = 0;
  /// An existing file was agreed to be replaced.
  virtual QString saveFile(QWidget* over, const FileRequest& request) = 0;
  virtual QString chooseFolder(QWidget* over, const QString& title, const QString& startPath) = 0;
  /// Opens a file or an address with the desktop's own program for it; false when there is none.
  virtual bool openOutside(const QString& pathOrAddress) = 0;
};

} // namespace folivex
