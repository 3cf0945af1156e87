#include "engine/match/WordRing.h"

#include "engine/base/Text.h"
#include "engine/match/MatchText.h"

#include <algorithm>

namespace folivex {

WordRing::WordRing(const QString& pattern, Qt::CaseSensitivity sensitivity)
    : m_pattern(pattern), m_sensitivity(sensitivity) {
  // Joined words are never longer than this, so such a pattern needs no words kept.
  if (pattern.size() > maxCollectedLength) {
    return;
  }
  if (const int words = wordCount(pattern); words > 1) {
    m_slots.resize(static_cast<std::size_t>(words));
  }
}

void WordRing::push(QStringView word) {
  if (m_slots.empty()) {
    return;
  }
  // Assigned in place: a slot keeps its memory from word to word.
  if (m_filled < m_slots.size()) {
    m_slots[m_filled++].setUnicode(word.data(), word.size());
    return;
  }
  m_slots[m_oldest].setUnicode(word.data(), word.size());
  m_oldest = (m_oldest + 1) % m_slots.size();
}

bool WordRing::matches() const {
  if (m_filled == 0) {
    return false;
  }
  // Compared slot by slot against the pattern: joining every word's ring would cost more than the
  // scan, and nearly always the first slot already differs.
  QStringView rest = m_pattern;
  qsizetype room = maxCollectedLength;
  for (std::size_t age = 0; age < m_filled; ++age) {
    if (age > 0 && room > 0) {
      if (!rest.startsWith(u' ')) {
        return false;
      }
      rest = rest.sliced(1);
      --room;
    }
    const QStringView word = QStringView(slot(age)).left(room);
    if (word.size() > rest.size() || !equalTexts(rest.first(word.size()), word, m_sensitivity)) {
      return false;
    }
    rest = rest.sliced(word.size());
    room -= word.size();
  }
  return rest.isEmpty();
}

QString WordRing::joinedText() const {
  QString joined;
  for (std::size_t age = 0; age < m_filled && joined.size() < maxCollectedLength; ++age) {
    if (age > 0) {
      joined += u' ';
    }
    joined += slot(age);
  }
  cutText(joined, maxCollectedLength);
  return joined;
}

} // namespace folivex
