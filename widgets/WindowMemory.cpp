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

/// With room for the frame, which a window that was not shown yet does not know.
void moveOntoScreen(QWidget* window) {
  constexpr QSize frame(8, 40);
  const QRect screen = window->screen()->availableGeometry();
  resizeOnScreen(window, window->size());
  const QSize room = (screen.size() - window->size() - frame).expandedTo(QSize(0, 0));
  const QPoint place = window->pos();
  window->move(std::clamp(place.x(), screen.x(), screen.x() + room.width()),
               std::clamp(place.y(), screen.y(), screen.y() + room.height()));
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
