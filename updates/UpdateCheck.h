// UpdateCheck: asks the server for the newest version, without anybody waiting for it.
#pragma once

#include "updates/UpdateOffer.h"
#include "updates/UpdateSettings.h"

#include <QObject>

#include <atomic>
#include <functional>
#include <future>
#include <memory>
#include <vector>

namespace folivex {

class UpdateLibrary;

/// What a check needs to know of the program that it runs in.
struct UpdateSurroundings {
  QString ownVersion;
  std::function<QDateTime()> now = [] { return QDateTime::currentDateTimeUtc(); };
  QString certificates = {}; ///< see UpdatesRequest; empty: the system's
  int connectSeconds = 0;    ///< 0: as the library has it
  int totalSeconds = 0;
};

/// Belongs to one thread, which must handle events: results are delivered there, out of its event
/// loop. The asking itself is done on a thread of its own.
class UpdateCheck {
public:
  using OnResult = std::function<void(const UpdateResult&)>;

  /// `memory` must outlive this.
  UpdateCheck(QSettings& memory, UpdateSurroundings surroundings);
  /// Stops what runs; waits for its thread, at most about a second.
  ~UpdateCheck();
  UpdateCheck(const UpdateCheck&) = delete;
  UpdateCheck& operator=(const UpdateCheck&) = delete;

  UpdateSettings settings() const { return loadSettings(m_memory); }
  /// Keeps all but the time of the last check, which is a fact and no choice.
  void keepSettings(const UpdateSettings& settings);

  /// Whether the program is to check now, unasked.
  bool isDue() const;

  /// Asks at `address` (which need not be the one of the settings) and tells the result once,
  /// unless stopped before. A check that still runs is stopped. An answer that tells a version is
  /// remembered as the last check.
  void start(const QString& address, OnResult onResult);
  /// No result will be told. Does not wait.
  void stop();
  bool isRunning() const { return m_isStopped != nullptr; }

private:
  using Stop = std::shared_ptr<std::atomic<bool>>;

  void finish(const Stop& ofRun, const UpdateResult& result);

  QSettings& m_memory;
  UpdateSurroundings m_surroundings;
  std::unique_ptr<UpdateLibrary> m_library; ///< loaded at the first check
  Stop m_isStopped; ///< of the check that runs, which it tells from earlier ones; null without
  std::vector<std::future<void>> m_threads;
  OnResult m_onResult;
  QObject m_home; ///< results are posted to it, so that none comes after this is gone
};

} // namespace folivex
