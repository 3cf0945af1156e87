#pragma once

#include "RangeWriter.h"
#include "Source.h"
#include "common/Failure.h"

#include <atomic>
#include <cstdint>
#include <deque>
#include <future>
#include <map>
#include <memory>
#include <optional>
#include <string>

namespace cleftor {

/// The one state of the process: the open source, the settings and how the last range went.
class Splitter {
public:
  /// Bytes to try one after the other.
  using Passwords = std::vector<std::string>;

  static Splitter& instance();

  /// Opens on another thread what open() is then asked for.
  void beginOpening(const std::string& path, const Passwords& passwords);
  void open(const std::string& path, const Passwords& passwords);
  void close();

  int32_t pageCount() const { return m_source ? m_source->pageCount() : 0; }
  int32_t facts() const { return m_source ? m_source->facts() : 0; }

  /// Whether it could be taken: nothing is there, and nobody has it. Throws Failure when it cannot
  /// be told; writing it then fails.
  bool reserve(const std::string& target);
  void release(const std::string& target) { m_claims.erase(target); }

  void split(RangeOrder order, int32_t totalPages);
  void splitAlone(const std::string& path, const Passwords& passwords, RangeOrder order);

  /// Whether ranges are written on a thread of their own; switching it off waits for them.
  void setWriteBehind(bool on);
  /// Whether the opening that was begun has ended, after at most this long.
  bool waitForOpening(std::chrono::milliseconds longest) const;
  /// Whether a range of so many pages is taken over at once, after at most this long.
  bool waitForRoom(int32_t pages, std::chrono::milliseconds longest);
  /// Ranges that are left after this long, or after as long as it takes.
  int32_t drain(std::optional<std::chrono::milliseconds> longest = {});

  /// Takes a range off the list; what is returned, and its texts, stay until the next one is taken.
  const FinishedRange* takeFinished();
  const std::u16string& finishedTarget() const { return m_finishedTarget; }
  const std::u16string& finishedReason() const { return m_finishedReason; }

  void setDigests(bool on) { m_settings.digests = on; }
  void keepBookmarks(bool keep) { m_settings.keepBookmarks = keep; }

  int32_t lastWrittenPage() const;

  /// Result of the last range, 0 before the first.
  int32_t status() const { return m_status; }
  void setStatus(int32_t status) { m_status = status; }

  common::LastError& lastError() { return m_lastError; }

private:
  struct Opening {
    std::string path;
    Passwords passwords;
    std::future<std::shared_ptr<Source>> source;
  };

  /// A target that is promised; without a part it could not be taken, for this reason.
  struct Claim {
    std::unique_ptr<common::PartFile> part;
    int error = 0;
  };

  void prepare(const Source& source, RangeOrder& order);

  std::map<std::string, Claim> m_claims;
  std::shared_ptr<Source> m_source;
  std::optional<Opening> m_opening; ///< never beside a source
  std::atomic<bool> m_stopOpening = false;
  RangeSettings m_settings;
  std::unique_ptr<RangeWriter> m_writer;
  std::deque<FinishedRange> m_leftOver; ///< of a writer that is gone
  std::optional<FinishedRange> m_finished;
  std::u16string m_finishedTarget;
  std::u16string m_finishedReason;
  int32_t m_status = 0;
  int32_t m_lastWrittenPage = 0;
  common::LastError m_lastError;
};

} // namespace cleftor
