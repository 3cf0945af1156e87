// MatchWalker: takes a person from match to match in the page viewer.
#pragma once

#include "engine/match/MatchObserver.h"

#include <QEventLoop>

#include <functional>

namespace folivex {

class PagePane;

/// Handed to JobDriver::ShowMatches(). Each match is shown in the viewer, and the scan stands still
/// until the person goes on; other windows live on meanwhile. Stopping and ending the program end
/// the walk. The viewer must outlive it, and should have the scanned file open.
class MatchWalker : public MatchObserver {
public:
  /// `stopScan` ends a scan that is between two matches (JobDriver::Stop).
  MatchWalker(PagePane& viewer, std::function<void()> stopScan);
  MatchWalker(const MatchWalker&) = delete;
  MatchWalker& operator=(const MatchWalker&) = delete;
  ~MatchWalker() override;

  /// The person wants to end the walk; for a Stop button in another window.
  void stop();

  void onWordCount(int pageIndex, int wordCount) override;
  bool onMatch(int pageIndex, const QString& word, int h, int v) override;

private:
  PagePane& m_viewer;
  std::function<void()> m_stopScan;
  QEventLoop m_wait; ///< while a match is looked at
  bool m_stopped = false;
  int m_matches = 0;
};

} // namespace folivex
