// Reads the pages that will be asked for next on other threads.
#pragma once

#include "PageReader.h"

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <stop_token>
#include <string>
#include <thread>
#include <vector>

namespace glyphrun {

/// Each thread has a document and a context of its own. They run only so far ahead of the pages
/// taken, in pages and in bytes, and work on nothing that the caller has begun to read itself. Used
/// by one thread; a stop and the destructor end the work, opening the file too, within its next
/// allocation.
class ReadAhead {
public:
  static constexpr int mostThreads = 64;

  /// The threads open the file at once. `pageCount` is the caller's; a thread that finds another
  /// number in the file stands aside. Reading begins with page `first` (from 0), or behind the
  /// first page that is taken when it is -1. `pages` saves the threads the search for the pages.
  ReadAhead(std::u16string path, std::u16string password, std::int32_t pageCount,
            std::int32_t first, std::shared_ptr<const PageList> pages, int threads,
            double wordSpacing, std::stop_token stop = {});
  ~ReadAhead();
  ReadAhead(const ReadAhead&) = delete;
  ReadAhead& operator=(const ReadAhead&) = delete;

  /// The page `index` (from 0), if a thread has read it or is at it; waits for the latter. False
  /// means that the caller reads the page itself. Either way the threads go on with the pages
  /// behind it.
  bool take(std::int32_t index, PageWords& out);
  /// What was read with another factor is dropped.
  void setWordSpacing(double factor);

private:
  struct Slot {
    PageWords words;
    bool ready = false;
  };

  void stop();
  void work();
  bool claim(std::unique_lock<std::mutex>& lock, std::int32_t& index, PageWords& words);
  void readClaimedPages(PageReader& reader);
  bool mayClaim() const;
  void restartAt(std::int32_t index);
  static std::size_t bytesOf(const PageWords& words);

  const std::u16string m_path;
  const std::u16string m_password;
  const std::int32_t m_pageCount;
  const std::shared_ptr<const PageList> m_pages;
  const std::int32_t m_window;
  std::atomic<bool> m_stopping{false}; ///< changed under the mutex; the contexts look at it

  std::mutex m_mutex;
  std::condition_variable m_changed;
  // Under the mutex.
  std::map<std::int32_t, Slot> m_slots; ///< claimed pages, read or being read
  std::vector<PageWords> m_spare;       ///< storage to use again
  std::int32_t m_wanted;                ///< the page expected to be asked for next
  std::int32_t m_next;                  ///< the page to claim next
  std::size_t m_bytes = 0;
  std::uint32_t m_generation = 0; ///< raised when claimed pages lose their meaning
  double m_wordSpacing;

  std::vector<std::thread> m_threads;
  std::stop_callback<std::function<void()>> m_onStop;
};

} // namespace glyphrun
