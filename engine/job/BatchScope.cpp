#include "engine/job/BatchScope.h"

#include "engine/job/OutputFolder.h"

namespace folivex {

void BatchScope::begin(const QStringList& sources) {
  end();
  m_isOpen = true;
  m_sources = sources;
}

void BatchScope::end() {
  m_isOpen = false;
  m_sources.clear();
  m_clearedFolders.clear();
  m_names.reset();
  m_folders.release();
}

void BatchScope::runEnded() {
  if (m_clearedFolders.isEmpty()) {
    m_folders.release();
  }
}

QString BatchScope::clear(const QString& folder, const QString& source, const QString& nameList) {
  if (m_isOpen) {
    m_clearedFolders += folder;
  }
  if (isClearedWithFolder(folder, kept(source), nameList)) {
    names(nameList).readWhole();
  }
  return clearOutputFolder(folder, kept(source));
}

NameList& BatchScope::names(const QString& path) {
  if (!m_names || m_names->path() != path) {
    m_names.emplace(path);
  }
  return *m_names;
}

void BatchScope::namesTaken() {
  if (!m_isOpen) {
    m_names.reset();
  }
}

} // namespace folivex
