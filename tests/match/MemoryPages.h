// Pages made in memory, and a run of the matcher over them.
#pragma once

#include "engine/base/RunState.h"
#include "engine/match/MatchObserver.h"
#include "engine/match/PageMatcher.h"
#include "engine/plan/RangePlanner.h"
#include "engine/words/WordSource.h"
#include "tests/support/Rows.h"

#include <vector>

namespace folivex::test {

struct MemoryWord {
  QString text;
  int h = 0;
  int v = 0;
};

using MemoryPage = std::vector<MemoryWord>;

/// Pages with "|" between them, their lines with ";": the words of line n stand at v = 100 + 20 n,
/// at h = 50, 110, 170 and so on.
inline std::vector<MemoryPage> pages(const QString& text) {
  std::vector<MemoryPage> result;
  for (const QString& one : text.split(u'|')) {
    MemoryPage words;
    int v = 100;
    for (const QString& line : one.split(u';')) {
      int h = 50;
      for (const QString& word : line.split(u' ', Qt::SkipEmptyParts)) {
        words.push_back({word, h, v});
        h += 60;
      }
      v += 20;
    }
    result.push_back(words);
  }
  return result;
}

/// Hands out words as a library does: each lives only until the next is asked for.
class MemoryPages : public WordSource {
public:
  explicit MemoryPages(std::vector<MemoryPage> pages) : pages_(std::move(pages)) {}

  void filePages(int first, int) override {
    page_ = &pages_.at(static_cast<std::size_t>(first - 1));
  }
  int numWords() override { return static_cast<int>(page_->size()); }
  void doReverseSort() override {}
  PageWord word(int index) override {
    const MemoryWord& word = page_->at(static_cast<std::size_t>(index));
    text_ = std::vector<QChar>(word.text.begin(), word.text.end());
    return {QStringView(text_.data(), static_cast<qsizetype>(text_.size())), word.h, word.v};
  }
  int pageCount() const { return static_cast<int>(pages_.size()); }

private:
  std::vector<MemoryPage> pages_;
  const MemoryPage* page_ = nullptr;
  std::vector<QChar> text_;
};

/// Writes down what it is told to save, as "first-last text" ("again" when it repeats the
/// previous), and what the matcher tells; goes on until `stopAfter` matches were shown.
class Recorder : public RangeSaver, public MatchObserver {
public:
  void saveRange(SplitRange& range) override {
    if (takesRestOfLine) {
      range.rangeText = cleanRestOfLine(range.restOfLine);
    }
    range.rangeText.chop(chopped);
    saved += QStringLiteral("%1-%2 ").arg(range.firstPage).arg(range.lastPage) + range.rangeText +
             QLatin1String(range.repeatsPrevious ? " again" : "");
    lastLine = range.restOfLine;
  }
  QString cleanRestOfLine(const QString& text) override { return QString(text).remove(u'/'); }

  void onWordCount(int page, int count) override {
    told += QStringLiteral("%1: %2 words").arg(page).arg(count);
  }
  bool onMatch(int page, const QString& word, int h, int v) override {
    matches += QStringLiteral("%1 %2 %3,%4").arg(page).arg(word).arg(h).arg(v);
    return matches.size() < stopAfter;
  }
  void onListedWord(QStringView text, int h, int v) override {
    told += QStringLiteral("%1 %2,%3").arg(text).arg(h).arg(v);
  }
  void onEmptyPage(int page) override { told += QStringLiteral("%1: empty").arg(page); }

  QStringList saved;
  QStringList matches;
  QStringList told;
  QString lastLine;
  bool takesRestOfLine = false;
  int chopped = 0; ///< characters that the shown text is shorter, as if texts were removed
  qsizetype stopAfter = 1000;
};

/// One job over pages in memory.
struct Job {
  Job(const SplitSetup& setup, const std::vector<MemoryPage>& pages)
      : planner(setup, run, recorder), matcher(setup, run, planner), source(pages) {
    recorder.takesRestOfLine = takesRestOfLine(fileNameMethodOf(setup.extract));
    matcher.setObserver(&recorder);
  }

  /// Scans pages first..last (indexes), by default all, and closes the last range.
  Job& scan(int first = 0, int last = -1) {
    last = last < 0 ? source.pageCount() - 1 : last;
    for (int i = first; i <= last && !run.mustEnd(); ++i) {
      matcher.beginPage();
      matcher.scanPage(i, source);
    }
    planner.closeAtEnd(last, source.pageCount());
    return *this;
  }

  RunState run;
  Recorder recorder;
  RangePlanner planner;
  PageMatcher matcher;
  MemoryPages source;
};

/// Settings by their keys.
inline SplitSetup setupOf(const QJsonObject& settings) {
  SplitSetup setup;
  applySettings(setup, settings);
  return setup;
}

/// What one job saved, ranges with "|" between them.
inline QString savedBy(const SplitSetup& setup, const std::vector<MemoryPage>& pages) {
  return Job(setup, pages).scan().recorder.saved.join(u'|');
}

/// Rows of pages and the ranges that they come to.
inline void expectSaved(const char* file) {
  forEachRow(file, [](const SplitSetup& setup, const QStringList& row) {
    EXPECT_EQ(savedBy(setup, pages(row[0])), row[1]);
  });
}

} // namespace folivex::test
