#include "ReadAhead.h"

#include <algorithm>
#include <utility>

namespace glyphrun {

namespace {

// Some megabytes of words: they bridge the time in which the caller does something else, such as
// opening the file elsewhere or writing.
constexpr std::int32_t pagesAheadPerThread = 256;
constexpr std::size_t mostBytesAhead = std::size_t{64} << 20;

} // namespace

ReadAhead::ReadAhead(std::u16string path, std::u16string password, std::int32_t pageCount,
                     std::int32_t first, std::shared_ptr<const PageList> pages, int threads,
                     double wordSpacing, std::stop_token stop)
    : m_path(std::move(path)), m_password(std::move(password)), m_pageCount(pageCount),
      m_pages(std::move(pages)), m_window(threads * pagesAheadPerThread), m_wanted(first),
      m_next(first), m_wordSpacing(wordSpacing),
      m_onStop(std::move(stop), [this] { this->stop(); }) {
  // Too few threads are no failure: the caller reads what nobody else does.
  try {
    for (int i = 0; i < threads; ++i) {
      m_threads.emplace_back([this] { work(); });
    }
  } catch (const std::exception&) {
    m_changed.notify_all();
  }
}

ReadAhead::~ReadAhead() {
  stop();
  for (std::thread& thread : m_threads) {
    thread.join();
  }
}

void ReadAhead::stop() {
  {
    const std::lock_guard lock(m_mutex);
    m_stopping = true;
  }
  m_changed.notify_all();
}

std::size_t ReadAhead::bytesOf(const PageWords& words) {
  return words.pool.capacity() * sizeof(char16_t) + words.words.capacity() * sizeof(Word) +
         words.reading.capacity() * sizeof(std::uint32_t);
}

bool ReadAhead::mayClaim() const {
  return m_wanted >= 0 && m_next < m_pageCount && m_next < m_wanted + m_window &&
         (m_bytes < mostBytesAhead || m_slots.empty());
}

void ReadAhead::restartAt(std::int32_t index) {
  ++m_generation;
  m_slots.clear();
  m_bytes = 0;
  m_next = index;
}

bool ReadAhead::take(std::int32_t index, PageWords& out) {
  std::unique_lock lock(m_mutex);
  if (index != m_wanted) {
    restartAt(index + 1);
  }
  m_wanted = index + 1;
  auto claimed = m_slots.end();
  m_changed.wait(lock, [&] {
    claimed = m_slots.find(index);
    return claimed == m_slots.end() || claimed->second.ready;
  });
  if (claimed == m_slots.end()) {
    // Nobody is at it; the threads go on behind it.
    m_next = std::max(m_next, index + 1);
    lock.unlock();
    m_changed.notify_all();
    return false;
  }
  m_bytes -= bytesOf(claimed->second.words);
  std::swap(out, claimed->second.words);
  // The caller's old storage serves the next page.
  m_spare.push_back(std::move(claimed->second.words));
  m_slots.erase(claimed);
  lock.unlock();
  m_changed.notify_all();
  return true;
}

void ReadAhead::setWordSpacing(double factor) {
  const std::lock_guard lock(m_mutex);
  m_wordSpacing = factor;
  restartAt(std::max(m_wanted, 0));
}

void ReadAhead::work() {
  try {
    PageReader reader(PdfFile::open(m_path, m_password, m_pages, &m_stopping));
    if (reader.file().pageCount() == m_pageCount) {
      readClaimedPages(reader);
    }
  } catch (const std::exception&) {
    // Without file or memory this thread stands aside; it has nothing claimed.
  }
}

/// Waits for a page to read; false when there is no more work. Throws before it claims anything.
bool ReadAhead::claim(std::unique_lock<std::mutex>& lock, std::int32_t& index, PageWords& words) {
  m_changed.wait(lock, [this] { return m_stopping || mayClaim(); });
  if (m_stopping) {
    return false;
  }
  index = m_next;
  m_slots.try_emplace(index);
  ++m_next;
  if (!m_spare.empty()) {
    words = std::move(m_spare.back());
    m_spare.pop_back();
  }
  return true;
}

void ReadAhead::readClaimedPages(PageReader& reader) {
  std::unique_lock lock(m_mutex);
  std::int32_t index = 0;
  for (PageWords words; claim(lock, index, words); words = PageWords()) {
    const std::uint32_t generation = m_generation;
    const double spacing = m_wordSpacing;
    lock.unlock();
    reader.setWordSpacing(spacing);
    try {
      reader.read(index, words);
    } catch (const std::bad_alloc&) {
      words.clear();
      words.page = index + 1;
      words.state = PageState::Damaged;
      words.outOfMemory = true;
    }
    lock.lock();
    const auto slot = m_slots.find(index);
    if (generation != m_generation || slot == m_slots.end()) {
      continue;
    }
    m_bytes += bytesOf(words);
    slot->second.words = std::move(words);
    slot->second.ready = true;
    m_changed.notify_all();
  }
}

} // namespace glyphrun
