// FolderSearch: the files that a path with "*" means.
#pragma once

#include <QStringList>

namespace folivex {

struct FolderSearch {
  QStringList paths;          ///< of the PDFs, by name
  QStringList notTaken;       ///< what was meant and cannot be taken, each with its reason
  QStringList otherSpellings; ///< names that end in neither ".pdf" nor ".PDF", but in ".Pdf"
  QString problem;            ///< why the folder could not be read to its end

  /// Files whose names begin with "." are not looked for, nor folders.
  static FolderSearch of(const QString& pattern);
};

} // namespace folivex
