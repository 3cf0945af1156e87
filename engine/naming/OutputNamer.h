// OutputNamer: from a planned range to the full path of its output.
#pragma once

#include "engine/naming/FileSystemRules.h"
#include "engine/naming/NameCleaner.h"
#include "engine/naming/NameList.h"
#include "engine/naming/NameTemplate.h"
#include "engine/naming/OutputPath.h"
#include "engine/plan/SplitRange.h"
#include "engine/setup/FileNameMethod.h"
#include "engine/setup/SplitSetup.h"
#include "engine/words/PageWordLookup.h"

#include <QString>

namespace folivex {

/// One name and what became of its texts on the way.
struct NamedOutput {
  QString path; ///< full path with ".pdf", separators the system's own
  /// Folder that "[EXTRACTTEXTDIR]" asks for, inside the output folder; empty when there is none.
  /// The caller makes it. A prefix may name further folders: those are in `path` alone.
  QString folderToMake;
  QString cleanedText; ///< matched text, cleaned, filtered and trimmed; at most 255 characters
  QString cleanedRestOfLine; ///< rest of line, cleaned and filtered; at most 1024 characters
  NameList::State nameList = NameList::State::NotAsked;
};

/// Names the outputs of one source by its setup. Touches the disk only to read the name list.
///
/// Text that comes from a page, from a line of the name list or from the source's own name never
/// chooses a folder outside the output folder and never acts as a token.
class OutputNamer {
public:
  /// Keeps what it needs of the setup. `words` must outlive the namer, and so must `list`, which
  /// goes on where it stands.
  OutputNamer(const SplitSetup& setup, PageWordLookup& words, NameList& list, NameClock clock,
              FileSystemRules rules = FileSystemRules::ofThisSystem());

  /// Begins a source: its path (or bare name), the folder of its outputs and its page count. The
  /// sequence counter starts again.
  void startSource(const QString& sourcePath, const QString& outputFolder, int totalPages);

  /// Name of a range as planned: the pages that the setup takes off its front are still in it. Uses
  /// up one number or one line of the list.
  NamedOutput name(const SplitRange& range);

  /// The rest of a line as it comes into a name.
  QString cleanRestOfLine(const QString& text) const { return m_cleaner.restOfLine(text); }

private:
  NameTokenValues tokenValues(const SplitRange& range, const QString& matchText) const;
  QString listLine(NamedOutput& named);
  OutputPath::Body body(const SplitRange& range, NamedOutput& named);

  FileNameMethod m_method;
  NameCleaner m_cleaner;
  qsizetype m_trimCount;
  qint64 m_pageOffset;
  bool m_titleAsPrefix;
  bool m_titleAsPostfix;
  PageWordLookup& m_words;
  NameClock m_clock;
  FileSystemRules m_rules;
  NameList& m_list;

  NameTemplate m_prefix;
  NameTemplate m_postfix;
  QString m_outputFolder;
  QString m_title;
  int m_totalPages = 0;
  int m_sequence = 0;
};

} // namespace folivex
