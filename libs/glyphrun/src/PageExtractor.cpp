#include "PageExtractor.h"

#include "common/Failure.h"
#include "common/Utf16.h"

#include <glyphrun/glyphrun.h>

#include <algorithm>
#include <string_view>
#include <unordered_set>

namespace glyphrun {

using common::Failure;

namespace {

/// A file with so many pages is read from end to end, most likely.
constexpr std::int32_t manyPages = 256;

const Word noWord;
constexpr char16_t noText[] = u"";

} // namespace

PageExtractor& PageExtractor::instance() {
  static PageExtractor session;
  return session;
}

std::int32_t PageExtractor::countPages(const std::u16string& path, const std::u16string& password) {
  m_ready.reset();
  m_readyIdentity = common::FileIdentity::of(common::toUtf8(path));
  m_ready = std::make_unique<PageReader>(PdfFile::open(path, password));
  m_readyPath = path;
  m_readyPassword = password;
  return m_ready->file().pageCount();
}

void PageExtractor::openFile(const std::u16string& path, const std::u16string& password) {
  closeFile();
  const auto identity = common::FileIdentity::of(common::toUtf8(path));
  const bool unchanged = m_ready && path == m_readyPath && password == m_readyPassword &&
                         identity && identity == m_readyIdentity;
  if (unchanged) {
    m_reader = std::move(m_ready);
  } else {
    m_ready.reset();
    m_reader = std::make_unique<PageReader>(PdfFile::open(path, password));
  }
  m_reader->setWordSpacing(m_wordSpacing);
  m_path = path;
  m_password = password;
  if (m_aheadThreads > 0 && pageCount() >= manyPages) {
    startReadAhead(0);
  }
}

void PageExtractor::startReadAhead(std::int32_t first) {
  m_ahead = std::make_unique<ReadAhead>(m_path, m_password, pageCount(), first,
                                        m_reader->file().pageList(), m_aheadThreads, m_wordSpacing);
}

void PageExtractor::closeFile() {
  dropWords();
  m_outline.clear();
  m_outlineRead = false;
  m_ahead.reset();
  m_reader.reset();
  m_path.clear();
  m_password.clear();
  m_lastPage = 0;
  m_pageState = PageState::Empty;
}

void PageExtractor::dropWords() {
  m_order.clear();
  m_pagesUsed = 0;
  m_hasSelection = false;
}

void PageExtractor::extract(std::int32_t first, std::int32_t last) {
  dropWords();
  m_pageState = PageState::Empty;
  if (!m_reader) {
    throw Failure(GLYPHRUN_NOT_OPEN, "no file is open");
  }
  if (first < 1 || last < first || last > m_reader->file().pageCount()) {
    throw Failure(GLYPHRUN_BAD_PAGE, "there is no such page");
  }
  std::int32_t worst = GLYPHRUN_OK;
  bool anyWords = false;
  for (std::int32_t page = first; page <= last; ++page) {
    if (m_pagesUsed == m_pages.size()) {
      m_pages.emplace_back();
    }
    PageWords& words = m_pages[m_pagesUsed++];
    readPage(page - 1, words);
    m_lastPage = page;
    anyWords = anyWords || !words.words.empty();
    m_pageState = std::max(m_pageState, words.state);
    if (words.outOfMemory) {
      worst = GLYPHRUN_OUT_OF_MEMORY;
    } else if (words.state == PageState::Damaged && worst == GLYPHRUN_OK) {
      worst = GLYPHRUN_DAMAGED;
    }
  }
  // Of several pages an empty one is no grave matter.
  if (m_pageState == PageState::Empty && anyWords) {
    m_pageState = PageState::Good;
  }
  fillOrder(false);
  if (worst != GLYPHRUN_OK) {
    throw Failure(worst, "a page is damaged or goes beyond what one page may cost");
  }
}

void PageExtractor::readPage(std::int32_t index, PageWords& words) {
  // A look at one page or another is no reason to start threads.
  if (!m_ahead && m_aheadThreads > 0 && index > 0 && index == m_lastPage) {
    startReadAhead(-1);
  }
  if (!m_ahead || !m_ahead->take(index, words)) {
    m_reader->read(index, words);
  }
}

void PageExtractor::fillOrder(bool reading) {
  m_order.clear();
  for (std::uint32_t slot = 0; slot < m_pagesUsed; ++slot) {
    const PageWords& page = m_pages[slot];
    for (std::uint32_t i = 0; i < page.words.size(); ++i) {
      m_order.push_back({slot, reading ? page.reading[i] : i});
    }
  }
}

void PageExtractor::sortAsDrawn() {
  fillOrder(false);
}

void PageExtractor::sortForReading() {
  fillOrder(true);
}

// A page that repeats the words of another page is no repetition: only words of one page are
// compared.
void PageExtractor::removeRepeats() {
  struct Key {
    std::uint32_t slot;
    std::int32_t h;
    std::int32_t v;
    std::u16string_view text;
    bool operator==(const Key&) const = default;
  };
  struct Hash {
    std::size_t operator()(const Key& key) const {
      constexpr std::size_t mix = 1'000'003;
      const std::size_t place = (key.slot * mix + static_cast<std::uint32_t>(key.h)) * mix +
                                static_cast<std::uint32_t>(key.v);
      return std::hash<std::u16string_view>()(key.text) ^ place * mix;
    }
  };
  std::unordered_set<Key, Hash> seen;
  std::erase_if(m_order, [&](const WordIndex& index) {
    const PageWords& page = m_pages[index.slot];
    const Word& word = page.words[index.word];
    return !seen.insert({index.slot, word.h, word.v, page.textOf(word)}).second;
  });
  m_hasSelection = false;
}

void PageExtractor::setWordSpacing(double factor) {
  m_wordSpacing = factor;
  if (m_reader) {
    m_reader->setWordSpacing(factor);
  }
  if (m_ahead) {
    m_ahead->setWordSpacing(factor);
  }
}

void PageExtractor::setReadAhead(std::int32_t threads) {
  m_aheadThreads = std::clamp(threads, 0, ReadAhead::mostThreads);
  m_ahead.reset();
}

void PageExtractor::select(std::int32_t index) {
  m_hasSelection = index >= 0 && index < wordCount();
  if (m_hasSelection) {
    m_selected = m_order[static_cast<std::size_t>(index)];
  }
}

const Word& PageExtractor::selected() const {
  return m_hasSelection ? m_pages[m_selected.slot].words[m_selected.word] : noWord;
}

const char16_t* PageExtractor::selectedText() const {
  return m_hasSelection ? m_pages[m_selected.slot].textOf(selected()) : noText;
}

const char16_t* PageExtractor::selectedFont() const {
  return m_hasSelection ? m_pages[m_selected.slot].pool.data() + selected().font : noText;
}

const std::vector<OutlineEntry>& PageExtractor::outline() {
  if (m_reader && !m_outlineRead) {
    m_outline = readOutline(m_reader->file());
    m_outlineRead = true;
  }
  return m_outline;
}

} // namespace glyphrun
