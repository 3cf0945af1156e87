#include "engine/output/FolderLocks.h"

#include "platform/FileLocks.h"
#include "platform/Paths.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QThread>

#include <algorithm>

namespace folivex {

namespace {

constexpr int askAgainMs = 20;
/// Runs that come or go are in each other's way for a moment, which nobody needs to be told.
constexpr int stepsUntold = 5;

QString whoIsThere(const platform::FolderLock& lock) {
  return lock.others().isEmpty() ? QStringLiteral("another run") : lock.others();
}

} // namespace

void FolderLocks::begin(platform::LockUse use, const QString& source) {
  m_use = use;
  m_work = source;
  m_asked.clear();
}

void FolderLocks::release() {
  m_held.clear();
  m_asked.clear();
}

FolderLocks::Outcome FolderLocks::take(const QString& folder, int patienceMs) {
  m_problem.clear();
  const QString place =
      QFileInfo(folder.isEmpty() ? QStringLiteral(".") : folder).canonicalFilePath();
  if (place.isEmpty()) {
    return Outcome::Free; // there is no such folder: the writing tells
  }
  const auto known = std::ranges::find(m_held, place, &Held::folder);
  if (known != m_held.end()) {
    if (m_use == platform::LockUse::Shared || known->lock->use() == m_use) {
      return Outcome::Free;
    }
    m_held.erase(known);
  }
  auto lock = std::make_unique<platform::FolderLock>(place, m_use, m_work);
  const Outcome outcome = wait(*lock, folder, patienceMs);
  if (outcome == Outcome::Free) {
    platform::removeDeadParts(place);
    m_held.push_back({place, std::move(lock)});
  }
  return outcome;
}

FolderLocks::Outcome FolderLocks::wait(platform::FolderLock& lock, const QString& folder,
                                       int patienceMs) {
  QElapsedTimer waited;
  waited.start();
  for (int step = 0;; ++step) {
    switch (lock.take()) {
    case platform::FolderLock::State::Held:
    case platform::FolderLock::State::NoPlace: // the writing tells
      return Outcome::Free;
    case platform::FolderLock::State::Refused:
      m_problem = lock.problem();
      return Outcome::Refused;
    case platform::FolderLock::State::Busy:
      break;
    }
    if (!m_held.empty() && waited.hasExpired(patienceMs)) {
      m_problem = QStringLiteral("%1: another run is still at work in this folder: %2")
                      .arg(folder, whoIsThere(lock));
      return Outcome::Refused;
    }
    if (step == stepsUntold) {
      tellWait(folder, lock);
    }
    m_person.handlePendingEvents();
    if (m_state.mustEnd()) {
      return Outcome::Stopped;
    }
    QThread::msleep(askAgainMs);
  }
}

void FolderLocks::tellWait(const QString& folder, const platform::FolderLock& lock) {
  const QString text =
      QStringLiteral("%1: waits until this run may %2: %3")
          .arg(folder,
               m_use == platform::LockUse::Alone ? QStringLiteral("have this folder alone")
                                                 : QStringLiteral("write into this folder"),
               whoIsThere(lock));
  m_person.found(RunFinding::FolderWait, text);
  m_person.progress({text, 0, 0, 0});
}

FolderLocks::Outcome FolderLocks::takeFor(const QString& output) {
  const QString folder = platform::folderOf(output);
  const auto asked = m_asked.constFind(folder);
  if (asked != m_asked.constEnd() && *asked) {
    return Outcome::Free;
  }
  // A folder that cannot be made shows when the output is written, with the reason.
  if (!folder.isEmpty()) {
    QDir().mkpath(folder);
  }
  const Outcome outcome = take(folder, asked == m_asked.constEnd() ? m_patienceMs : 0);
  m_asked.insert(folder, outcome == Outcome::Free);
  return outcome;
}

} // namespace folivex
