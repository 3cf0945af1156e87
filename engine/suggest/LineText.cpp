#include "engine/suggest/LineText.h"

namespace folivex {

namespace {

constexpr double widestStep = 14; // of a headline

/// How far a word reaches to the next one, for each of its letters and the blank.
double stepOf(const PageSample& sample, const SampleWord& word, const SampleWord& next) {
  return (next.h - word.h) / (1.0 + static_cast<double>(sample.text(word.text).size()));
}

} // namespace

bool continuesLine(const PageSample& sample, std::span<const SampleWord> words, std::size_t word) {
  return !beginsLine(words, word) && stepOf(sample, words[word - 1], words[word]) <= widestStep;
}

QString lineFrom(const PageSample& sample, std::span<const SampleWord> words, int& gap) {
  constexpr double narrowestStep = 9;
  constexpr double widening = 2.5;
  std::size_t count = words.empty() ? 0 : 1;
  double least = widestStep;
  for (; count < words.size() && !beginsLine(words, count); ++count) {
    least = std::min(least, std::max(1.0, stepOf(sample, words[count - 1], words[count])));
  }
  QString line;
  for (std::size_t i = 0; i < count; ++i) {
    if (i > 0) {
      const double step = stepOf(sample, words[i - 1], words[i]);
      if (step > widestStep || (step > narrowestStep && step > widening * least)) {
        gap = gap == 0 ? words[i].h : std::min(gap, words[i].h);
        break;
      }
      line += u' ';
    }
    line += sample.text(words[i].text);
  }
  return line;
}

} // namespace folivex
