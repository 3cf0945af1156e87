// One range to name, and all that its name may depend on.
#pragma once

#include "engine/naming/OutputNamer.h"

#include <QMap>

#include <gtest/gtest.h>

#include <functional>

#include <string>

namespace folivex::test {

/// Words by position; keeps what it was asked for.
class PlacedWords : public PageWordLookup {
public:
  QString wordAt(int pageIndex, IntRange h, IntRange v) override {
    asked += QStringLiteral("p%1 h%2-%3 v%4-%5;")
                 .arg(pageIndex)
                 .arg(h.low)
                 .arg(h.high)
                 .arg(v.low)
                 .arg(v.high);
    return words.value(v.low);
  }

  QMap<int, QString> words; ///< by v
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

  OutputNamer namer() {
    list = NameList(setup.reportUseFileList);
    OutputNamer made(
        setup, words, list, [] { return QDateTime(QDate(2026, 3, 9), QTime(8, 5, 7)); }, rules);
    made.startSource(source, QStringLiteral("/out"), 12);
    return made;
  }

  NamedOutput named() { return namer().name(range); }

  /// Path of the output below "/out/".
  std::string path() {
    const QString whole = named().path;
    EXPECT_TRUE(whole.startsWith(QLatin1String("/out/"))) << whole.toStdString();
    return whole.sliced(5).toStdString();
  }

  SplitSetup setup;
  PlacedWords words;
  NameList list;
  FileSystemRules rules;
  QString source = QStringLiteral("/in/Batch 7.pdf");
  SplitRange range;
};

inline QString methodText(FileNameMethod method) {
  return method == FileNameMethod::Bookmark
             ? bookmarkFileNameMethodText()
             : fileNameMethodTexts().at(static_cast<std::size_t>(method));
}

/// A row is named after the fault that it would catch.
struct NameRow {
  const char* fault;
  std::function<void(NamingBench&)> arrange;
  std::string path;
};

inline std::string faultOf(const testing::TestParamInfo<NameRow>& info) {
  return info.param.fault;
}

inline void PrintTo(const NameRow& row, std::ostream* out) {
  *out << row.fault;
}

} // namespace folivex::test
