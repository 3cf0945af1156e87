#include "RangeWriter.h"

#include "AtomicFile.h"
#include "Failure.h"
#include "Paths.h"
#include "cleftor/cleftor.h"

#include <exception>
#include <filesystem>
#include <new>
#include <system_error>
#include <utility>

namespace cleftor {

namespace {

/** What may wait: enough to even out large and small ranges, little enough to be done soon when the
 * caller wants to stop. */
constexpr size_t mostRanges = 64;
constexpr int32_t mostPages = 256;

int32_t pagesOf(const RangeOrder& order) {
  return order.last - order.first + 1;
}

std::string pagesText(const RangeOrder& order) {
  return std::to_string(order.first) + " to " + std::to_string(order.last);
}

} // namespace

void checkOrder(const Source& source, const RangeOrder& order) {
  if (order.first < 1 || order.last < order.first || order.last > source.pageCount()) {
    throw Failure(CLEFTOR_BAD_RANGE, "\"" + source.path() + "\" has no pages " + pagesText(order) +
                                         ", it has " + std::to_string(source.pageCount()));
  }
  std::error_code ignored;
  if (std::filesystem::equivalent(pathOf(source.path()), pathOf(order.target), ignored)) {
    throw Failure(CLEFTOR_CANNOT_WRITE,
                  "Unable to write \"" + order.target + "\": it is the file that is being split");
  }
}

void writeRange(Source& source, const RangeOrder& order) {
  AtomicFile file(order.target);
  try {
    RangeBuilder(source, {order.first - 1, order.last - 1}, order.settings, file).write();
  } catch (const Failure&) {
    throw;
  } catch (const std::bad_alloc&) {
    throw;
  } catch (const std::exception& error) {
    throw Failure(CLEFTOR_DAMAGED, "Unable to copy pages " + pagesText(order) + " of \"" +
                                       source.path() + "\": " + error.what());
  }
  if (source.isCut()) {
    throw Failure(CLEFTOR_DAMAGED, "Unable to copy pages " + pagesText(order) + " of \"" +
                                       source.path() + "\": the file became shorter meanwhile");
  }
  file.keep();
  source.letGoOfPages(order.first - 1, order.last - 1);
  source.forgetWarnings();
}

RangeWriter::RangeWriter() : m_thread(&RangeWriter::work, this) {}

RangeWriter::~RangeWriter() {
  {
    const std::lock_guard lock(m_mutex);
    m_isEnding = true;
  }
  m_changed.notify_all();
  m_thread.join();
}

void RangeWriter::hand(std::shared_ptr<Source> source, RangeOrder order) {
  put({std::move(source), std::move(order)});
}

void RangeWriter::release(std::shared_ptr<Source> source) {
  put({std::move(source), {}});
}

/** A range that is longer than the whole room waits alone. */
bool RangeWriter::hasRoomFor(int32_t pages) const {
  return m_waiting.empty() ||
         (m_waiting.size() < mostRanges && m_waitingPages <= mostPages - pages);
}

void RangeWriter::put(Task task) {
  const int32_t pages = task.order ? pagesOf(*task.order) : 0;
  {
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [&] { return hasRoomFor(pages); });
    m_waitingPages += pages;
    m_unfinished += task.order ? 1 : 0;
    m_waiting.push_back(std::move(task));
  }
  m_changed.notify_all();
}

int32_t RangeWriter::drain(std::optional<std::chrono::milliseconds> longest) {
  std::unique_lock lock(m_mutex);
  const auto isDone = [this] { return m_unfinished == 0; };
  if (longest) {
    m_changed.wait_for(lock, *longest, isDone);
  } else {
    m_changed.wait(lock, isDone);
  }
  return m_unfinished;
}

std::optional<FailedRange> RangeWriter::takeFailure() {
  const std::lock_guard lock(m_mutex);
  if (m_failed.empty()) {
    return std::nullopt;
  }
  FailedRange failure = std::move(m_failed.front());
  m_failed.pop_front();
  return failure;
}

int32_t RangeWriter::lastWrittenPage() const {
  const std::lock_guard lock(m_mutex);
  return m_lastWrittenPage;
}

void RangeWriter::fail(RangeOrder order, int32_t code, const std::string& reason) {
  const std::lock_guard lock(m_mutex);
  m_failed.push_back({std::move(order), code, reason});
}

void RangeWriter::perform(Task& task) {
  if (!task.order) {
    return;
  }
  try {
    writeRange(*task.source, *task.order);
    const std::lock_guard lock(m_mutex);
    m_lastWrittenPage = task.order->last;
  } catch (const Failure& failure) {
    fail(std::move(*task.order), failure.code(), failure.what());
  } catch (const std::bad_alloc&) {
    fail(std::move(*task.order), CLEFTOR_OUT_OF_MEMORY, "Out of memory");
  } catch (const std::exception& error) {
    fail(std::move(*task.order), CLEFTOR_DAMAGED, error.what());
  }
}

void RangeWriter::work() {
  std::unique_lock lock(m_mutex);
  for (;;) {
    m_changed.wait(lock, [this] { return m_isEnding || !m_waiting.empty(); });
    if (m_waiting.empty()) {
      return;
    }
    Task task = std::move(m_waiting.front());
    m_waiting.pop_front();
    const bool isRange = task.order.has_value();
    m_waitingPages -= isRange ? pagesOf(*task.order) : 0;
    lock.unlock();
    m_changed.notify_all();
    perform(task);
    task.source.reset();
    lock.lock();
    m_unfinished -= isRange ? 1 : 0;
    m_changed.notify_all();
  }
}

} // namespace cleftor
