#include "app/viewer/PageLoader.h"

#include "engine/base/Utf16.h"
#include "engine/job/LivePlan.h"
#include "engine/match/WordPlacer.h"
#include "engine/words/CPDFTextDumpInit.h"
#include "platform/Paths.h"

#include <QFileInfo>

#include <algorithm>
#include <cmath>
#include <new>
#include <span>

namespace folivex {

namespace {

QString drawProblem(int page, int result, const QString& reason) {
  if (result == GLYPHRUN_OUT_OF_MEMORY) {
    return QStringLiteral("Page %1 is too large to be drawn.").arg(page);
  }
  const QString why = reason.isEmpty() ? QString() : QStringLiteral(" (%1)").arg(reason);
  return QStringLiteral("Page %1 is damaged and cannot be drawn%2.").arg(page).arg(why);
}

} // namespace

/// The text library's view of one file.
class PageLoader::View {
public:
  View(CPDFTextDumpInit& library, const ViewedFile& file, Reads reads)
      : m_library(library), m_reads(reads), m_swapAxes(file.swapAxes) {
    // A pipe or a device may never come to an end.
    const QString path = platform::withoutTrailingBlanks(file.path);
    if (const QFileInfo info(path); info.exists() && !info.isFile()) {
      m_opened.problem = QStringLiteral("is no ordinary file");
      return;
    }
    int32_t result = GLYPHRUN_OK;
    m_view = m_library.openView(path, file.password, &result);
    if (m_view == nullptr) {
      m_opened.problem = openingProblem(result, !file.password.isEmpty());
      m_opened.needsPassword = result == GLYPHRUN_WRONG_PASSWORD;
      return;
    }
    m_library.SetViewWordSpacing(m_view, file.wordSpacing);
    m_opened.pageCount = std::max(m_library.GetViewPageCount(m_view), 0);
    if (m_opened.pageCount == 0) {
      m_opened.problem = QStringLiteral("has no pages");
    }
  }
  View(const View&) = delete;
  View& operator=(const View&) = delete;
  ~View() {
    if (m_view != nullptr) {
      m_library.CloseView(m_view);
    }
  }

  const OpenedFile& opened() const { return m_opened; }

  /// For any thread: the page that is being drawn is given up soon, and those that follow at once.
  void abandon() { m_library.AbortView(m_view); }

  void load(ViewedPage& into, const PageSizing& sizing) {
    double width = 0;
    double height = 0;
    const int result = m_library.GetViewPageSize(m_view, into.page, &width, &height);
    const bool hasSize = std::isfinite(width) && std::isfinite(height) && width > 0 && height > 0;
    if (result != GLYPHRUN_OK || !hasSize) {
      into.problem = drawProblem(into.page, result, QString());
      return;
    }
    into.size = QSizeF(width, height);
    draw(into, sizing);
    if (m_reads == Reads::PicturesAndWords) {
      takeWords(into);
    }
  }

private:
  void draw(ViewedPage& into, const PageSizing& sizing) {
    into.pixelsPerPoint = pixelsPerPoint(into.size, sizing);
    GlyphrunImage drawn{0, 0, nullptr};
    const int result = m_library.RenderViewPage(m_view, into.page, into.pixelsPerPoint, &drawn);
    if (result != GLYPHRUN_OK) {
      into.problem = drawProblem(into.page, result, m_library.lastErrorText());
      return;
    }
    // A copy, since a picture may outlive the library that would have to release it.
    into.image = QImage(drawn.pixels, drawn.width, drawn.height,
                        static_cast<qsizetype>(drawn.width) * 4, QImage::Format_RGB32)
                     .copy();
    m_library.ReleaseImage(&drawn);
    if (into.image.isNull()) {
      into.problem = drawProblem(into.page, GLYPHRUN_OUT_OF_MEMORY, QString());
    }
  }

