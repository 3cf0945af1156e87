// SourceFile: one PDF, open in the text library and in the split library.
#pragma once

#include "engine/setup/SplitSetup.h"
#include "engine/words/TextLibraryWords.h"
#include "platform/FileStamp.h"

#include <memory>
#include <optional>
#include <vector>

namespace folivex {

struct JobContext;

/// Opens the source that a setup names and closes it again on destruction. A page number of the one
/// library means the same page in the other only when both count the same pages: a file on which
/// they differ is refused. One that only one of them can read is read from a copy that this one
/// wrote. Where the setup asks for it, the words come from an OCR'd copy.
///
/// What opens gives the number of pages, 0 when it failed: see problem().
class SourceFile {
public:
  explicit SourceFile(const JobContext& job) : m_job(job) {}
  SourceFile(const SourceFile&) = delete;
  SourceFile& operator=(const SourceFile&) = delete;
  ~SourceFile();

  /// For a run: in both libraries.
  int openForSplitting(const SplitSetup& setup);
  /// For its words alone.
  int openForReading(const SplitSetup& setup);
  /// For the words that the last run read.
  int openAgain(const SplitSetup& setup);
  int countPages(const SplitSetup& setup);

  /// The words of the open source; valid as long as it is open.
  TextLibraryWords words(const SplitSetup& setup) const;

  /// The file whose words are read: the source, or a copy of it.
  QString scanned() const;

  /// Empty, or why the source cannot be processed: names the file and the step that failed.
  const QString& problem() const { return m_problem; }

  /// Whether the source, or the copy whose words are read, is another file by now than it was
  /// before it was opened for splitting.
  bool isChanged() const;

  /// The source as it was before it was opened for splitting; nothing when it was not there.
  std::optional<platform::FileStamp> stamp() const {
    return m_stamps.empty() ? std::nullopt : m_stamps.front().stamp;
  }

  /// Facts of the source that a person should know; empty when there are none.
  QString protection() const;
  /// What a person should know of a source that is read from a repaired copy; empty of any other.
  QString repair() const;

private:
  int pagesUnlessProblem() const { return m_problem.isEmpty() ? m_pageCount : 0; }
  int openRepaired(const SplitSetup& setup, void (SourceFile::*open)(const SplitSetup&));
  const QString& read() const { return m_standIn ? *m_standIn : m_source; }
  void openBoth(const SplitSetup& setup);
  void openToRead(const SplitSetup& setup);
  void count(const SplitSetup& setup);
  void beginSplitting(const SplitSetup& setup);
  void endSplitting(const SplitSetup& setup);
  void openWords(const SplitSetup& setup);
  void recogniseAndOpenWords(const SplitSetup& setup);
  void stamp(const QString& path);

  const JobContext& m_job;
  QString m_source;
  std::shared_ptr<const QString> m_standIn; ///< what is read in its place; may be null
  QString m_problem;
  int m_pageCount = 0;
  struct Stamped {
    QString path;
    std::optional<platform::FileStamp> stamp;
  };
  std::vector<Stamped> m_stamps;
  bool m_splits = false;
};

} // namespace folivex
