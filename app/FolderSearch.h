// FolderSearch: the files that a path with "*" means.
#pragma once

#include <QStringList>

namespace folivex {

struct FolderSearch {
  QStringList paths;   ///< of the PDFs, by name
  QStringList told;    ///< what a person should know, in sentences
  bool isWhole = true; ///< no file that is meant was left out

  /// Files whose names begin with "." are not looked for, nor folders.
  static FolderSearch of(const QString& pattern);
};

} // namespace folivex
