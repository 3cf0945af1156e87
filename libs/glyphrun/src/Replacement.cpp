// The part of WordAssembler that puts a replacement text in the place of glyphs.

#include "WordAssembler.h"

#include <algorithm>
#include <cmath>

namespace glyphrun {

namespace {

// Runs whose baselines differ by less, in ems, stand on one line.
constexpr double onOneLine = 0.1;

} // namespace

void WordAssembler::capture(std::uint16_t traits, double start, double end) {
  m_captured.push_back({static_cast<std::uint32_t>(m_capturedRuns.size() - 1), start, end,
                        m_capturedGap, (traits & TraitBlank) != 0});
  m_capturedGap = 0;
}

void WordAssembler::beginReplacement(std::u16string text) {
  m_capturing = true;
  m_replacement = std::move(text);
  m_captured.clear();
  m_capturedRuns.clear();
}

void WordAssembler::endReplacement() {
  if (!m_capturing) {
    return;
  }
  m_capturing = false;
  std::vector<char32_t> characters;
  std::size_t blanks = 0;
  const std::u16string text = spelledOut(m_replacement);
  for (std::size_t at = 0; at < text.size();) {
    characters.push_back(takeCodePoint(text, at));
    blanks += (traitsOf(characters.back()) & TraitBlank) != 0;
  }
  if (m_captured.empty() || characters.empty()) {
    return;
  }
  const auto blankGlyphs = static_cast<std::size_t>(
      std::count_if(m_captured.begin(), m_captured.end(),
                    [](const CapturedGlyph& glyph) { return glyph.blank; }));
  m_enteredRun = UINT32_MAX;
  if (characters.size() == m_captured.size()) {
    replaceEach(characters, true);
  } else if (characters.size() - blanks == m_captured.size() - blankGlyphs) {
    replaceEach(characters, false);
  } else {
    spreadEvenly(characters);
  }
  endRun(m_capturedRuns[m_enteredRun].spacing);
}

// Runs and gaps are told again as they came, up to and including what stands before a glyph.
void WordAssembler::enterCaptured(std::size_t glyph, bool gapsPart) {
  const CapturedGlyph& wanted = m_captured[glyph];
  if (wanted.run != m_enteredRun) {
    if (m_enteredRun != UINT32_MAX) {
      endRun(m_capturedRuns[m_enteredRun].spacing);
    }
    m_enteredRun = wanted.run;
    if (gapsPart) {
      beginRun(m_capturedRuns[m_enteredRun].run);
    } else {
      startRun(m_capturedRuns[m_enteredRun].run);
    }
    m_parting = m_parting && (gapsPart || std::abs(m_partingShift) > onOneLine * m_run.em);
  }
  if (gapsPart && wanted.gap != 0) {
    addGap(wanted.gap);
  }
}

void WordAssembler::placeOne(char32_t character, double start, double end) {
  std::u16string text;
  appendCodePoint(text, character);
  place(traitsOf(character), text, start, end);
}

// One character a glyph: what the glyphs show holds for the characters, gaps and all. Blanks may
// stand on one side only.
void WordAssembler::replaceEach(const std::vector<char32_t>& characters, bool blanksDrawn) {
  std::size_t glyph = 0;
  for (const char32_t character : characters) {
    if (!blanksDrawn && (traitsOf(character) & TraitBlank) != 0) {
      closeFragment(true);
      continue;
    }
    while (!blanksDrawn && m_captured[glyph].blank) {
      ++glyph;
    }
    enterCaptured(glyph, true);
    placeOne(character, m_captured[glyph].start, m_captured[glyph].end);
    ++glyph;
  }
}

// Nothing tells which glyph stands for which character, so the characters are spread evenly over
// the glyphs. A gap then stands behind no character for sure: words of a line end at blanks only.
void WordAssembler::spreadEvenly(const std::vector<char32_t>& characters) {
  const double perCharacter =
      static_cast<double>(m_captured.size()) / static_cast<double>(characters.size());
  for (std::size_t i = 0; i < characters.size(); ++i) {
    const double from = static_cast<double>(i) * perCharacter;
    const double to = from + perCharacter;
    const auto first = std::min(static_cast<std::size_t>(from), m_captured.size() - 1);
    const auto last =
        std::clamp(static_cast<std::size_t>(std::ceil(to)) - 1, first, m_captured.size() - 1);
    const CapturedGlyph& a = m_captured[first];
    const CapturedGlyph& b = m_captured[last];
    const double start = a.start + (a.end - a.start) * (from - static_cast<double>(first));
    const double end = b.run != a.run ? a.end
                                      : b.start + (b.end - b.start) *
                                                      std::min(1.0, to - static_cast<double>(last));
    enterCaptured(first, i == 0);
    placeOne(characters[i], start, end);
  }
  // What follows goes on behind the last glyph.
  const CapturedGlyph& final = m_captured.back();
  enterCaptured(m_captured.size() - 1, false);
  if (m_open && !m_parting) {
    m_lastEnd = std::max(m_lastEnd, final.end);
  }
}

} // namespace glyphrun
