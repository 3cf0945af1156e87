// FolderLocks: the folders of a run's outputs, kept from runs that would come between.
#pragma once

#include "engine/base/Operator.h"
#include "engine/base/RunState.h"
#include "platform/FolderLock.h"

#include <QHash>

#include <memory>
#include <vector>

namespace folivex {

/// Locks each folder once, before a run touches it, until release(). Who holds none yet waits as
/// long as it takes; who holds one gives up after a while, so that two runs never wait for each
/// other for ever.
class FolderLocks {
public:
  enum class Outcome {
    Free,    ///< for this run
    Stopped, ///< by the person, while it waited
    Refused  ///< problem() tells why
  };

  FolderLocks(Operator& person, const RunState& state) : m_person(person), m_state(state) {}

  /// What the next ones are locked for, and what other runs are told of this one.
  void begin(platform::LockUse use, const QString& source);

  /// Waits for the folder, which need not exist, and tells who is there.
  Outcome take(const QString& folder) { return take(folder, m_patienceMs); }

  /// The same for the folder of an output, which is made when it is asked for first. Where it was
  /// waited for in vain it is asked again each time, and not waited for.
  Outcome takeFor(const QString& output);

  void release();

  const QString& problem() const { return m_problem; }

  static constexpr int usualPatienceMs = 60'000;
  /// How long one is waited for while others are held.
  void setPatience(int milliseconds) { m_patienceMs = milliseconds; }

private:
  Outcome take(const QString& folder, int patienceMs);
  Outcome wait(platform::FolderLock& lock, const QString& folder, int patienceMs);
  void tellWait(const QString& folder, const platform::FolderLock& lock);

  Operator& m_person;
  const RunState& m_state;
  platform::LockUse m_use = platform::LockUse::Shared;
  QString m_work;
  struct Held {
    QString folder; ///< links followed
    std::unique_ptr<platform::FolderLock> lock;
  };
  std::vector<Held> m_held;
  QHash<QString, bool> m_asked; ///< folders of outputs as they are spelled; whether they are free
  QString m_problem;
  int m_patienceMs = usualPatienceMs;
};

} // namespace folivex
