#include "updates/UpdateCheck.h"

#include "updates/UpdateLibrary.h"

#include <QUrl>

#include <atomic>
#include <thread>

namespace folivex {

/// One question to the server. The thread only touches what stands here.
struct UpdateCheck::Run {
  int number = 0; ///< tells a late result from the one that is waited for
  QString address;
  QString ownVersion;
  QString certificates;
  int connectSeconds = 0;
  int totalSeconds = 0;
  std::atomic<bool> isStopped = false;
  std::atomic<bool> isEnded = false;
  std::thread thread;
};

namespace {

const char16_t* utf16(const QString& text) {
  return reinterpret_cast<const char16_t*>(text.utf16());
}

int32_t askStopped(void* context) {
  return *static_cast<const std::atomic<bool>*>(context) ? 1 : 0;
}

UpdateResult ask(const UpdateLibrary& library, UpdatesRequest request, const QString& ownVersion) {
  UpdatesDocument document = {};
  if (library.UpdatesFetch(&request, &document) != UPDATES_OK) {
    return failedResult(QString::fromUtf16(library.UpdatesLastErrorText()));
  }
  UpdateOffer offer;
  const QString problem = readOffer(QByteArray(document.bytes, document.size), offer);
  return problem.isEmpty() ? resultOf(offer, ownVersion) : failedResult(problem);
}

} // namespace

UpdateCheck::UpdateCheck(QSettings& memory, UpdateSurroundings surroundings)
    : m_memory(memory), m_surroundings(std::move(surroundings)) {}

UpdateCheck::~UpdateCheck() {
  stop();
  for (const auto& run : m_runs) {
    run->thread.join();
  }
}

void UpdateCheck::keepSettings(const UpdateSettings& settings) {
  UpdateSettings kept = settings;
  kept.lastCheck = this->settings().lastCheck;
  storeSettings(kept, m_memory);
}

bool UpdateCheck::isDue() const {
  return isCheckDue(settings(), m_surroundings.now());
}

bool UpdateCheck::isRunning() const {
  return m_current != nullptr;
}

void UpdateCheck::stop() {
  if (m_current) {
    m_current->isStopped = true;
  }
  m_current.reset();
  m_onResult = nullptr;
}

void UpdateCheck::start(const QString& address, OnResult onResult) {
  stop();
  dropEnded();
  if (!m_library) {
    m_library = std::make_unique<UpdateLibrary>();
  }
  const auto run = std::make_shared<Run>();
  run->number = ++m_lastNumber;
  run->address = QString::fromLatin1(QUrl(address).toEncoded());
  run->ownVersion = m_surroundings.ownVersion;
  run->certificates = m_surroundings.certificates;
  run->connectSeconds = m_surroundings.connectSeconds;
  run->totalSeconds = m_surroundings.totalSeconds;
  m_current = run;
  m_onResult = std::move(onResult);
  run->thread = std::thread([this, run = run.get()] {
    const UpdatesRequest request = {utf16(run->address),      utf16(run->ownVersion),
                                    utf16(run->certificates), run->connectSeconds,
                                    run->totalSeconds,        askStopped,
                                    &run->isStopped};
    const UpdateResult result = m_library->loaded ? ask(*m_library, request, run->ownVersion)
                                                  : failedResult(m_library->errorDetail);
    QMetaObject::invokeMethod(
        &m_home, [this, number = run->number, result] { finish(number, result); },
        Qt::QueuedConnection);
    run->isEnded = true;
  });
  m_runs.push_back(run);
}

void UpdateCheck::finish(int number, const UpdateResult& result) {
  if (!m_current || m_current->number != number) {
    return; // stopped, or another one was started since
  }
  if (result.outcome != UpdateOutcome::Failed) {
    UpdateSettings settings = this->settings();
    settings.lastCheck = m_surroundings.now();
    storeSettings(settings, m_memory);
  }
  m_current.reset();
  const OnResult onResult = std::exchange(m_onResult, nullptr);
  if (onResult) {
    onResult(result);
  }
}

void UpdateCheck::dropEnded() {
  std::erase_if(m_runs, [](const std::shared_ptr<Run>& run) {
    if (!run->isEnded) {
      return false;
    }
    run->thread.join();
    return true;
  });
}

} // namespace folivex
