#include "app/viewer/MatchWalker.h"

#include "app/viewer/PagePane.h"

#include <utility>

namespace folivex {

namespace {

enum Answer : int { GoOn = 1, End = 0 };

} // namespace

MatchWalker::MatchWalker(PagePane& viewer, std::function<void()> stopScan)
    : m_viewer(viewer), m_stopScan(std::move(stopScan)) {
  viewer.onStop = [this] { stop(); };
  viewer.onNext = [this] { m_wait.exit(Answer::GoOn); };
  viewer.beginWalk();
}

MatchWalker::~MatchWalker() {
  m_viewer.onStop = m_viewer.onNext = nullptr;
  m_viewer.endWalk();
}

void MatchWalker::stop() {
  m_stopped = true;
  m_wait.exit(Answer::End);
  m_stopScan();
}

void MatchWalker::onWordCount(int pageIndex, int /*wordCount*/) {
  m_viewer.tellWalk(QStringLiteral("Looking for the next match: page %1").arg(pageIndex + 1));
}

bool MatchWalker::onMatch(int pageIndex, const QString& word, int h, int v) {
  if (m_stopped) {
    return false;
  }
  m_viewer.showMatch({pageIndex + 1, word, h, v}, ++m_matches);
  // The program's end leaves the loop with a code that is neither.
  const int answer = m_wait.exec();
  m_viewer.tellWalk(QStringLiteral("Looking for the next match ..."));
  return answer == Answer::GoOn && !m_stopped;
}

} // namespace folivex
