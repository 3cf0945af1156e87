#include "engine/words/TableFiller.h"

#include "engine/base/Utf16.h"
#include "engine/words/CPDFTextDumpInit.h"
#include "engine/words/TextLibraryWords.h"

#include <utility>

namespace folivex {

namespace {

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
      filler.m_view = m_view;
    }
  }
  ~View() {
    {
      const std::lock_guard lock(m_filler.m_mutex);
      m_filler.m_view = nullptr;
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
      m_isPaused(isPaused), m_thread([this] {
        readFile();
        m_isFinished = true;
      }) {}

TableFiller::~TableFiller() {
  giveUp();
  m_thread.join();
}

void TableFiller::giveUp() {
  const std::lock_guard lock(m_mutex);
  m_isGivenUp = true;
  m_library.AbortView(m_view);
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
  m_library.SetViewReadAhead(view.get(), CPDFTextDumpInit::threadsAhead());
  readPages(view.get());
}

void TableFiller::readPages(GlyphrunView* view) {
  std::vector<PageWord> words;
  for (int page = 1; page <= m_table->pageCount(); ++page) {
    if (!waitWhilePaused() || !readPage(view, page, words)) {
      return;
    }
  }
}

/// False when no page is to be read any more.
bool TableFiller::readPage(GlyphrunView* view, int page, std::vector<PageWord>& words) {
  const GlyphrunWord* found = nullptr;
  const int count = m_library.GetViewWords(view, page, &found);
  if (m_isGivenUp) {
    return false; // some of them may be missing
  }
  words.clear();
  for (int i = 0; i < count; ++i) {
    words.push_back({wordText(found[i].text), found[i].h, found[i].v});
  }
  return m_table->add(
      page, words, count < 0 ? PageState::Damaged : pageStateOf(m_library.GetViewPageState(view)));
}

} // namespace folivex
