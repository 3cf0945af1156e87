// WindowMemory: what the windows remember from one start to the next. Settings of a run are not
// among it; they live in setup files.
#pragma once

#include <QByteArray>
#include <QSettings>
#include <QString>

class QWidget;

namespace folivex {

/// A small file of the person's own: window sizes, last folders, the theme.
class WindowMemory {
public:
  /// In the folder where the system keeps a program's settings.
  WindowMemory();
  explicit WindowMemory(const QString& file);

  QString text(const QString& key, const QString& otherwise = QString()) const;
  void setText(const QString& key, const QString& value);

  /// Size and place of a window, by its object name. A place that no screen shows is not taken.
  void restore(QWidget* window) const;
  void keep(const QWidget* window);

  /// For parts of the program that open no window.
  QSettings& settings() { return m_settings; }

private:
  QSettings m_settings;
};

} // namespace folivex
