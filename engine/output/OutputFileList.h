// OutputFileList: outputs written down for a later split step in place of being made.
#pragma once

#include "engine/naming/OutputReservation.h"
#include "engine/setup/SplitSetup.h"
#include "platform/TextFile.h"

namespace folivex {

/// One line an output: source, output, first page, last page (from 1, inclusive) and "Y" or "N" for
/// `KEEPBOOKMARKS`, with "|" between them. Names of outputs never hold a "|"; where a folder's name
/// does, it is written as "?". The list appears whole or not at all.
class OutputFileList : public OutputList {
public:
  /// Where the list of a source goes: into the folder of the outputs.
  static QString pathFor(const QString& outputFolder, const QString& source);

  OutputFileList(const SplitSetup& setup, const QString& source);

  void output(const ReservedOutput& reserved) override;

  int count() const { return m_count; }
  const QString& path() const { return m_path; }
  /// Puts the list into place when it has a line. Empty, or why it could not be written; then, and
  /// when it was never closed, an older list stays as it was.
  QString close();

private:
  QString m_path;
  QString m_source;
  QChar m_keepsBookmarks;
  platform::TextWriter m_file;
  int m_count = 0;
};

} // namespace folivex
