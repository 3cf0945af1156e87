#include "widgets/WindowMemory.h"

#include <QDir>
#include <QStandardPaths>
#include <QWidget>

namespace folivex {

namespace {

QString memoryFile() {
  const QDir folder(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation));
  return folder.filePath(QStringLiteral("folivex/window.ini"));
}

QString geometryKey(const QWidget* window) {
  return QStringLiteral("geometry/") + window->objectName();
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
  // restoreGeometry() moves a window onto a screen that is there.
  window->restoreGeometry(m_settings.value(geometryKey(window)).toByteArray());
}

void WindowMemory::keep(const QWidget* window) {
  m_settings.setValue(geometryKey(window), window->saveGeometry());
}

} // namespace folivex
