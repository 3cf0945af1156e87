// WordTable: the words of a file, read once.
#pragma once

#include "engine/words/SourceWords.h"
#include "engine/words/TextPool.h"

#include <atomic>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <span>
#include <vector>

namespace folivex {

/// All words of a file in reading order, as the text library gives them, with the states of the
/// pages and the outline. Distinct texts are kept once; a word is a text's number and a place,
/// eight bytes.
///
/// Any number of threads may read, without a lock, what is there while others add pages. Pages
/// count from 1.
class WordTable {
public:
  enum class State {
    Opening,  ///< nothing is known yet
    Filling,  ///< pages come in, nearly in order
    Complete, ///< all pages are there
    Failed,   ///< the file cannot be opened: see failure()
    TooLarge  ///< the words need more memory than is allowed; no page comes in any more
  };

  /// Room for some hundred thousand dense pages.
  static constexpr std::size_t usualMost = std::size_t{512} << 20U;

  /// `mostBytes`: of memory, for everything.
  explicit WordTable(std::size_t mostBytes);

  // ---- for who fills it
  void open(int pageCount, std::vector<Bookmark> outline);
  void fail(int libraryResult);
  /// False when there is no room for it. A page is added once.
  bool add(int page, std::span<const PageWord> words, PageState state);

  // ---- for who reads it
  State state() const { return m_state; }
  int failure() const { return m_failure; } ///< GLYPHRUN_..., after State::Failed
  /// Those that follow are for tables that are neither opening nor failed.
  int pageCount() const { return static_cast<int>(m_pages.size()); }
  const std::vector<Bookmark>& outline() const { return m_outline; }
  bool hasPage(int page) const { return m_pages[index(page)].isThere; }

  /// Those that follow are for pages that are there; words of a page count from 0.
  int wordCount(int page) const { return m_pages[index(page)].count; }
  PageWord word(int page, int word) const;
  /// Equal texts have equal numbers.
  TextPool::Number textNumber(int page, int word) const {
    return m_pages[index(page)].words[static_cast<std::size_t>(word)].text;
  }
  QStringView text(TextPool::Number number) const { return m_pool.text(number); }
  PageState pageState(int page) const { return m_pages[index(page)].state; }

  /// Asked, while somebody waits, whether he still wants to; see wake().
  using IsWanted = std::function<bool()>;
  /// Waits until it is neither opening nor wanted any more. Returns whether pages come in.
  bool waitUntilOpen(const IsWanted& isWanted) const;
  /// Waits until the page is there, comes no more, or is not wanted any more. Returns whether it is
  /// there.
  bool waitForPage(int page, const IsWanted& isWanted) const;
  /// Whoever waits asks again.
  void wake() const;

  /// Memory in use.
  std::size_t bytes() const;

private:
  struct Word {
    TextPool::Number text;
    qint16 h;
    qint16 v;
  };
  struct Place {
    int h;
    int v;
  };
  struct Page {
    std::unique_ptr<Word[]> words;
    std::unique_ptr<Place[]> places; ///< where some word stands farther out than 16 bits tell
    int count = 0;
    PageState state = PageState::Empty;
    std::atomic<bool> isThere = false; ///< set when all else is
  };

  static std::size_t index(int page) { return static_cast<std::size_t>(page) - 1; }
  bool fill(Page& page, std::span<const PageWord> words);
  void become(State state);

  std::size_t m_mostBytes;
  std::atomic<State> m_state = State::Opening;
  int m_failure = 0;
  std::vector<Bookmark> m_outline;
  std::vector<Page> m_pages; ///< never moves
  std::atomic<std::size_t> m_pageBytes = 0;
  std::atomic<int> m_missing = 0;

  mutable std::mutex m_poolMutex; ///< for adding
  TextPool m_pool;
  mutable std::mutex m_waitMutex;
  mutable std::condition_variable m_changed;
};

} // namespace folivex
