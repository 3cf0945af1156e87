// MatchObserver: what the matching engine tells while it scans.
#pragma once

#include <QString>
#include <QStringView>

namespace folivex {

/// Page indexes count from 0. Views are valid during the call only. What an observer leaves out
/// does not concern it.
class MatchObserver {
public:
  virtual ~MatchObserver() = default;

  /// The page's words were extracted and are about to be walked.
  virtual void onWordCount(int /*pageIndex*/, int /*wordCount*/) {}
  /// A start match of a show-only run, at its position (after axes were swapped). Returns whether
  /// to go on; if not, the rest of the page is left and RunState::userStop is set.
  virtual bool onMatch(int /*pageIndex*/, const QString& /*word*/, int /*h*/, int /*v*/) {
    return true;
  }
  /// One word of the page-positions listing.
  virtual void onListedWord(QStringView /*text*/, int /*h*/, int /*v*/) {}
  /// The page that is to be listed has no words.
  virtual void onEmptyPage(int /*pageIndex*/) {}
};

} // namespace folivex
