#pragma once

#include "RangeBuilder.h"
#include "Source.h"
#include "common/PartFile.h"
#include "pages/Sha256.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace cleftor {

/// Ranges to be written to one file, in their order; pages count from 1 here.
struct RangeOrder {
  std::string target;
  std::vector<pages::PageRange> ranges;
  RangeSettings settings = {};
  std::unique_ptr<common::PartFile> claim = {}; ///< of a target that was reserved
  std::string model = {};                       ///< see common::AsideOptions

  int32_t firstPage() const { return ranges.front().first; }
  int32_t lastPage() const { return ranges.back().last; }
};

/// Refuses pages that the source does not have, and the source itself as the target.
void checkOrder(const Source& source, const RangeOrder& order);

/// What lies at a target now.
struct WrittenFile {
  common::FileIdentity identity;
  std::optional<pages::Sha256> digest; ///< when the settings ask for it
};

/// Writes a range that was checked, whole or not at all; throws Failure or std::bad_alloc.
WrittenFile writeRange(Source& source, RangeOrder& order);

/// A copy of the whole file over the one at `target`: see RepairFile in cleftor.h. Throws alike.
int32_t repairFile(const std::string& path, const std::vector<std::string>& passwords,
                   const std::string& target);

/// A range that was taken over, and its fate.
struct FinishedRange {
  std::string target;
  int32_t firstPage = 0;
  int32_t lastPage = 0;
  int32_t code = 0;
  std::string reason;
  WrittenFile file;
};

/// Writes ranges on a thread of its own. When the caller keeps waiting for it, a second thread
/// joins in, with a source of its own of the same file. Ranges are begun in the order in which they
/// come, and never two with one target at a time, so that the later of those stays. Between hand()
/// and drain() a source belongs to the first thread.
class RangeWriter {
public:
  RangeWriter();

  /// Writes what is waiting, then ends.
  ~RangeWriter();

  RangeWriter(const RangeWriter&) = delete;
  RangeWriter& operator=(const RangeWriter&) = delete;

  /// Waits until there is room for a range of so many pages, or this long; whether there is.
  bool waitForRoom(const std::shared_ptr<Source>& source, int32_t pages,
                   std::optional<std::chrono::milliseconds> longest = {});

  /// Takes a checked range over; waits while as many are waiting as there is room for.
  void hand(std::shared_ptr<Source> source, RangeOrder order);

  /// Waits until every range is written, or this long; how many are left, counted from the oldest
  /// that is not written.
  int32_t drain(std::optional<std::chrono::milliseconds> longest = {});

  /// Frees a source without making the caller wait for it; its file is closed at once. Only when
  /// every range is written.
  void release(std::shared_ptr<Source> source);

  /// The next range in the order of the calls, if it and all before it are done.
  std::optional<FinishedRange> takeFinished();

  /// Last page of the last range that was written, 0 before the first.
  int32_t lastWrittenPage() const;

private:
  struct Task {
    std::shared_ptr<Source> source;
    std::optional<RangeOrder> order; ///< nothing: let go of the source
    int64_t number = 0;              ///< of ranges, from 1 in the order of handing over
  };
  /// What a thread is writing.
  struct Written {
    int64_t number = 0; ///< 0: nothing
    std::string target;
  };

  void work();
  void help(const Source* original, const Source::Ticket& ticket);
  void callHelp(const std::shared_ptr<Source>& source);
  void endHelp();
  bool isBeingWritten(const std::string& target) const;
  bool mayBegin() const;
  void writeFront(std::unique_lock<std::mutex>& lock, Written& mine, Source* source);
  void perform(Source& source, RangeOrder& order, int64_t number);
  void put(Task task);
  bool hasRoomFor(int32_t pages) const;
  bool hasMuchRoom() const;
  bool waitUntil(std::unique_lock<std::mutex>& lock, const std::function<bool()>& holds,
                 std::optional<std::chrono::milliseconds> longest);
  int64_t finishedUpTo() const; ///< the range of this number and all before it are done
  int32_t unfinished() const;

  mutable std::mutex m_mutex;
  std::condition_variable m_toDo; ///< for the threads that write
  std::condition_variable m_done; ///< for the caller
  std::deque<Task> m_waiting;
  int32_t m_waitingPages = 0;
  int64_t m_handed = 0; ///< number of the last range
  Written m_first;
  Written m_second;
  std::map<int64_t, FinishedRange> m_finished; ///< by number, until they are taken
  int64_t m_lastWritten = 0;
  int32_t m_lastWrittenPage = 0;
  bool m_isEnding = false;

  bool m_waitsForRoom = false;         ///< the caller does
  int m_waits = 0;                     ///< of the caller, for the present source
  std::atomic<bool> m_helpEnds{false}; ///< changed under the mutex; opening a source looks at it
  bool m_isHelperOpen = false;         ///< the second thread may have the file open

  std::thread m_thread; ///< last, so that they see the rest complete
  std::thread m_helper;
};

} // namespace cleftor
