// WindowBench: drives real windows as a person does: real clicks and keys, found by object name,
// and no wait that is not for something.
#pragma once

#include "tests/support/OwnFolder.h"
#include "widgets/Dialogs.h"

#include <QApplication>
#include <QDialog>
#include <QDropEvent>
#include <QElapsedTimer>
#include <QMimeData>
#include <QPointer>
#include <QTest>
#include <QTimer>
#include <QUrl>

#include <gtest/gtest.h>

#include <deque>
#include <functional>

namespace folivex::testing {

using test::OwnFolder;

/// How long a condition may take before a test fails: far more than a slow machine needs.
inline constexpr int patienceMs = 60'000;

/// Handles events until the condition holds; false when it never did.
inline bool waitUntil(const std::function<bool()>& condition) {
  return QTest::qWaitFor(condition, patienceMs);
}

/// The child control of this name, which must be there.
template <typename Widget> Widget* control(QWidget* window, const char* name) {
  auto* found = window->findChild<Widget*>(QString::fromLatin1(name));
  if (found == nullptr) {
    ADD_FAILURE() << "no control named " << name;
    std::abort();
  }
  return found;
}

inline void click(QWidget* window, const char* name) {
  auto* widget = control<QWidget>(window, name);
  EXPECT_TRUE(widget->isEnabled()) << name << " is disabled";
  QTest::mouseClick(widget, Qt::LeftButton);
}

/// Replaces what stands in a field by typing.
inline void typeInto(QWidget* window, const char* name, const QString& text) {
  auto* field = control<QWidget>(window, name);
  EXPECT_TRUE(field->isEnabled()) << name << " is disabled";
  field->setFocus();
  QTest::keyClick(field, Qt::Key_A, Qt::ControlModifier);
  QTest::keyClick(field, Qt::Key_Delete);
  QTest::keyClicks(field, text);
}

/// Drags files over a window and lets them go where it would take them; whether it did.
inline bool dropFiles(QWidget* window, const QStringList& paths) {
  QMimeData data;
  QList<QUrl> urls;
  for (const QString& path : paths) {
    urls += QUrl::fromLocalFile(path);
  }
  data.setUrls(urls);
  QDragEnterEvent enter({50, 50}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
  QDropEvent drop({50, 50}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
  enter.ignore();
  drop.ignore();
  QApplication::sendEvent(window, &enter);
  if (enter.isAccepted()) {
    QApplication::sendEvent(window, &drop);
  }
  return drop.isAccepted();
}

/// Acts on modal windows in the order in which the test expects them, by their names; an empty name
/// is that of any dialog. It goes on while an action opens further windows, and knows windows
/// without a loop of their own. The test fails when one never came.
class DialogScript {
public:
  DialogScript() = default;
  explicit DialogScript(std::function<void(QDialog*)> action) { then("", std::move(action)); }
  DialogScript(const DialogScript&) = delete;
  DialogScript& operator=(const DialogScript&) = delete;
  ~DialogScript() {
    for (const Step& step : m_steps) {
      ADD_FAILURE() << "the expected dialog never opened: " << step.name.toStdString();
    }
  }

  DialogScript& then(const QString& name, std::function<void(QDialog*)> action) {
    m_steps.push_back({name, std::move(action)});
    if (m_steps.size() == 1) {
      watch();
    }
    return *this;
  }

private:
  struct Step {
    QString name;
    std::function<void(QDialog*)> action;
  };

  void watch() {
    // A new timer for each look: one timer does not fire while its own action runs.
    QTimer::singleShot(0, &m_context, [this] {
      auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
      const QString& name = m_steps.front().name;
      if (dialog == nullptr || !(name.isEmpty() || dialog->objectName() == name)) {
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

/// Answers message boxes and file choosers from what the test laid out, and records what was shown.
/// A chooser that the test has no answer for fails it; so does an answer that was never asked for.
class ScriptedDialogs : public Dialogs {
public:
  ~ScriptedDialogs() override {
    EXPECT_TRUE(answers.empty()) << answers.size() << " questions never came";
    EXPECT_TRUE(choices.empty()) << choices.size() << " choices never came";
    EXPECT_TRUE(files.empty()) << files.size() << " file choosers never came";
  }

  void message(QWidget*, const QString& text) override { messages += text; }
  bool question(QWidget*, const QString& text, const QString&) override {
    questions += text;
    return take(answers, text, false);
  }
  int choice(QWidget*, const QString& text, const QString&, const QStringList&) override {
    questions += text;
    return take(choices, text, noChoice);
  }
  QString openFile(QWidget*, const FileRequest& request) override {
    return chosen(request).value(0);
  }
  QStringList openFiles(QWidget*, const FileRequest& request) override { return chosen(request); }
  QString saveFile(QWidget*, const FileRequest& request) override {
    return chosen(request).value(0);
  }
  QString chooseFolder(QWidget*, const QString& title, const QString& startPath) override {
    return chosen({title, QString(), startPath, QString()}).value(0);
  }
  bool openOutside(const QString& pathOrAddress) override {
    opened += pathOrAddress;
    return true;
  }

  // What the test laid out: Yes and No for questions, paths for choosers (empty: gave up).
  std::deque<bool> answers;
  std::deque<int> choices;
  std::deque<QStringList> files;
  // What was shown.
  QStringList messages;
  QStringList questions;
  QStringList opened;
  std::vector<FileRequest> requests;

private:
  template <typename Answer>
  static Answer take(std::deque<Answer>& laidOut, const QString& asked, Answer otherwise) {
    if (laidOut.empty()) {
      ADD_FAILURE() << "nothing laid out for: " << asked.toStdString();
      return otherwise;
    }
    Answer answer = laidOut.front();
    laidOut.pop_front();
    return answer;
  }
  QStringList chosen(const FileRequest& request) {
    requests.push_back(request);
    return take(files, request.title, QStringList());
  }
};

} // namespace folivex::testing
