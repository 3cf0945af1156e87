#include "engine/match/LineCollector.h"

#include "engine/base/Text.h"
#include "engine/setup/SplitSetup.h"

#include <limits>

namespace folivex {

namespace {

bool isPunctuation(QChar c) {
  return c.isPunct() || c.isSymbol();
}

} // namespace

LineCollector::LineCollector(const SplitSetup& setup)
    : m_wordsPerLine(setup.takenWordsForFileName), m_stopAtH(setup.untilHHPosLessThan),
      m_stopPrefix(setup.firstCharOfWord), m_separator(setup.addBWords) {}

void LineCollector::startLine(LineCollection& line, int v) {
  line.onLine = true;
  line.lineV = v;
  line.wordsOnLine = 0;
}

void LineCollector::beginPage(LineCollection& line, bool thenFirstLine) {
  line.wordsOnLine = 0;
  line.onNextPageLine = line.onLine && thenFirstLine;
  line.onLine = false;
  if (line.onNextPageLine) {
    line.lineV.reset();
    line.text += u'_';
    cutText(line.text, maxCollectedLength);
  }
}

void LineCollector::offer(LineCollection& line, const PlacedWord& word) const {
  if (line.onLine) {
    offerToLine(line, word);
    return;
  }
  if (!line.onNextPageLine) {
    return;
  }
  if (!line.lineV) {
    if (word.text == u" ") {
      return;
    }
    line.lineV = word.v;
  }
  if (word.v == *line.lineV) {
    offerToLine(line, word);
  } else {
    line.wordsOnLine = 0;
    line.onNextPageLine = false;
  }
}

void LineCollector::offerToLine(LineCollection& line, const PlacedWord& word) const {
  if (word.v != line.lineV) {
    line.wordsOnLine = 0;
    return;
  }
  if (line.wordsOnLine >= m_wordsPerLine) {
    return;
  }
  ++line.wordsOnLine;
  const bool stops = (!m_stopPrefix.isEmpty() && word.text.startsWith(m_stopPrefix)) ||
                     (m_stopAtH != 0 && word.h >= m_stopAtH);
  if (stops) {
    line.wordsOnLine = std::numeric_limits<int>::max();
    return;
  }
  append(line.text, word.text);
}

void LineCollector::append(QString& text, QStringView word) const {
  if (!m_separator.isEmpty() && !text.isEmpty()) {
    const QChar last = text.back();
    if (last == u':' || !isPunctuation(last)) {
      text += m_separator;
    }
  }
  text += word;
  cutText(text, maxCollectedLength);
}

} // namespace folivex
