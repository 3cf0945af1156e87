#include "View.h"

#include "common/Failure.h"

#include <algorithm>
#include <cmath>
#include <condition_variable>
#include <cstdlib>
#include <mutex>
#include <thread>

namespace glyphrun {

using common::Failure;

namespace {

constexpr double mostPixels = 64e6;
constexpr std::size_t drawingMemory = std::size_t{1024} << 20;
constexpr std::chrono::milliseconds drawingTime{30'000};

/// Aborts a drawing through its cookie when it takes too long.
class DrawingTimer {
public:
  explicit DrawingTimer(fz_cookie& cookie)
      : m_thread([this, &cookie] {
          std::unique_lock lock(m_mutex);
          if (!m_done.wait_for(lock, drawingTime, [this] { return m_finished; })) {
            cookie.abort = 1;
          }
        }) {}

  ~DrawingTimer() {
    {
      const std::lock_guard lock(m_mutex);
      m_finished = true;
    }
    m_done.notify_one();
    m_thread.join();
  }
  DrawingTimer(const DrawingTimer&) = delete;
  DrawingTimer& operator=(const DrawingTimer&) = delete;

private:
  std::mutex m_mutex;
  std::condition_variable m_done;
  bool m_finished = false;
  std::thread m_thread;
};

} // namespace

void View::requirePage(std::int32_t page) {
  if (page < 1 || page > pageCount()) {
    throw Failure(GLYPHRUN_BAD_PAGE, "there is no such page");
  }
}

PageFrame View::frameOf(std::int32_t page) {
  requirePage(page);
  return m_reader.file().frameOf(page - 1);
}

GlyphrunImage View::render(std::int32_t page, double scale) {
  const PageFrame frame = frameOf(page);
  const double width = std::max(1.0, std::round(frame.width * scale));
  const double height = std::max(1.0, std::round(frame.height * scale));
  if (!(scale > 0) || !(width * height <= mostPixels)) {
    throw Failure(GLYPHRUN_OUT_OF_MEMORY, "the picture would be too large");
  }
  const auto columns = static_cast<int>(width);
  const auto rows = static_cast<int>(height);
  const std::size_t bytes = static_cast<std::size_t>(columns) * static_cast<std::size_t>(rows) * 4;
  auto* pixels = static_cast<unsigned char*>(std::malloc(bytes));
  if (pixels == nullptr) {
    throw std::bad_alloc();
  }
  MuContext& mu = m_reader.file().mu();
  mu.allow(drawingMemory, drawingTime);
  const Outcome outcome = draw(page, columns, rows, pixels);
  mu.relax();
  if (outcome != Outcome::Ok) {
    std::free(pixels);
    throw Failure(outcome == Outcome::OutOfMemory ? GLYPHRUN_OUT_OF_MEMORY : GLYPHRUN_DAMAGED,
                  m_isAborted ? "the drawing was given up" : mu.message());
  }
  return {columns, rows, pixels};
}

Outcome View::draw(std::int32_t page, int width, int height, unsigned char* pixels) {
  MuContext& mu = m_reader.file().mu();
  fz_context* ctx = mu.raw();
  fz_cookie cookie{};
  const DrawingTimer timer(cookie);
  const std::stop_callback onAbort(m_abort.get_token(), [&cookie] { cookie.abort = 1; });
  fz_pixmap* pixmap = nullptr;
  fz_device* device = nullptr;
  pdf_page* loaded = m_reader.file().loadForDrawing(page - 1);
  if (loaded == nullptr) {
    return Outcome::Failed;
  }
  const Outcome outcome = mu.attempt([&] {
    const fz_rect bounds = pdf_bound_page(ctx, loaded);
    const float spanX = bounds.x1 - bounds.x0;
    const float spanY = bounds.y1 - bounds.y0;
    if (!(spanX > 0) || !(spanY > 0)) {
      fz_throw(ctx, FZ_ERROR_GENERIC, "the page has no size");
    }
    const float scaleX = static_cast<float>(width) / spanX;
    const float scaleY = static_cast<float>(height) / spanY;
    pixmap = fz_new_pixmap_with_data(ctx, fz_device_bgr(ctx), width, height, nullptr, 1, width * 4,
                                     pixels);
    fz_clear_pixmap_with_value(ctx, pixmap, 255);
    device = fz_new_draw_device(ctx, fz_identity, pixmap);
    const fz_matrix matrix =
        fz_concat(fz_translate(-bounds.x0, -bounds.y0), fz_scale(scaleX, scaleY));
    pdf_run_page(ctx, loaded, device, matrix, &cookie);
    fz_close_device(ctx, device);
    if (cookie.abort != 0) {
      fz_throw(ctx, FZ_ERROR_GENERIC, "the page takes too long to draw");
    }
  });
  fz_drop_device(ctx, device);
  fz_drop_pixmap(ctx, pixmap);
  fz_drop_page(ctx, &loaded->super);
  return outcome;
}

void View::setWordSpacing(double factor) {
  m_wordSpacing = factor;
  m_reader.setWordSpacing(factor);
  if (m_ahead) {
    m_ahead->setWordSpacing(factor);
  }
}

void View::setReadAhead(std::int32_t threads) {
  m_ahead.reset();
  if (threads > 0) {
    m_ahead = std::make_unique<ReadAhead>(
        m_path, m_password, pageCount(), 0, m_reader.file().pageList(),
        std::min(threads, ReadAhead::mostThreads), m_wordSpacing, m_abort.get_token());
  }
}

const std::vector<GlyphrunWord>& View::words(std::int32_t page) {
  requirePage(page);
  if (!m_ahead || !m_ahead->take(page - 1, m_pageWords)) {
    m_reader.read(page - 1, m_pageWords);
  }
  m_list.clear();
  for (const std::uint32_t index : m_pageWords.reading) {
    const Word& word = m_pageWords.words[index];
    m_list.push_back({m_pageWords.textOf(word), word.h, word.v, page, word.left, word.top,
                      word.right, word.bottom});
  }
  return m_list;
}

const std::vector<OutlineEntry>& View::outline() {
  if (!m_outline) {
    m_outline = readOutline(m_reader.file());
  }
  return *m_outline;
}

void View::abort() {
  m_isAborted = true;
  m_abort.request_stop();
}

} // namespace glyphrun
