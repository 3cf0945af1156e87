// FileNameMethod: what an output file is named after.
#pragma once

#include <QStringList>

namespace folivex {

struct SplitSetup;

/// Index into the table of file-name methods; a setup holds the method's text (`EXTRACT`).
enum class FileNameMethod {
  MatchedWord = 0,
  NextWord = 1,
  PageStart = 2,
  PageStartEnd = 3,
  PositionMatch = 4,
  SequentialNumber = 5,
  AfterText = 6,
  AfterTextRestOfLine = 7,
  AfterTextRestOfLineAndNextPage = 8,
  FileList = 9,
  Bookmark = 10 ///< not in the table of texts to choose from: set with the bookmark split methods
};

/// Texts of the ten methods of the table, in index order.
const QStringList& fileNameMethodTexts();

/// "Use bookmark as filename".
const QString& bookmarkFileNameMethodText();

/// Of any method.
const QString& textOf(FileNameMethod method);

/// The method of a setup's text, compared exactly; a text that is in no table gives MatchedWord.
FileNameMethod fileNameMethodOf(const QString& text);

/// The method that a run with this setup uses: a bookmark has no text behind it, so that its title
/// stands in for the methods that ask for one.
FileNameMethod fileNameMethodOf(const SplitSetup& setup);

/// Empty, or that a setup's text names no method, and what outputs are named after instead.
QString fileNameMethodFinding(const SplitSetup& setup);

/// One of the three "USE 'use as filename name after text'" methods.
bool namesAfterText(FileNameMethod method);

/// One of the two "take rest of line" methods.
bool takesRestOfLine(FileNameMethod method);

} // namespace folivex
