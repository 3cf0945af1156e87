#include "app/viewer/MatchWalker.h"

#include "app/viewer/PagePane.h"

#include <QEventLoop>

#include <utility>

namespace folivex {

namespace {

enum Answer : int { GoOn = 1, End = 0 };

} // namespace

MatchWalker::MatchWalker(PagePane& viewer, std::function<void()> stopScan)
    : m_viewer(&viewer), m_stopScan(std::move(stopScan)) {
  m_gone = QObject::connect(&viewer, &QObject::destroyed, [this] {
    m_viewer = nullptr;
    stop();
  });
  viewer.onStop = [this] { stop(); };
  viewer.onNext = [this] {
    if (m_waiting != nullptr) {
      m_waiting->exit(Answer::GoOn);
    }
  };
  viewer.beginWalk();
}

MatchWalker::~MatchWalker() {
  if (m_viewer != nullptr) {
    QObject::disconnect(m_gone);
    m_viewer->onStop = m_viewer->onNext = nullptr;
    m_viewer->endWalk();
  }
}

void MatchWalker::stop() {
  m_stopped = true;
  if (m_waiting != nullptr) {
    m_waiting->exit(Answer::End);
  }
  if (m_stopScan) {
    m_stopScan();
  }
}

void MatchWalker::onWordCount(int pageIndex, int /*wordCount*/) {
  if (m_viewer != nullptr) {
    m_viewer->tellWalk(QStringLiteral("Looking for the next match: page %1").arg(pageIndex + 1));
  }
}

bool MatchWalker::onMatch(int pageIndex, const QString& word, int h, int v) {
  if (m_stopped || m_viewer == nullptr) {
    return false;
  }
  m_viewer->showMatch({pageIndex + 1, word, h, v}, ++m_matches);
  const bool goesOn = waitForPerson();
  if (m_viewer != nullptr) {
    m_viewer->tellWalk(QStringLiteral("Looking for the next match ..."));
  }
  return goesOn;
}

bool MatchWalker::waitForPerson() {
  QEventLoop loop;
  m_waiting = &loop;
  // The program's end leaves the loop with a code that is neither.
  const int answer = loop.exec();
  m_waiting = nullptr;
  return answer == Answer::GoOn && !m_stopped;
}

} // namespace folivex
