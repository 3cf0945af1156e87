// PagePositions: the listing of every word of one page with its position.
#pragma once

#include "engine/base/Operator.h"
#include "engine/match/MatchObserver.h"
#include "platform/TextFile.h"

namespace folivex {

/// The listing's path: "page_positions.txt" in the temporary folder, or in the current folder when
/// there is none.
QString pagePositionsPath(const QString& temporaryFolder);

/// Writes the listing while the matching engine walks the page in its listing mode.
class PagePositions : public MatchObserver {
public:
  explicit PagePositions(Operator& person) : m_person(person) {}

  /// Deletes an old listing and writes the head of a new one; `page` counts from 1. Empty, or the
  /// message to show.
  QString open(const QString& path, const QString& source, int page);
  /// Adds what there is to say when no word was listed, and closes. False when it could not be
  /// written whole.
  bool close();

  void onListedWord(QStringView text, int h, int v) override;
  void onEmptyPage(int pageIndex) override;

private:
  Operator& m_person;
  platform::TextWriter m_file;
  int m_wordCount = 0;
};

} // namespace folivex
