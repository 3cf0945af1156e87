// One range to name, and all that its name may depend on.
#pragma once

#include "engine/naming/OutputNamer.h"
#include "platform/Paths.h"
#include "tests/support/Rows.h"

#include <QDir>
#include <QMap>

namespace folivex::test {

/// Words by position; keeps what it was asked for.
class PlacedWords : public PageWordLookup {
public:
  QString wordAt(int pageIndex, IntRange h, IntRange v) override {
    asked += QString::asprintf("p%d h%d-%d v%d-%d;", pageIndex, h.low, h.high, v.low, v.high);
    return words.value(v.low);
  }

  QMap<int, QString> words{
      {1, "[MM]"}, {2, ".."}, {3, "a/../b"}, {400, "Pos/400"}, {500, "Pos500"}}; ///< by v
  QString asked;
};

/// 9 March 2026, 08:05:07; source "/in/Batch 7.pdf" of 12 pages; output folder "/out"; range of the
/// pages 3 to 5 with the matched text "ACME".
struct NamingBench {
  NamingBench() {
    range.firstPage = 2;
    range.lastPage = 4;
    range.rangeText = QStringLiteral("ACME");
  }

  OutputNamer namer(const QString& outputFolder = QStringLiteral("/out")) {
    list = NameList(setup.reportUseFileList);
    OutputNamer made(
        setup, words, list, [] { return QDateTime(QDate(2026, 3, 9), QTime(8, 5, 7)); }, rules);
    made.startSource(setup.fileName.isEmpty() ? QStringLiteral("/in/Batch 7.pdf") : setup.fileName,
                     outputFolder, 12);
    return made;
  }

  NamedOutput named() { return namer().name(range); }

  /// Path of the output below the folder "/out", with slashes everywhere.
  QString path() {
    const QString whole = named().path;
    const QString folder = platform::joinPath(QStringLiteral("/out"), {});
    EXPECT_TRUE(whole.startsWith(folder)) << whole.toStdString();
    return QDir::fromNativeSeparators(whole.sliced(folder.size()));
  }

  SplitSetup setup;
  PlacedWords words;
  NameList list;
  FileSystemRules rules;
  SplitRange range;
};

inline QString methodText(FileNameMethod method) {
  return fileNameMethodTexts().at(static_cast<int>(method));
}

} // namespace folivex::test
