#include "engine/words/WordTable.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace folivex {

namespace {

bool isNear(const PageWord& word) {
  const auto fits = [](int value) {
    return value >= std::numeric_limits<qint16>::min() &&
           value <= std::numeric_limits<qint16>::max();
  };
  return fits(word.h) && fits(word.v);
}

} // namespace

WordTable::WordTable(std::size_t mostBytes) : m_mostBytes(mostBytes), m_pool(mostBytes) {}

void WordTable::open(int pageCount, std::vector<Bookmark> outline) {
  m_outline = std::move(outline);
  m_pages = std::vector<Page>(static_cast<std::size_t>(pageCount));
  m_missing = pageCount;
  become(pageCount > 0 ? State::Filling : State::Complete);
}

void WordTable::fail(int libraryResult) {
  m_failure = libraryResult;
  become(State::Failed);
}

bool WordTable::add(int number, std::span<const PageWord> words, PageState state) {
  Page& page = m_pages[index(number)];
  if (m_state != State::Filling || !fill(page, words) || bytes() > m_mostBytes) {
    become(State::TooLarge);
    return false;
  }
  page.state = state;
  page.isThere = true;
  if (--m_missing == 0) {
    {
      const std::lock_guard lock(m_poolMutex);
      m_pool.close();
    }
    become(State::Complete);
  } else {
    wake();
  }
  return true;
}

bool WordTable::fill(Page& page, std::span<const PageWord> words) {
  auto list = std::make_unique_for_overwrite<Word[]>(words.size());
  {
    const std::lock_guard lock(m_poolMutex);
    for (std::size_t i = 0; i < words.size(); ++i) {
      list[i] = {m_pool.add(words[i].text), static_cast<qint16>(words[i].h),
                 static_cast<qint16>(words[i].v)};
      if (list[i].text == 0) {
        return false;
      }
    }
  }
  std::size_t bytes = words.size() * sizeof(Word);
  if (!std::ranges::all_of(words, isNear)) {
    page.places = std::make_unique_for_overwrite<Place[]>(words.size());
    std::ranges::transform(words, page.places.get(), [](const PageWord& word) {
      return Place{word.h, word.v};
    });
    bytes += words.size() * sizeof(Place);
  }
  page.words = std::move(list);
  page.count = static_cast<int>(words.size());
  m_pageBytes += bytes;
  return true;
}

PageWord WordTable::word(int number, int word) const {
  const Page& page = m_pages[index(number)];
  const auto i = static_cast<std::size_t>(word);
  const Word& found = page.words[i];
  const QStringView text = m_pool.text(found.text);
  return page.places ? PageWord{text, page.places[i].h, page.places[i].v}
                     : PageWord{text, found.h, found.v};
}

std::size_t WordTable::bytes() const {
  const std::lock_guard lock(m_poolMutex);
  return m_pool.bytes() + m_pageBytes + m_pages.size() * sizeof(Page);
}

void WordTable::become(State state) {
  m_state = state;
  wake();
}

void WordTable::wake() const {
  { const std::lock_guard lock(m_waitMutex); } // nobody is between his question and his sleep
  m_changed.notify_all();
}

bool WordTable::waitUntilOpen(const IsWanted& isWanted) const {
  std::unique_lock lock(m_waitMutex);
  m_changed.wait(lock, [&] { return m_state != State::Opening || !isWanted(); });
  return m_state != State::Opening && m_state != State::Failed;
}

bool WordTable::waitForPage(int page, const IsWanted& isWanted) const {
  if (hasPage(page)) {
    return true;
  }
  std::unique_lock lock(m_waitMutex);
  m_changed.wait(lock, [&] { return hasPage(page) || m_state == State::TooLarge || !isWanted(); });
  return hasPage(page);
}

} // namespace folivex
