// DesktopDialogs: message boxes and file choosers as the desktop shows them.
#pragma once

#include "widgets/Dialogs.h"

namespace folivex {

class DesktopDialogs : public Dialogs {
public:
  void message(QWidget* over, const QString& text) override;
  bool question(QWidget* over, const QString& text, const QString& caption) override;
  int choice(QWidget* over, const QString& text, const QString& caption,
             const QStringList& answers) override;
  QString openFile(QWidget* over, const FileRequest& request) override;
  QStringList openFiles(QWidget* over, const FileRequest& request) override;
  QString saveFile(QWidget* over, const FileRequest& request) override;
  QString chooseFolder(QWidget* over, const QString& title, const QString& startPath) override;
  bool openOutside(const QString& pathOrAddress) override;
};

} // namespace folivex
