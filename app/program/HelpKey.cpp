#include "app/program/HelpKey.h"

#include <QApplication>
#include <QKeyEvent>
#include <QWidget>

#include <array>

namespace folivex {

namespace {

struct Row {
  const char* window; ///< object name
  const char* topic;
};
constexpr std::array rows = {Row{"CBatchList", "batch"}, Row{"CChangeEmailDlg", "email-list"},
                             Row{"CEmailListDlg", "email-list"}, Row{"CFindingsDlg", "email-list"},
                             Row{"CUpdateIntervalDlg", "updates"}};

QString topicOf(const QWidget* window) {
  for (const Row& row : rows) {
    if (window->objectName() == QLatin1String(row.window)) {
      return QString::fromLatin1(row.topic);
    }
  }
  return window->property("helpTopic").toString(); // of the windows that know their own
}

} // namespace

HelpKey::HelpKey() {
  qApp->installEventFilter(this);
}

bool HelpKey::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::KeyPress || static_cast<QKeyEvent*>(event)->key() != Qt::Key_F1) {
    return false;
  }
  const auto* control = qobject_cast<QWidget*>(watched);
  const QString topic = control == nullptr ? QString() : topicOf(control->window());
  if (topic.isEmpty() || !onHelp) {
    return false;
  }
  onHelp(topic);
  return true;
}

} // namespace folivex
