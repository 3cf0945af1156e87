#include "app/program/HelpKey.h"

#include <QApplication>
#include <QHash>
#include <QKeyEvent>
#include <QWidget>

namespace folivex {

namespace {

QString topicOf(const QWidget* window) {
  static const QHash<QString, QString> topics = {{"CBatchList", "batch"},
                                                 {"CChangeEmailDlg", "email-list"},
                                                 {"CEmailListDlg", "email-list"},
                                                 {"CFindingsDlg", "email-list"},
                                                 {"CUpdateIntervalDlg", "updates"}};
  // Others know their own.
  return topics.value(window->objectName(), window->property("helpTopic").toString());
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
