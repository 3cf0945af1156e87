// WordRing: the last words of a job, for search texts of several words.
#pragma once

#include "engine/match/RangeTexts.h"

#include <QString>
#include <QStringView>

#include <vector>

namespace folivex {

/// Keeps as many words as its pattern has and tells whether they, joined by blanks, are the
/// pattern. The words outlive the page, so a pattern may begin on one page and end on the next.
/// Used only for patterns of more than one word; with a shorter one it holds nothing and never
/// matches.
class WordRing {
public:
  WordRing(const QString& pattern, Qt::CaseSensitivity sensitivity);

  bool isUsed() const { return !m_slots.empty(); }
  /// The word becomes the newest one; the oldest makes room.
  void push(QStringView word);
  /// Whether the joined words are the pattern. Joined words count to maxCollectedLength characters,
  /// and a word that holds a blank itself counts as it stands.
  bool matches() const;
  /// The words, oldest first, joined by one blank, cut to maxCollectedLength characters.
  QString joinedText() const;

private:
  const QString& slot(std::size_t age) const { return m_slots[(m_oldest + age) % m_slots.size()]; }

  QString m_pattern;
  Qt::CaseSensitivity m_sensitivity;
  std::vector<QString> m_slots;
  std::size_t m_oldest = 0;
  std::size_t m_filled = 0;
};

} // namespace folivex
