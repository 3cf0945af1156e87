#include "engine/job/SourceRun.h"

#include "engine/match/MatchObserver.h"
#include "engine/plan/BookmarkRanges.h"
#include "engine/setup/SplitSetup.h"

#include <algorithm>

namespace folivex {

namespace {

/// Words whose addresses are read as soon as they are in order, before any of them is matched: a
/// match may close a range that ends with this very page.
class AddressedWords : public WordSource {
public:
  AddressedWords(WordSource& words, PageAddresses& addresses, int page)
      : m_words(words), m_addresses(addresses), m_page(page) {}

  void filePages(int first, int last) override { m_words.filePages(first, last); }
  int numWords() override { return m_words.numWords(); }
  void doReverseSort() override {
    m_words.doReverseSort();
    m_addresses.readPage(m_page, m_words);
  }
  PageWord word(int index) override { return m_words.word(index); }

private:
  WordSource& m_words;
  PageAddresses& m_addresses;
  int m_page;
};

/// The status line of a page that is about to be matched.
class WordCountTeller : public MatchObserver {
public:
  WordCountTeller(Operator& person, const RunState& state, int pageCount)
      : m_person(person), m_state(state), m_pageCount(pageCount) {}

  void onWordCount(int pageIndex, int wordCount) override {
    m_person.progress(
        {QStringLiteral("Processing page: %1, Num Words: %2").arg(pageIndex).arg(wordCount),
         pageIndex + 1, m_pageCount, m_state.outputCount});
  }

private:
  Operator& m_person;
  const RunState& m_state;
  int m_pageCount;
};

} // namespace

SourceRun::SourceRun(const SplitSetup& setup, const RunContext& job, SourceWords& words,
                     RangeSaver& saver)
    : m_setup(setup), m_state(job.state), m_words(words), m_saver(saver), m_person(job.person),
      m_planner(setup, m_state, saver), m_matcher(setup, m_state, m_planner) {}

void SourceRun::run(int pageCount) {
  if (splitTraitsOf(m_setup.pageExtract).fromBookmarks) {
    takeBookmarks(pageCount);
    m_state.isRead = true;
    return;
  }
  const PageWindow window = pageWindow(m_setup.startFromPage, m_setup.startEndPage, pageCount);
  scanPages(window);
  m_state.isRead = true;
  if (m_state.mustEnd() && m_state.pendingStart >= 0) {
    m_firstUnfinished = m_state.pendingStart + 1;
  }
  if (m_state.pendingStart >= 0) {
    m_planner.closeAtEnd(std::max(window.end - 1, m_state.pendingStart), pageCount);
    m_state.pendingStart = -1;
  }
}

void SourceRun::scanPages(PageWindow window) {
  WordCountTeller teller(m_person, m_state, window.end);
  if (m_observer == nullptr) {
    m_matcher.setObserver(&teller);
  }
  walk(window);
  m_matcher.setObserver(m_observer);
}

void SourceRun::walk(PageWindow window) {
  for (int page = window.first; page < window.end; ++page) {
    m_person.progress({QStringLiteral("Processing page: %1").arg(page), page + 1, window.end,
                       m_state.outputCount});
    m_person.handlePendingEvents();
    // Asked after the events, so that a Stop among them still finds this page untouched.
    if (m_state.mustEnd()) {
      m_firstUnfinished = page + 1;
      return;
    }
    m_matcher.beginPage();
    scanPage(page);
  }
}

void SourceRun::scanPage(int pageIndex) {
  if (m_addresses != nullptr && m_addresses->isWanted()) {
    AddressedWords addressed(m_words, *m_addresses, pageIndex + 1);
    m_matcher.scanPage(pageIndex, addressed);
  } else {
    m_matcher.scanPage(pageIndex, m_words);
  }
  m_findings.readPage();
  switch (m_words.pageState()) {
  case PageState::Empty:
    m_findings.emptyPage();
    break;
  case PageState::Unreadable:
    m_findings.unreadablePage(pageIndex + 1);
    break;
  case PageState::Damaged:
    m_findings.damagedPage(pageIndex + 1);
    break;
  case PageState::Good:
    break;
  }
}

void SourceRun::listPage(int pageIndex) {
  m_matcher.setListing(true);
  m_matcher.beginPage();
  scanPage(pageIndex);
  m_matcher.setListing(false);
}

void SourceRun::takeBookmarks(int pageCount) {
  readAddresses({{1, pageCount}}); // bookmarks need no words, but mail does
  const SplitMethod method = splitMethodOf(m_setup.pageExtract);
  for (SplitRange& range : bookmarkRanges(m_words.outline(), method, pageCount)) {
    if (m_state.mustEnd()) {
      m_firstUnfinished = range.firstPage + 1;
      return;
    }
    m_saver.saveRange(range);
  }
}

void SourceRun::readAddresses(std::vector<IntRange> ranges) {
  if (m_addresses == nullptr || !m_addresses->isWanted()) {
    return;
  }
  std::ranges::sort(ranges, {}, &IntRange::low);
  int page = 1;
  for (const auto& [first, last] : ranges) {
    for (page = std::max(page, first); page <= last && !m_state.mustEnd(); ++page) {
      m_person.progress(
          {QStringLiteral("Processing page: %1").arg(page - 1), page, last, m_state.outputCount});
      m_person.handlePendingEvents();
      m_words.filePages(page, page);
      m_words.doReverseSort();
      m_addresses->readPage(page, m_words);
    }
  }
}

} // namespace folivex
