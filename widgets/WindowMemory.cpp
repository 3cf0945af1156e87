#include "widgets/WindowMemory.h"

#include "widgets/Controls.h"

#include <QDir>
#include <QScreen>
#include <QStandardPaths>
#include <QWidget>

#include <algorithm>

namespace folivex {

namespace {

QString memoryFile() {
  const QDir folder(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation));
  return folder.filePath(QStringLiteral("folivex/window.ini"));
}

QString geometryKey(const QWidget* window) {
  return QStringLiteral("geometry/") + window->objectName();
}

void moveOntoScreen(QWidget* window) {
  const QRect screen = window->screen()->availableGeometry();
  resizeOnScreen(window, window->size());
  const QRect frame = window->frameGeometry();
  window->move(std::clamp(frame.x(), screen.x(), std::max(screen.right() + 1 - frame.width(), screen.x())),
               std::clamp(frame.y(), screen.y(), std::max(screen.bottom() + 1 - frame.height(), screen.y())));
}

} // namespace

WindowMemory::WindowMemory() : WindowMemory(memoryFile()) {}

WindowMemory::WindowMemory(const QString& file) : m_settings(file, QSettings::IniFormat) {}

QString WindowMemory::text(const QString& key, const QString& otherwise) const {
  return m_settings.value(key, otherwise).toString();
}

void WindowMemory::setText(const QString& key, const QString& value) {
  m_settings.setValue(key, value);
}

void WindowMemory::restore(QWidget* window) const {
  // restoreGeometry() moves a window onto a screen that is there, and leaves it as large as it was.
  if (window->restoreGeometry(m_settings.value(geometryKey(window)).toByteArray()) &&
      !window->isMaximized() && !window->isFullScreen()) {
    moveOntoScreen(window);
  }
}

void WindowMemory::keep(const QWidget* window) {
  m_settings.setValue(geometryKey(window), window->saveGeometry());
}

} // namespace folivex
