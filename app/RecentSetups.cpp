#include "app/RecentSetups.h"

#include "widgets/WindowMemory.h"

#include <QFileInfo>

namespace folivex {

namespace {

constexpr int mostSetups = 8;

QString keyOf(int index) {
  return QStringLiteral("recent/setup%1").arg(index + 1);
}

} // namespace

RecentSetups::RecentSetups(WindowMemory& memory) : m_memory(memory) {
  for (int i = 0; i < mostSetups; ++i) {
    const QString path = memory.text(keyOf(i));
    if (!path.isEmpty()) {
      m_paths += path;
    }
  }
}

void RecentSetups::used(const QString& path) {
  const QString whole = QFileInfo(path).absoluteFilePath();
  m_paths.removeAll(whole);
  m_paths.prepend(whole);
  m_paths = m_paths.mid(0, mostSetups);
  keep();
}

void RecentSetups::gone(const QString& path) {
  m_paths.removeAll(path);
  keep();
}

void RecentSetups::keep() {
  for (int i = 0; i < mostSetups; ++i) {
    m_memory.setText(keyOf(i), m_paths.value(i));
  }
}

} // namespace folivex
