// RecentSetups: the setup files that were loaded or saved last.
#pragma once

#include <QStringList>

namespace folivex {

class WindowMemory;

/// The newest first, each once.
class RecentSetups {
public:
  /// `memory` keeps them from start to start.
  explicit RecentSetups(WindowMemory& memory);

  const QStringList& paths() const { return m_paths; }
  void used(const QString& path);
  void gone(const QString& path);

private:
  void keep();

  WindowMemory& m_memory;
  QStringList m_paths;
};

} // namespace folivex
