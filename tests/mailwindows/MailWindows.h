// MailWindows: the windows of e-mail delivery with real mail servers behind them.
#pragma once

#include "engine/setup/SplitSetup.h"
#include "mail/EmailList.h"
#include "tests/mail/MailServerProcess.h"
#include "tests/support/WindowBench.h"

#include <QTableView>
#include <QTemporaryDir>

namespace folivex::testing {

/// A step that presses one button.
inline std::function<void(QDialog*)> pressing(const char* button) {
  return [button](QDialog* dialog) { click(dialog, button); };
}

inline QTableView* tableOf(QWidget* list) {
  return control<QTableView>(list, "list");
}

/// What a column shows, from top to bottom.
inline QStringList shownIn(QWidget* list, EmailColumn column = EmailColumn::Email) {
  QStringList cells;
  const QAbstractItemModel* model = tableOf(list)->model();
  for (int row = 0; row < model->rowCount(); ++row) {
    cells += model->index(row, static_cast<int>(column)).data().toString();
  }
  return cells;
}

/// A step that presses a button of the list once it shows these addresses.
inline std::function<void(QDialog*)> seeing(const QStringList& addresses, const char* button) {
  return [=](QDialog* list) {
    EXPECT_TRUE(waitUntil([=] { return shownIn(list) == addresses; }))
        << shownIn(list).join(u' ').toStdString();
    click(list, button);
  };
}

class MailWindows : public ::testing::Test {
protected:
  MailWindows() {
    qputenv("TMPDIR", folder.path().toUtf8());
    setup.emailEnable = true;
    setup.emailTest = false;
    setup.emailFrom = "office@example.org";
    setup.emailSubject = "Statement";
    setup.emailLogFile = at("emails_log.txt");
    setup.outputDir = folder.path();
  }
  ~MailWindows() override {
    qunsetenv("TMPDIR");
    QDir::setCurrent(m_startFolder);
  }

  QString at(const QString& name) const { return folder.filePath(name); }
  void write(const QString& name, const QByteArray& bytes) const {
    test::writeFile(at(name), bytes);
  }
  QByteArray read(const QString& name) const { return test::contentOf(at(name)); }

  QTemporaryDir folder;
  SplitSetup setup;
  ScriptedDialogs dialogs;

private:
  QString m_startFolder = QDir::currentPath();
};

} // namespace folivex::testing
