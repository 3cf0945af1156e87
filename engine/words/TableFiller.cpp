#include "engine/words/TableFiller.h"

#include "engine/base/Utf16.h"
#include "engine/words/CPDFTextDumpInit.h"
#include "engine/words/TextLibraryWords.h"

#include <algorithm>
#include <utility>

namespace folivex {

namespace {

/// Each thread holds the file's page tree once more.
constexpr unsigned mostThreads = 4;
/// Read in a row, so that threads seldom meet; few enough for pages to come nearly in order.
constexpr int pagesInARow = 8;

std::vector<Bookmark> outlineOf(CPDFTextDumpInit& library, GlyphrunView* view) {
  std::vector<Bookmark> outline;
  const int count = library.GetViewOutlineCount(view);
  for (int i = 0; i < count; ++i) {
    GlyphrunOutlineEntry entry = {};
    if (library.GetViewOutlineEntry(view, i, &entry) == GLYPHRUN_OK) {
      outline.push_back(
          {entry.title ? QString::fromUtf16(entry.title) : QString(), entry.level, entry.page});
    }
  }
  return outline;
}

} // namespace

/// A view that giveUp() knows of as long as it is open.
class TableFiller::View {
public:
  explicit View(TableFiller& filler) : m_filler(filler) {
    const Source& source = filler.m_source;
    m_view = filler.m_library.openView(source.file, source.password, &m_result);
    if (m_view != nullptr) {
      filler.m_library.SetViewWordSpacing(m_view, source.wordSpacing);
      const std::lock_guard lock(filler.m_mutex);
      filler.m_views.insert(m_view);
    }
  }
  ~View() {
    {
      const std::lock_guard lock(m_filler.m_mutex);
      m_filler.m_views.erase(m_view);
    }
    m_filler.m_library.CloseView(m_view);
  }
  View(const View&) = delete;
  View& operator=(const View&) = delete;

  GlyphrunView* get() const { return m_view; }
  int result() const { return m_result; }

private:
  TableFiller& m_filler;
  GlyphrunView* m_view = nullptr;
  int m_result = GLYPHRUN_OK;
};

TableFiller::TableFiller(CPDFTextDumpInit& library, Source source, std::shared_ptr<WordTable> table,
                         bool isPaused)
    : m_library(library), m_source(std::move(source)), m_table(std::move(table)),
      m_isPaused(isPaused) {
  begin(&TableFiller::readFile);
}

TableFiller::~TableFiller() {
  giveUp();
  // The first thread may still begin others; nobody else does.
  for (std::size_t i = 0;; ++i) {
    std::thread thread;
    {
      const std::lock_guard lock(m_mutex);
      if (i == m_threads.size()) {
        return;
      }
      thread = std::move(m_threads[i]);
    }
    thread.join();
  }
}

void TableFiller::begin(void (TableFiller::*work)()) {
  const std::lock_guard lock(m_mutex);
  ++m_threadCount;
  m_threads.emplace_back([this, work] {
    (this->*work)();
    --m_threadCount;
  });
}

void TableFiller::giveUp() {
  const std::lock_guard lock(m_mutex);
  m_isGivenUp = true;
  for (GlyphrunView* view : m_views) {
    m_library.AbortView(view);
  }
  m_goOn.notify_all();
}

void TableFiller::setPaused(bool on) {
  const std::lock_guard lock(m_mutex);
  m_isPaused = on;
  m_goOn.notify_all();
}

bool TableFiller::waitWhilePaused() {
  std::unique_lock lock(m_mutex);
  m_goOn.wait(lock, [this] { return !m_isPaused || m_isGivenUp; });
  return !m_isGivenUp;
}

void TableFiller::readFile() {
  if (!waitWhilePaused()) {
    return;
  }
  View view(*this);
  if (m_isGivenUp) {
    return;
  }
  if (view.get() == nullptr) {
    m_table->fail(view.result());
    return;
  }
  m_table->open(m_library.GetViewPageCount(view.get()), outlineOf(m_library, view.get()));
  const unsigned threads = std::clamp(std::thread::hardware_concurrency(), 1U, mostThreads);
  const auto rows = static_cast<unsigned>(m_table->pageCount() / pagesInARow);
  for (unsigned i = 1; i < std::min(threads, rows); ++i) {
    begin(&TableFiller::help);
  }
  readPages(view);
}

void TableFiller::help() {
  View view(*this);
  // One that cannot be opened twice is read by one.
  if (view.get() != nullptr && m_library.GetViewPageCount(view.get()) == m_table->pageCount()) {
    readPages(view);
  }
}

void TableFiller::readPages(View& view) {
  std::vector<PageWord> words;
  const int end = m_table->pageCount() + 1;
  for (int first = 1; (first = m_nextPage.fetch_add(pagesInARow)) < end;) {
    for (int page = first; page < std::min(first + pagesInARow, end); ++page) {
      if (!waitWhilePaused() || !readPage(view, page, words)) {
        return;
      }
    }
  }
}

/// False when no page is to be read any more.
bool TableFiller::readPage(View& view, int page, std::vector<PageWord>& words) {
  const GlyphrunWord* found = nullptr;
  const int count = m_library.GetViewWords(view.get(), page, &found);
  if (m_isGivenUp) {
    return false; // some of them may be missing
  }
  words.clear();
  for (int i = 0; i < count; ++i) {
    words.push_back({wordText(found[i].text), found[i].h, found[i].v});
  }
  return m_table->add(page, words,
                      count < 0 ? PageState::Damaged
                                : pageStateOf(m_library.GetViewPageState(view.get())));
}

} // namespace folivex
