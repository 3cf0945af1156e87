// RecentFiles: the files of one kind that were used last.
#pragma once

#include <QStringList>

namespace folivex {

class WindowMemory;

/// The newest first, each once.
class RecentFiles {
public:
  /// `memory` keeps them from start to start; `kind` tells them apart there ("setup").
  RecentFiles(WindowMemory& memory, const char* kind);

  const QStringList& paths() const { return m_paths; }
  void used(const QString& path);
  void gone(const QString& path);

private:
  QString keyOf(int index) const;
  void keep();

  WindowMemory& m_memory;
  const char* m_kind;
  QStringList m_paths;
};

} // namespace folivex
