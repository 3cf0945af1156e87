#include "engine/setup/FileNameMethod.h"

#include "engine/setup/SplitMethod.h"
#include "engine/setup/SplitSetup.h"

#include <algorithm>

namespace folivex {

const QStringList& fileNameMethodTexts() {
  static const QStringList texts = {
      QStringLiteral("Matched word as filename"),
      QStringLiteral("Next word as filename"),
      QStringLiteral("Page start as filename"),
      QStringLiteral("Page start-end as filename"),
      QStringLiteral("h,v match as filename"),
      QStringLiteral("Sequential Number"),
      QStringLiteral("USE 'use as filename name after text'"),
      QStringLiteral("USE 'use as filename name after text' - take rest of line"),
      QStringLiteral(
          "USE 'use as filename name after text' - take rest of line + 1st line next page"),
      QStringLiteral("Use filelist as filename")};
  return texts;
}

const QString& bookmarkFileNameMethodText() {
  static const QString text = QStringLiteral("Use bookmark as filename");
  return text;
}

const QString& textOf(FileNameMethod method) {
  return method == FileNameMethod::Bookmark ? bookmarkFileNameMethodText()
                                            : fileNameMethodTexts()[static_cast<qsizetype>(method)];
}

FileNameMethod fileNameMethodOf(const QString& text) {
  if (text == bookmarkFileNameMethodText()) {
    return FileNameMethod::Bookmark;
  }
  const qsizetype index = fileNameMethodTexts().indexOf(text);
  return static_cast<FileNameMethod>(std::max<qsizetype>(index, 0));
}

FileNameMethod fileNameMethodOf(const SplitSetup& setup) {
  const FileNameMethod method = fileNameMethodOf(setup.extract);
  const bool fromBookmarks = splitTraitsOf(setup.pageExtract).fromBookmarks;
  return fromBookmarks && namesAfterText(method) ? FileNameMethod::Bookmark : method;
}

QString fileNameMethodFinding(const SplitSetup& setup) {
  const bool isKnown = setup.extract == bookmarkFileNameMethodText() ||
                       fileNameMethodTexts().contains(setup.extract);
  if (isKnown || splitTraitsOf(setup.pageExtract).fromBookmarks) {
    return {};
  }
  const QString told =
      setup.extract.isEmpty()
          ? QStringLiteral("no filename method is chosen (EXTRACT)")
          : QStringLiteral("there is no filename method \"%1\" (EXTRACT)").arg(setup.extract);
  return told + QStringLiteral("; outputs are named after the matched word");
}

bool namesAfterText(FileNameMethod method) {
  return method == FileNameMethod::AfterText || takesRestOfLine(method);
}

bool takesRestOfLine(FileNameMethod method) {
  return method == FileNameMethod::AfterTextRestOfLine ||
         method == FileNameMethod::AfterTextRestOfLineAndNextPage;
}

} // namespace folivex
