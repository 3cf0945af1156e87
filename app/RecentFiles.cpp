#include "app/RecentFiles.h"

#include "widgets/WindowMemory.h"

#include <QFileInfo>

namespace folivex {

namespace {

constexpr int mostFiles = 8;

} // namespace

RecentFiles::RecentFiles(WindowMemory& memory, const char* kind) : m_memory(memory), m_kind(kind) {
  for (int i = 0; i < mostFiles; ++i) {
    const QString path = memory.text(keyOf(i));
    if (!path.isEmpty()) {
      m_paths += path;
    }
  }
}

QString RecentFiles::keyOf(int index) const {
  return QStringLiteral("recent/%1%2").arg(QLatin1String(m_kind)).arg(index + 1);
}

void RecentFiles::used(const QString& path) {
  const QString whole = QFileInfo(path).absoluteFilePath();
  m_paths.removeAll(whole);
  m_paths.prepend(whole);
  m_paths = m_paths.mid(0, mostFiles);
  keep();
}

void RecentFiles::gone(const QString& path) {
  m_paths.removeAll(path);
  keep();
}

void RecentFiles::keep() {
  for (int i = 0; i < mostFiles; ++i) {
    m_memory.setText(keyOf(i), m_paths.value(i));
  }
}

} // namespace folivex
