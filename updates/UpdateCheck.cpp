#include "updates/UpdateCheck.h"

#include "updates/UpdateLibrary.h"

#include <QUrl>

#include <chrono>
#include <utility>

namespace folivex {

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
  m_threads.clear(); // waits for them: they post their results to this
}

void UpdateCheck::keepSettings(const UpdateSettings& settings) {
  UpdateSettings kept = settings;
  kept.lastCheck = this->settings().lastCheck;
  storeSettings(kept, m_memory);
}

bool UpdateCheck::isDue() const {
  return isCheckDue(settings(), m_surroundings.now());
}

void UpdateCheck::stop() {
  if (m_isStopped) {
    *m_isStopped = true;
  }
  m_isStopped.reset();
  m_onResult = nullptr;
}

void UpdateCheck::start(const QString& address, OnResult onResult) {
  stop();
  std::erase_if(m_threads, [](const std::future<void>& thread) {
    return thread.wait_for(std::chrono::seconds(0)) == std::future_status::ready;
  });
  if (!m_library) {
    m_library = std::make_unique<UpdateLibrary>();
  }
  m_isStopped = std::make_shared<std::atomic<bool>>(false);
  m_onResult = std::move(onResult);
  const QString encoded = QString::fromLatin1(QUrl(address).toEncoded());
  m_threads.push_back(std::async(std::launch::async, [this, encoded, isStopped = m_isStopped,
                                                      own = m_surroundings] {
    const UpdatesRequest request = {utf16(encoded),          utf16(own.ownVersion),
                                    utf16(own.certificates), own.connectSeconds,
                                    own.totalSeconds,        askStopped,
                                    isStopped.get()};
    const UpdateResult result = m_library->loaded ? ask(*m_library, request, own.ownVersion)
                                                  : failedResult(m_library->errorDetail);
    QMetaObject::invokeMethod(
        &m_home, [this, isStopped, result] { finish(isStopped, result); }, Qt::QueuedConnection);
  }));
}

void UpdateCheck::finish(const Stop& ofRun, const UpdateResult& result) {
  if (m_isStopped != ofRun) {
    return; // stopped, or another one was started since
  }
  if (result.outcome != UpdateOutcome::Failed) {
    UpdateSettings settings = this->settings();
    settings.lastCheck = m_surroundings.now();
    storeSettings(settings, m_memory);
  }
  m_isStopped.reset();
  if (const OnResult onResult = std::exchange(m_onResult, nullptr)) {
    onResult(result);
  }
}

} // namespace folivex
