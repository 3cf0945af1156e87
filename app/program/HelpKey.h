// HelpKey: F1 in all windows but the main one.
#pragma once

#include <QObject>
#include <QString>

#include <functional>

namespace folivex {

/// Listens to all windows of the application while it lives.
class HelpKey : public QObject {
public:
  HelpKey();

  std::function<void(const QString& topic)> onHelp;

  bool eventFilter(QObject* watched, QEvent* event) override;
};

} // namespace folivex
