// SourceTable: the word table of the source that a setup names.
#pragma once

#include "engine/setup/SplitSetup.h"
#include "engine/words/TableFiller.h"
#include "platform/FileStamp.h"

#include <memory>
#include <mutex>
#include <optional>
#include <vector>

namespace folivex {

class OcrCopy;

/// Makes the table anew when the file, or what its words depend on, is another. What is not said to
/// be for any thread belongs to the one that plans.
class SourceTable {
public:
  /// `mostBytes`: of memory, for the words of a file.
  explicit SourceTable(CPDFTextDumpInit& library, std::size_t mostBytes = WordTable::usualMost)
      : m_library(library), m_mostBytes(mostBytes) {}

  /// The table of this source; begins it when there is none yet. Null when the words come from a
  /// recognised copy that has to be made first.
  std::shared_ptr<WordTable> follow(const SplitSetup& setup);
  /// Whether the file is another by now than it was when the table was begun.
  bool isChanged() const;
  /// The file whose words are read: the source, or its OCR'd copy.
  const QString& scanned() const { return m_origin.read.file; }
  /// Why the words are not those of a copy, though the setup asks for one; else empty.
  const QString& finding() const { return m_finding; }
  /// What is read so far stays; a copy that is read whole may be changed by others.
  void letCopyGo();
  void drop();

  // For any thread.
  std::shared_ptr<WordTable> table() const;
  void setPaused(bool on);

private:
  struct Origin {
    QString source;
    bool recognised = false;
    std::optional<platform::FileStamp> stamp; ///< of the source
    TableFiller::Source read;
    std::optional<platform::FileStamp> readStamp; ///< the same, where no copy is read
  };

  bool isOf(const SplitSetup& setup) const;

  CPDFTextDumpInit& m_library;
  std::size_t m_mostBytes;
  Origin m_origin;
  QString m_finding;
  std::shared_ptr<OcrCopy> m_copy;                     ///< keeps it as it is
  std::vector<std::unique_ptr<TableFiller>> m_givenUp; ///< until their threads have ended

  mutable std::mutex m_mutex; ///< guards what follows
  std::shared_ptr<WordTable> m_table;
  std::unique_ptr<TableFiller> m_filler;
  bool m_isPaused = false;
};

} // namespace folivex