  void takeWords(ViewedPage& into) {
    const GlyphrunWord* words = nullptr;
    const int count = m_library.GetViewWords(m_view, into.page, &words);
    WordPlacer placer(m_swapAxes);
    placer.beginPage();
    for (const GlyphrunWord& word :
         std::span(words, count > 0 ? static_cast<std::size_t>(count) : 0)) {
      const QString text = QString::fromUtf16(word.text);
      if (text.isEmpty()) {
        continue;
      }
      const PlacedWord placed = placer.place({text, word.h, word.v});
      into.words.push_back(
          {placed.text.toString(), placed.h, placed.v, m_swapAxes ? word.v : word.h,
           m_swapAxes ? word.h : word.v, word.v,
           QRectF(QPointF(word.left, word.top), QPointF(word.right, word.bottom)).normalized()});
    }
  }

  CPDFTextDumpInit& m_library;
  Reads m_reads;
  bool m_swapAxes;
  GlyphrunView* m_view = nullptr;
  OpenedFile m_opened;
};

PageLoader::PageLoader(CPDFTextDumpInit& library, Reads reads)
    : m_library(library), m_reads(reads), m_thread([this] { work(); }) {}

PageLoader::~PageLoader() {
  {
    const std::lock_guard lock(m_mutex);
    m_ending = true;
    abandonView();
  }
  m_due.notify_one();
  m_thread.join();
}

void PageLoader::open(const ViewedFile& file) {
  {
    const std::lock_guard lock(m_mutex);
    ++m_generation;
    m_toOpen = file;
    m_wanted.clear();
    m_loading = 0;
    abandonView();
  }
  m_due.notify_one();
}

/// Nobody waits for the pages of the file that is open any more. To be called under the lock.
void PageLoader::abandonView() {
  if (m_view) {
    m_view->abandon();
  }
}

void PageLoader::want(const std::vector<int>& pages, const PageSizing& sizing) {
  {
    const std::lock_guard lock(m_mutex);
    m_wanted.assign(pages.begin(), pages.end());
    if (sizing == m_sizing) {
      std::erase(m_wanted, m_loading); // it comes
    }
    m_sizing = sizing;
  }
  m_due.notify_one();
}

void PageLoader::work() {
  std::unique_lock lock(m_mutex);
  while (true) {
    m_due.wait(lock, [this] { return m_ending || m_toOpen || !m_wanted.empty(); });
    if (m_ending) {
      break;
    }
    const int generation = m_generation;
    if (m_toOpen) {
      const ViewedFile file = *std::exchange(m_toOpen, std::nullopt);
      lock.unlock();
      openView(file, generation);
    } else {
      const int page = m_wanted.front();
      m_wanted.pop_front();
      m_loading = page;
      const PageSizing sizing = m_sizing;
      lock.unlock();
      loadPage(page, sizing, generation);
    }
    lock.lock();
    m_loading = 0;
  }
  lock.unlock();
  changeView(nullptr);
}

/// Under the lock, so that the view can be abandoned at any moment; but closed without it.
void PageLoader::changeView(std::unique_ptr<View> view) {
  const std::lock_guard lock(m_mutex);
  m_view.swap(view);
}

void PageLoader::openView(const ViewedFile& file, int generation) {
  changeView(nullptr);
  if (file.path.isEmpty()) {
    return;
  }
  auto view = std::make_unique<View>(m_library, file, m_reads);
  answer(generation, [this, opened = view->opened()] { onOpened(opened); });
  changeView(std::move(view));
}

void PageLoader::loadPage(int page, const PageSizing& sizing, int generation) {
  if (!m_view || m_view->opened().pageCount == 0) {
    return;
  }
  auto loaded = std::make_shared<ViewedPage>();
  loaded->page = page;
  try {
    m_view->load(*loaded, sizing);
  } catch (const std::bad_alloc&) {
    *loaded = ViewedPage();
    loaded->page = page;
    loaded->problem = drawProblem(page, GLYPHRUN_OUT_OF_MEMORY, QString());
  }
  answer(generation, [this, loaded] { onPage(loaded); });
}

/// Calls `tell` in the window's thread unless another file was opened in the meantime.
void PageLoader::answer(int generation, std::function<void()> tell) {
  QMetaObject::invokeMethod(
      &m_window,
      [this, generation, tell = std::move(tell)] {
        if (generation == m_generation) {
          tell();
        }
      },
      Qt::QueuedConnection);
}

} // namespace folivex
