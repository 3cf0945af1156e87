// Pages made in memory, and a run of the matcher over them.
#pragma once

#include "engine/base/RunState.h"
#include "engine/match/MatchObserver.h"
#include "engine/match/PageMatcher.h"
#include "engine/plan/RangePlanner.h"
#include "engine/setup/SplitSetup.h"
#include "engine/words/WordSource.h"

#include <QStringList>

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

namespace folivex::test {

struct MemoryWord {
  QString text;
  int h = 0;
  int v = 0;
};

using MemoryPage = std::vector<MemoryWord>;

/// A page of lines: the words of line n stand at v = 100 + 20 n, at h = 50, 110, 170 and so on.
inline MemoryPage page(const char* text) {
  MemoryPage words;
  int v = 100;
  for (const QString& line : QString::fromUtf8(text).split(u'\n')) {
    int h = 50;
    for (const QString& word : line.split(u' ', Qt::SkipEmptyParts)) {
      words.push_back({word, h, v});
      h += 60;
    }
    v += 20;
  }
  return words;
}

/// Pages with "|" between them, their lines with ";".
inline std::vector<MemoryPage> pages(const char* text) {
  std::vector<MemoryPage> result;
  for (const QString& one : QString::fromUtf8(text).split(u'|')) {
    result.push_back(page(QString(one).replace(u';', u'\n').toUtf8().constData()));
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
/// previous).
class RecordingSaver : public RangeSaver {
public:
  explicit RecordingSaver(const SplitSetup& setup)
      : restOfLine_(takesRestOfLine(fileNameMethodOf(setup.extract))) {}

  void saveRange(SplitRange& range) override {
    if (restOfLine_) {
      range.rangeText = cleanRestOfLine(range.restOfLine);
    }
    saved.append(
        QStringLiteral("%1-%2 %3%4")
            .arg(range.firstPage)
            .arg(range.lastPage)
            .arg(range.rangeText, range.repeatsPrevious ? QStringLiteral(" again") : QString()));
    ranges.push_back(range);
  }
  QString cleanRestOfLine(const QString& text) override { return QString(text).remove(u'/'); }

  QStringList saved;
  std::vector<SplitRange> ranges;

private:
  bool restOfLine_;
};

/// Keeps what the matcher tells; goes on until `stopAfter` matches were shown.
class RecordingObserver : public MatchObserver {
public:
  void onWordCount(int pageIndex, int wordCount) override {
    counts.append(QStringLiteral("%1:%2").arg(pageIndex).arg(wordCount));
  }
  bool onMatch(int pageIndex, const QString& word, int h, int v) override {
    matches.append(QStringLiteral("%1 %2 %3,%4").arg(pageIndex).arg(word).arg(h).arg(v));
    return matches.size() < stopAfter;
  }
  void onListedWord(QStringView text, int h, int v) override {
    listed.append(QStringLiteral("%1 %2,%3").arg(text).arg(h).arg(v));
  }
  void onEmptyPage(int pageIndex) override { emptyPages.push_back(pageIndex); }

  QStringList counts;
  QStringList matches;
  QStringList listed;
  std::vector<int> emptyPages;
  qsizetype stopAfter = 1000;
};

inline SplitSetup setupFor(SplitMethod method, const char* searchText,
                           const std::function<void(SplitSetup&)>& adjust = nullptr) {
  SplitSetup setup;
  setup.pageExtract = splitMethodTexts().at(static_cast<int>(method));
  setup.findString = QString::fromUtf8(searchText);
  setup.extract = fileNameMethodTexts().at(0);
  if (adjust) {
    adjust(setup);
  }
  return setup;
}

inline void nameBy(SplitSetup& setup, FileNameMethod method) {
  setup.extract = fileNameMethodTexts().at(static_cast<std::size_t>(method));
}

/// One job over pages in memory.
struct Job {
  Job(const SplitSetup& setup, const std::vector<MemoryPage>& pages)
      : saver(setup), planner(setup, run, saver), matcher(setup, run, planner), source(pages) {
    matcher.setObserver(&observer);
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
  RecordingSaver saver;
  RecordingObserver observer;
  RangePlanner planner;
  PageMatcher matcher;
  MemoryPages source;
};

/// What one job saved, ranges with "|" between them.
inline std::string savedBy(const SplitSetup& setup, const std::vector<MemoryPage>& pages) {
  return Job(setup, pages).scan().saver.saved.join(u'|').toStdString();
}

/// One row of a table of whole jobs, named after the fault that it would catch; ranges with "|"
/// between them.
struct JobRow {
  const char* fault;
  const char* pages;
  const char* saved;
};

inline void expectSaved(const SplitSetup& setup, const std::vector<JobRow>& rows) {
  for (const JobRow& row : rows) {
    EXPECT_EQ(savedBy(setup, pages(row.pages)), row.saved) << row.fault;
  }
}

} // namespace folivex::test
