#include "View.h"

#include <cmath>
#include <condition_variable>
#include <cstdlib>
#include <mutex>
#include <thread>

namespace glyphrun {

namespace {

constexpr double mostPixels = 64e6;
constexpr std::size_t drawingMemory = std::size_t{1024} << 20;
constexpr std::chrono::milliseconds drawingTime{30'000};

/** Aborts a drawing through its cookie when it takes too long. */
class DrawingTimer {
public:
  explicit DrawingTimer(fz_cookie& cookie)
      : m_thread([this, &cookie] {
          std::unique_lock lock(m_mutex);
          if (!m_done.wait_for(lock, drawingTime, [this] { return m_finished; }))
            cookie.abort = 1;
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

std::unique_ptr<View> View::open(const std::u16string& path, const std::u16string& password,
                                 Result& result, std::string& reason) {
  std::unique_ptr<PdfFile> file = PdfFile::open(path, password, result, reason);
  return file ? std::unique_ptr<View>(new View(std::move(file))) : nullptr;
}

Result View::pageSize(std::int32_t page, double& width, double& height) {
  if (!has(page))
    return Result::BadPage;
  const PageFrame frame = m_reader.file().frameOf(page - 1);
  width = frame.width;
  height = frame.height;
  return Result::Ok;
}

Result View::render(std::int32_t page, double scale, GlyphrunImage& image, std::string& reason) {
  double width = 0;
  double height = 0;
  if (const Result result = pageSize(page, width, height); result != Result::Ok)
    return result;
  width = std::max(1.0, std::round(width * scale));
  height = std::max(1.0, std::round(height * scale));
  if (!(scale > 0) || !(width * height <= mostPixels)) {
    reason = "the picture would be too large";
    return Result::OutOfMemory;
  }
  const auto columns = static_cast<int>(width);
  const auto rows = static_cast<int>(height);
  const std::size_t bytes = static_cast<std::size_t>(columns) * static_cast<std::size_t>(rows) * 4;
  auto* pixels = static_cast<unsigned char*>(std::malloc(bytes));
  if (pixels == nullptr)
    return Result::OutOfMemory;
  MuContext& mu = m_reader.file().mu();
  mu.allow(drawingMemory, drawingTime);
  const Outcome outcome = draw(page, columns, rows, pixels);
  mu.relax();
  if (outcome != Outcome::Ok) {
    std::free(pixels);
    reason = mu.message();
    return outcome == Outcome::OutOfMemory ? Result::OutOfMemory : Result::Damaged;
  }
  image = {columns, rows, pixels};
  return Result::Ok;
}

Outcome View::draw(std::int32_t page, int width, int height, unsigned char* pixels) {
  MuContext& mu = m_reader.file().mu();
  fz_context* ctx = mu.raw();
  fz_cookie cookie{};
  const DrawingTimer timer(cookie);
  fz_pixmap* pixmap = nullptr;
  fz_device* device = nullptr;
  pdf_page* loaded = m_reader.file().loadForDrawing(page - 1);
  if (loaded == nullptr)
    return Outcome::Failed;
  const Outcome outcome = mu.attempt([&] {
    const fz_rect bounds = pdf_bound_page(ctx, loaded);
    const float spanX = bounds.x1 - bounds.x0;
    const float spanY = bounds.y1 - bounds.y0;
    if (!(spanX > 0) || !(spanY > 0))
      fz_throw(ctx, FZ_ERROR_GENERIC, "the page has no size");
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
    if (cookie.abort != 0)
      fz_throw(ctx, FZ_ERROR_GENERIC, "the page takes too long to draw");
  });
  fz_drop_device(ctx, device);
  fz_drop_pixmap(ctx, pixmap);
  fz_drop_page(ctx, &loaded->super);
  return outcome;
}

Result View::words(std::int32_t page, const GlyphrunWord*& first, std::int32_t& count) {
  if (!has(page))
    return Result::BadPage;
  m_reader.read(page - 1, m_pageWords);
  m_list.clear();
  for (const std::uint32_t index : m_pageWords.reading) {
    const Word& word = m_pageWords.words[index];
    m_list.push_back({m_pageWords.textOf(word), word.h, word.v, page, word.left, word.top,
                      word.right, word.bottom});
  }
  first = m_list.data();
  count = static_cast<std::int32_t>(m_list.size());
  return Result::Ok;
}

} // namespace glyphrun
