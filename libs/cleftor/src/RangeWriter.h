#ifndef CLEFTOR_RANGE_WRITER_H
#define CLEFTOR_RANGE_WRITER_H

#include "RangeBuilder.h"
#include "Source.h"

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

namespace cleftor {

/** A range to be written; pages count from 1, both included. */
struct RangeOrder {
  std::string target;
  int32_t first = 0;
  int32_t last = 0;
  RangeSettings settings;
};

/** Refuses pages that the source does not have, and the source itself as the target. */
void checkOrder(const Source& source, const RangeOrder& order);

/** Writes a range that was checked, whole or not at all; throws Failure or std::bad_alloc. */
void writeRange(Source& source, const RangeOrder& order);

/** A range that was taken over and not written. */
struct FailedRange {
  RangeOrder order;
  int32_t code = 0;
  std::string reason;
};

/**
 * Writes ranges on a thread of its own, in the order in which they come, so that of two with one
 * target the later stays. Between hand() and drain() the source belongs to that thread.
 */
class RangeWriter {
public:
  RangeWriter();

  /** Writes what is waiting, then ends. */
  ~RangeWriter();

  RangeWriter(const RangeWriter&) = delete;
  RangeWriter& operator=(const RangeWriter&) = delete;

  /** Takes a checked range over; waits while as many are waiting as there is room for. */
  void hand(std::shared_ptr<Source> source, RangeOrder order);

  /** Waits until every range is written, or this long; how many are left. */
  int32_t drain(std::optional<std::chrono::milliseconds> longest = {});

  /** Frees a source, which takes a while for a large one, without making the caller wait. */
  void release(std::shared_ptr<Source> source);

  /** The failure that has waited longest, if any. */
  std::optional<FailedRange> takeFailure();

  /** Last page of the last range that was written, 0 before the first. */
  int32_t lastWrittenPage() const;

private:
  struct Task {
    std::shared_ptr<Source> source;
    std::optional<RangeOrder> order; /**< nothing: let go of the source */
  };

  void work();
  void perform(Task& task);
  void put(Task task);
  bool hasRoomFor(int32_t pages) const;
  void fail(RangeOrder order, int32_t code, const std::string& reason);

  mutable std::mutex m_mutex;
  std::condition_variable m_changed;
  std::deque<Task> m_waiting;
  int32_t m_waitingPages = 0;
  int32_t m_unfinished = 0; /**< ranges that wait or are being written */
  std::deque<FailedRange> m_failed;
  int32_t m_lastWrittenPage = 0;
  bool m_isEnding = false;
  std::thread m_thread; /**< last, so that it sees the rest complete */
};

} // namespace cleftor

#endif
