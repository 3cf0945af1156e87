// SourceFile: one PDF, open in the text library and in the split library.
#pragma once

#include "engine/setup/SplitSetup.h"

namespace folivex {

class CPDFTextDumpInit;
class CSplitPdfInit;

/// Opens a source in both libraries and closes it again on destruction. A page number of the one
/// means the same page in the other only when both count the same pages: a file on which they
/// differ is refused.
class SourceFile {
public:
  struct Libraries {
    CPDFTextDumpInit& text;
    CSplitPdfInit& split;
  };

  explicit SourceFile(Libraries libraries) : m_libraries(libraries) {}
  SourceFile(const SourceFile&) = delete;
  SourceFile& operator=(const SourceFile&) = delete;
  ~SourceFile();

  /// Begins to open `source` in the split library, where outputs are written with it.
  void beginForSplitting(const QString& source, const SplitSetup& setup);

  /// Counts the pages of `source` in the text library; 0 when it cannot be read. See problem().
  int countPages(const QString& source, const SplitSetup& setup);

  /// Opens `fileToScan` (the source, or its OCR'd copy) for reading its words.
  void openWords(const QString& fileToScan, const SplitSetup& setup);

  /// Waits until the source that was begun is open in the split library and compares what both
  /// libraries see.
  void openForSplitting(const QString& source, const SplitSetup& setup);

  /// Empty, or why the source cannot be processed: names the file and the step that failed.
  const QString& problem() const { return m_problem; }

  /// Facts of the source that a person should know; empty when there are none.
  QString protection() const;

private:
  Libraries m_libraries;
  QString m_problem;
  int m_pageCount = 0;
  bool m_splits = false;
};

} // namespace folivex
