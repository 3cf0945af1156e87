// HeardDialogs: message boxes and file choosers of another, with somebody listening.
#pragma once

#include "widgets/Dialogs.h"

#include <functional>

namespace folivex {

/// Hands everything on; what messages and questions say is told to onHeard before they are shown.
class HeardDialogs : public Dialogs {
public:
  /// `dialogs` must outlive this.
  explicit HeardDialogs(Dialogs& dialogs) : m_dialogs(dialogs) {}

  std::function<void(const QString& text)> onHeard;

  void message(QWidget* over, const QString& text) override {
    hear(text);
    m_dialogs.message(over, text);
  }
  bool question(QWidget* over, const QString& text, const QString& caption) override {
    hear(text);
    return m_dialogs.question(over, text, caption);
  }
  int choice(QWidget* over, const QString& text, const QString& caption,
             const QStringList& answers) override {
    hear(text);
    return m_dialogs.choice(over, text, caption, answers);
  }
  QString openFile(QWidget* over, const FileRequest& request) override {
    return m_dialogs.openFile(over, request);
  }
  QStringList openFiles(QWidget* over, const FileRequest& request) override {
    return m_dialogs.openFiles(over, request);
  }
  QString saveFile(QWidget* over, const FileRequest& request) override {
    return m_dialogs.saveFile(over, request);
  }
  QString chooseFolder(QWidget* over, const QString& title, const QString& startPath) override {
    return m_dialogs.chooseFolder(over, title, startPath);
  }
  bool openOutside(const QString& pathOrAddress) override {
    return m_dialogs.openOutside(pathOrAddress);
  }

private:
  void hear(const QString& text) const {
    if (onHeard) {
      onHeard(text);
    }
  }

  Dialogs& m_dialogs;
};

} // namespace folivex
