// MailWindows: the windows of e-mail delivery with real mail servers behind them.
#pragma once

#include "engine/setup/SplitSetup.h"
#include "mail/EmailList.h"
#include "tests/mail/MailServerProcess.h"
#include "tests/support/WindowBench.h"

#include <QTableView>
#include <QTemporaryDir>

#include <deque>
#include <memory>

namespace folivex::testing {

/// Acts on modal windows in the order in which the test expects them, by their names. Unlike
/// NextDialog it goes on while an action opens further windows, and knows windows without a loop of
/// their own. The test fails when one never came.
class DialogScript {
public:
  ~DialogScript() {
    for (const Step& step : m_steps) {
      ADD_FAILURE() << step.name << " never opened";
    }
  }
  DialogScript() = default;
  DialogScript(const DialogScript&) = delete;
  DialogScript& operator=(const DialogScript&) = delete;

  DialogScript& then(const char* name, std::function<void(QDialog*)> action) {
    m_steps.push_back({name, std::move(action)});
    if (m_steps.size() == 1) {
      watch();
    }
    return *this;
  }

private:
  struct Step {
    const char* name;
    std::function<void(QDialog*)> action;
  };

  void watch() {
    // A new timer for each look: one timer does not fire while its own action runs.
    QTimer::singleShot(0, &m_context, [this] {
      auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
      if (dialog == nullptr || dialog->objectName() != QLatin1String(m_steps.front().name)) {
        return watch();
      }
      const Step step = m_steps.front();
      m_steps.pop_front();
      if (!m_steps.empty()) {
        watch();
      }
      step.action(dialog);
    });
  }

  std::deque<Step> m_steps;
  QObject m_context;
};

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
