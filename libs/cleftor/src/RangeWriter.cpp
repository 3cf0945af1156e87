#include "RangeWriter.h"

#include "cleftor/cleftor.h"
#include "common/AsideFile.h"
#include "common/Failure.h"
#include "common/Paths.h"

#include <algorithm>
#include <exception>
#include <filesystem>
#include <new>
#include <system_error>
#include <utility>

namespace cleftor {

using common::Failure;
using common::pathOf;

namespace {

/// What may wait: enough to even out large and small ranges, little enough to be done soon when the
/// caller wants to stop.
constexpr size_t mostRanges = 64;
constexpr int32_t mostPages = 256;

/// A caller that found no room goes on when half of it is free: to wake it for each range would
/// cost more than many ranges do.
constexpr size_t fewRanges = mostRanges / 2;
constexpr int32_t fewPages = mostPages / 2;

/// So often must the caller have waited before a second thread opens the source once more.
constexpr int waitsForHelp = 12;

/// On many systems names that differ in case alone lead to one file.
bool isSameTarget(const std::string& one, const std::string& other) {
  const auto lower = [](char ch) { return ch >= 'A' && ch <= 'Z' ? ch | 0x20 : ch; };
  return std::equal(one.begin(), one.end(), other.begin(), other.end(),
                    [&](char left, char right) { return lower(left) == lower(right); });
}

/// What an order weighs while it waits; one too many stands for any number.
int32_t pagesOf(const RangeOrder& order) {
  int32_t pages = 0;
  for (const auto& [first, last] : order.ranges) {
    pages = std::min(pages + std::min(last - first, mostPages) + 1, mostPages + 1);
  }
  return pages;
}

std::string pagesText(const pages::PageRange& range) {
  return std::to_string(range.first) + " to " + std::to_string(range.last);
}

std::string pagesText(const RangeOrder& order) {
  std::string text = pagesText(order.ranges.front());
  if (order.ranges.size() > 1) {
    text += " and " + std::to_string(order.ranges.size() - 1) + " more ranges";
  }
  return text;
}

} // namespace

void checkOrder(const Source& source, const RangeOrder& order) {
  if (order.ranges.empty()) {
    throw Failure(CLEFTOR_BAD_RANGE, "No pages were asked for");
  }
  for (const pages::PageRange& range : order.ranges) {
    if (range.first < 1 || range.last < range.first || range.last > source.pageCount()) {
      throw Failure(CLEFTOR_BAD_RANGE, "\"" + source.path() + "\" has no pages " +
                                           pagesText(range) + ", it has " +
                                           std::to_string(source.pageCount()));
    }
  }
  std::error_code ignored;
  const bool isFree = order.claim != nullptr;
  if (!isFree &&
      std::filesystem::equivalent(pathOf(source.path()), pathOf(order.target), ignored)) {
    throw Failure(CLEFTOR_CANNOT_WRITE,
                  "Unable to write \"" + order.target + "\": it is the file that is being split");
  }
}

WrittenFile writeRange(Source& source, RangeOrder& order) {
  std::vector<pages::PageRange> indexes;
  for (const auto& [first, last] : order.ranges) {
    indexes.push_back({first - 1, last - 1});
  }
  common::AsideFile file(order.target, {.claim = std::move(order.claim), .model = order.model});
  try {
    source.makeRoom();
    RangeBuilder(source, indexes, order.settings, file).write();
  } catch (const Failure&) {
    throw;
  } catch (const std::bad_alloc&) {
    throw;
  } catch (const std::exception& error) {
    throw Failure(CLEFTOR_DAMAGED, "Unable to copy pages " + pagesText(order) + " of \"" +
                                       source.path() + "\": " + error.what());
  }
  // Last of all: what was read until now was read from the file that was opened.
  if (source.isChanged()) {
    throw Failure(CLEFTOR_SOURCE_CHANGED, "Unable to copy pages " + pagesText(order) + " of \"" +
                                              source.path() +
                                              "\": the file was changed or replaced meanwhile");
  }
  WrittenFile written;
  if (order.settings.digests) {
    written.digest = pages::sha256Of(file);
  }
  written.identity = file.keep();
  for (const auto& [first, last] : indexes) {
    source.letGoOfPages(first, last);
  }
  source.forgetWarnings();
  return written;
}

int32_t repairFile(const std::string& path, const std::vector<std::string>& passwords,
                   const std::string& target) {
  Source source(path, passwords);
  RangeOrder order{.target = target,
                   .ranges = {{1, source.pageCount()}},
                   .settings = {.keepBookmarks = true},
                   .model = target};
  checkOrder(source, order);
  writeRange(source, order);
  return source.pageCount();
}

RangeWriter::RangeWriter() : m_thread(&RangeWriter::work, this) {}

RangeWriter::~RangeWriter() {
  drain();
  endHelp();
  {
    const std::lock_guard lock(m_mutex);
    m_isEnding = true;
  }
  m_toDo.notify_all();
  m_thread.join();
  if (m_helper.joinable()) {
    m_helper.join();
  }
}

void RangeWriter::hand(std::shared_ptr<Source> source, RangeOrder order) {
  put({std::move(source), std::move(order)});
}

void RangeWriter::release(std::shared_ptr<Source> source) {
  endHelp();
  put({std::move(source), {}});
}

/// A range that is longer than the whole room waits alone.
bool RangeWriter::hasRoomFor(int32_t pages) const {
  return m_waiting.empty() ||
         (m_waiting.size() < mostRanges && m_waitingPages <= mostPages - pages);
}

bool RangeWriter::hasMuchRoom() const {
  return m_waiting.empty() || (m_waiting.size() <= fewRanges && m_waitingPages <= fewPages);
}

bool RangeWriter::waitForRoom(const std::shared_ptr<Source>& source, int32_t pages,
                              std::optional<std::chrono::milliseconds> longest) {
  bool isSlow = false;
  bool hasRoom = true;
  {
    std::unique_lock lock(m_mutex);
    if (!hasRoomFor(pages)) {
      isSlow = ++m_waits == waitsForHelp;
      m_waitsForRoom = true;
      waitUntil(
          lock, [this] { return hasMuchRoom(); }, longest);
      m_waitsForRoom = false;
      hasRoom = hasRoomFor(pages);
    }
  }
  if (isSlow) {
    callHelp(source);
  }
  return hasRoom;
}

void RangeWriter::put(Task task) {
  const int32_t pages = task.order ? pagesOf(*task.order) : 0;
  waitForRoom(task.source, pages);
  {
    const std::lock_guard lock(m_mutex);
    m_waiting.push_back(std::move(task));
    m_waitingPages += pages;
    if (m_waiting.back().order) {
      m_waiting.back().number = ++m_handed;
    }
  }
  m_toDo.notify_all();
}

/// Opening a file again is worth its while only where much is left to be written.
void RangeWriter::callHelp(const std::shared_ptr<Source>& source) {
  if (std::thread::hardware_concurrency() < 2) {
    return;
  }
  if (m_helper.joinable()) {
    m_helper.join();
  }
  m_helpEnds = false;
  m_isHelperOpen = true;
  try {
    m_helper = std::thread(&RangeWriter::help, this, source.get(), source->ticket());
  } catch (const std::system_error&) {
    m_isHelperOpen = false; // the first thread writes what the second does not
  }
}

/// Waits for the file alone: to free a large source takes a while. Nothing may be left to write.
void RangeWriter::endHelp() {
  std::unique_lock lock(m_mutex);
  m_helpEnds = true;
  m_waits = 0;
  m_toDo.notify_all();
  m_done.wait(lock, [this] { return !m_isHelperOpen; });
}

int64_t RangeWriter::finishedUpTo() const {
  int64_t before = m_handed;
  for (const Task& task : m_waiting) {
    if (task.order) {
      before = task.number - 1;
      break;
    }
  }
  for (const Written* written : {&m_first, &m_second}) {
    if (written->number != 0) {
      before = std::min(before, written->number - 1);
    }
  }
  return before;
}

int32_t RangeWriter::unfinished() const {
  return static_cast<int32_t>(m_handed - finishedUpTo());
}

bool RangeWriter::waitUntil(std::unique_lock<std::mutex>& lock, const std::function<bool()>& holds,
                            std::optional<std::chrono::milliseconds> longest) {
  if (longest) {
    return m_done.wait_for(lock, *longest, holds);
  }
  m_done.wait(lock, holds);
  return true;
}

int32_t RangeWriter::drain(std::optional<std::chrono::milliseconds> longest) {
  std::unique_lock lock(m_mutex);
  waitUntil(
      lock, [this] { return unfinished() == 0; }, longest);
  return unfinished();
}

std::optional<FinishedRange> RangeWriter::takeFinished() {
  const std::lock_guard lock(m_mutex);
  if (m_finished.empty() || m_finished.begin()->first > finishedUpTo()) {
    return std::nullopt;
  }
  FinishedRange finished = std::move(m_finished.begin()->second);
  m_finished.erase(m_finished.begin());
  return finished;
}

int32_t RangeWriter::lastWrittenPage() const {
  const std::lock_guard lock(m_mutex);
  return m_lastWrittenPage;
}

void RangeWriter::perform(Source& source, RangeOrder& order, int64_t number) {
  FinishedRange finished{.target = order.target,
                         .firstPage = order.firstPage(),
                         .lastPage = order.lastPage(),
                         .reason = {},
                         .file = {}};
  try {
    finished.file = writeRange(source, order);
  } catch (const Failure& failure) {
    finished.code = failure.code();
    finished.reason = failure.what();
  } catch (const std::bad_alloc&) {
    finished.code = CLEFTOR_OUT_OF_MEMORY;
    finished.reason = "Out of memory";
  } catch (const std::exception& error) {
    finished.code = CLEFTOR_DAMAGED;
    finished.reason = error.what();
  }
  const std::lock_guard lock(m_mutex);
  if (finished.code == CLEFTOR_OK && number > m_lastWritten) {
    m_lastWritten = number;
    m_lastWrittenPage = finished.lastPage;
  }
  m_finished.emplace(number, std::move(finished));
}

bool RangeWriter::isBeingWritten(const std::string& target) const {
  return (m_first.number != 0 && isSameTarget(m_first.target, target)) ||
         (m_second.number != 0 && isSameTarget(m_second.target, target));
}

/// Whether the range in front need not wait for an earlier one with its target.
bool RangeWriter::mayBegin() const {
  return !m_waiting.empty() &&
         !(m_waiting.front().order && isBeingWritten(m_waiting.front().order->target));
}

/// Takes the front off; the lock is given back while it is written from `source`.
void RangeWriter::writeFront(std::unique_lock<std::mutex>& lock, Written& mine, Source* source) {
  Task task = std::move(m_waiting.front());
  m_waiting.pop_front();
  if (task.order) {
    m_waitingPages -= pagesOf(*task.order);
    mine = {task.number, task.order->target};
  }
  const bool wakesCaller = m_waitsForRoom && hasMuchRoom();
  const bool wakesOther = mayBegin();
  lock.unlock();
  if (wakesCaller) {
    m_done.notify_all();
  }
  if (wakesOther) {
    m_toDo.notify_all();
  }
  if (task.order) {
    perform(source == nullptr ? *task.source : *source, *task.order, task.number);
  }
  task.source.reset();
  lock.lock();
  mine.number = 0;
  if (unfinished() == 0) {
    m_done.notify_all();
  } else if (mayBegin()) {
    m_toDo.notify_all(); // it may have waited for this target
  }
}

void RangeWriter::work() {
  std::unique_lock lock(m_mutex);
  for (;;) {
    m_toDo.wait(lock, [this] { return mayBegin() || (m_isEnding && m_waiting.empty()); });
    if (m_waiting.empty()) {
      return;
    }
    writeFront(lock, m_first, nullptr);
  }
}

void RangeWriter::help(const Source* original, const Source::Ticket& ticket) {
  const std::unique_ptr<Source> source = Source::of(ticket, m_helpEnds);
  std::unique_lock lock(m_mutex);
  while (source && !m_helpEnds) {
    const bool hasWork =
        mayBegin() && m_waiting.front().order && m_waiting.front().source.get() == original;
    if (hasWork) {
      writeFront(lock, m_second, source.get());
    } else {
      m_toDo.wait(lock);
    }
  }
  if (source) {
    source->letGoOfFile();
  }
  m_isHelperOpen = false;
  m_done.notify_all();
}

} // namespace cleftor
