#include "WordAssembler.h"

#include "Fragments.h"
#include "ReadingOrder.h"

#include <algorithm>
#include <cmath>

namespace glyphrun {

namespace {

constexpr double defaultFactor = 1.02;
constexpr double smallestGap = 0.02;
constexpr double widestGap = 4;
constexpr double gapInRun = 0.10;
constexpr double gapBetween = 0.10;
// Text that starts again farther back than this is no kerning.
constexpr double deepestOverlap = 0.25;
// A step back that may still be kerning, or the second drawing of a narrow glyph.
constexpr double slightOverlap = 0.05;
constexpr double boldShift = 0.12;
// Chinese and Japanese lines are justified by gaps of up to this part of an em.
constexpr double widestGlue = 0.25;
constexpr double sliver = 0.1;
// Middle of a lower-case letter, above the baseline.
constexpr double middleHeight = 0.25;
constexpr double uprightSlope = 0.02;
// How far beside its letters a mark may stand, in ems.
constexpr double markReach = 0.3;

std::uint8_t headingOf(Point direction, bool vertical) {
  std::uint8_t heading = HeadingOblique;
  if (std::abs(direction.y) < uprightSlope) {
    heading = direction.x > 0 ? HeadingRight : HeadingLeft;
  } else if (std::abs(direction.x) < uprightSlope) {
    heading = direction.y > 0 ? HeadingDown : HeadingUp;
  }
  return vertical && heading != HeadingOblique
             ? static_cast<std::uint8_t>(heading + HeadingVertical)
             : heading;
}

Point headingOrDirection(std::uint8_t heading, Point direction) {
  return heading < HeadingOblique ? headingVector(heading) : direction;
}

/// Downwards from the baseline, for text that runs along `direction`.
Point acrossOf(Point direction) {
  return {-direction.y, direction.x};
}

/// Narrows [from, to] to where base + t * slope lies within [low, high].
void narrow(double base, double slope, double low, double high, double& from, double& to) {
  if (std::abs(slope) < 1e-9) {
    if (base < low || base > high) {
      to = from - 1;
    }
    return;
  }
  const double a = (low - base) / slope;
  const double b = (high - base) / slope;
  from = std::max(from, std::min(a, b));
  to = std::min(to, std::max(a, b));
}

} // namespace

JoiningTolerance JoiningTolerance::fromFactor(double factor) {
  if (!std::isfinite(factor) || factor <= 0) {
    factor = defaultFactor;
  }
  const double more = factor - defaultFactor;
  return {std::clamp(gapInRun + more, smallestGap, widestGap),
          std::clamp(gapBetween + more, smallestGap, widestGap)};
}

void WordAssembler::beginPage(const Rect& visible, JoiningTolerance tolerance) {
  m_visible = visible;
  m_tolerance = tolerance;
  m_open = m_parting = m_steppedBack = m_keepsEnd = false;
  m_capturing = m_echoing = false;
  m_captured.clear();
  m_capturedRuns.clear();
  m_lastFont = nullptr;
  m_fontOffsets.clear();
  m_pool.clear();
  m_glyphOffsets.clear();
  m_fragments.clear();
  m_unknownGlyphs = m_lostGlyphs = 0;
}

void WordAssembler::beginRun(const GlyphRun& run) {
  if (m_capturing) {
    m_capturedRuns.push_back({run, 0});
    m_capturedGap = 0;
    return;
  }
  if (mayEcho(run)) {
    m_echoing = true;
    m_echoRun = run;
    m_echo.clear();
    m_capturedGap = 0;
    m_current.end = static_cast<float>(m_runStart + m_lastEnd);
    m_parting = true;
    return;
  }
  startRun(run);
}

void WordAssembler::startRun(const GlyphRun& run) {
  m_keepsEnd = false;
  m_runGlyph = m_glyphOffsets.size();
  if (m_open) {
    const double before = m_runStart + m_lastEnd;
    const Point delta = run.origin - m_endPoint - m_currentDirection * run.bridged;
    const double gap = dot(delta, run.direction);
    const double shift = dot(delta, acrossOf(run.direction));
    const double em = std::min(run.em, static_cast<double>(m_current.em));
    const bool sameWay =
        run.vertical == m_currentVertical && dot(run.direction, m_currentDirection) > 0.999;
    const bool continues = sameWay && std::abs(shift) <= sliver * em &&
                           gap <= m_tolerance.between * run.emAlong &&
                           gap >= -deepestOverlap * run.emAlong;
    m_current.end = static_cast<float>(before);
    m_steppedBack = continues && gap < -slightOverlap * run.emAlong;
    m_narrowGap =
        sameWay && std::abs(shift) <= sliver * em && gap > 0 && gap <= widestGlue * run.em;
    m_parting = !continues || m_steppedBack;
    m_partingShift = shift;
    if (!sameWay) {
      closeFragment(false);
    }
    const double width = m_lastEnd - m_lastStart;
    m_lastEnd = -gap;
    m_lastStart = m_lastEnd - width;
  }
  m_run = run;
  m_heading = headingOf(run.direction, run.vertical);
  m_runStart = dot(run.origin, headingOrDirection(m_heading, run.direction));
  const double lift = run.vertical ? 0 : middleHeight * run.em;
  const Point middle = run.origin - acrossOf(run.direction) * lift;
  m_visibleFrom = -1e9;
  m_visibleTo = 1e9;
  narrow(middle.x, run.direction.x, m_visible.left, m_visible.right, m_visibleFrom, m_visibleTo);
  narrow(middle.y, run.direction.y, m_visible.top, m_visible.bottom, m_visibleFrom, m_visibleTo);
}

void WordAssembler::addGap(double gap) {
  if (m_capturing || m_echoing) {
    m_capturedGap += gap;
    return;
  }
  if (!m_open || m_parting) {
    return;
  }
  const bool continues =
      gap <= m_tolerance.inRun * m_run.emAlong && gap >= -deepestOverlap * m_run.emAlong;
  m_steppedBack = continues && gap < -slightOverlap * m_run.emAlong;
  if (continues && !m_steppedBack) {
    return;
  }
  m_narrowGap = gap > 0 && gap <= widestGlue * m_run.em;
  m_current.end = static_cast<float>(m_runStart + m_lastEnd);
  m_parting = true;
  m_partingShift = 0;
}

void WordAssembler::endRun(double spacing) {
  if (m_capturing) {
    m_capturedRuns.back().spacing = spacing;
    return;
  }
  if (m_echoing && endEcho()) {
    return;
  }
  if (m_open && !m_keepsEnd) {
    m_endPoint = m_run.origin + m_run.direction * (m_lastEnd + spacing);
  }
}

void WordAssembler::partLastOfTwo(double spacing) {
  if (m_capturing || m_echoing || !m_open || m_parting || m_runGlyph < m_current.firstGlyph ||
      m_glyphOffsets.size() != m_runGlyph + 2) {
    return;
  }
  const std::u16string text(m_pool.begin() + m_glyphOffsets.back(), m_pool.end());
  if (text.empty()) { // a glyph that means nothing begins no word
    return;
  }
  const std::uint16_t traits = m_lastTraits;
  const double start = m_lastStart;
  const double end = m_lastEnd;
  m_pool.resize(m_glyphOffsets.back());
  m_glyphOffsets.pop_back();
  m_lastEnd = start - spacing;
  closeFragment(false);
  openFragment(start);
  append(traits, text, start, end);
}

void WordAssembler::endWord() {
  if (!m_capturing) {
    closeFragment(true);
  }
}

void WordAssembler::place(std::uint16_t traits, std::u16string_view text, double start,
                          double end) {
  if (m_echoing) {
    m_echo.push_back({traits, std::u16string(text), start, end, m_capturedGap});
    m_capturedGap = 0;
    return;
  }
  if ((traits & TraitBlank) != 0) {
    closeFragment(true);
    return;
  }
  if ((traits & TraitNothing) != 0 || !shows(start, end)) {
    return;
  }
  if (m_open && composeWithLast(traits, text, start, end)) {
    return;
  }
  if (m_parting && (repeatsLast(text, start, end) || joinsLast(traits, text, start, end))) {
    m_parting = m_steppedBack = false;
    return;
  }
  const bool glue = m_narrowGap && (traits & m_lastTraits & TraitWide) != 0;
  if (m_parting && !m_steppedBack && !glue) {
    closeFragment(false);
  }
  m_parting = m_steppedBack = false;
  if (!m_open && text.empty()) {
    ++m_unknownGlyphs;
    return;
  }
  if (!m_open) {
    openFragment(start);
  }
  append(traits, text, start, end);
}

void WordAssembler::append(std::uint16_t traits, std::u16string_view text, double start,
                           double end) {
  if ((traits & TraitUnknown) != 0) {
    ++m_unknownGlyphs;
    m_lostGlyphs += text == std::u16string_view(&replacementCharacter, 1);
  }
  m_glyphOffsets.push_back(static_cast<std::uint32_t>(m_pool.size()));
  m_pool.insert(m_pool.end(), text.begin(), text.end());
  m_current.traits |= traits;
  m_lastTraits = traits;
  m_lastStart = start;
  m_lastEnd = end;
  m_keepsEnd = false;
}

// Text may be made bold glyph by glyph, each drawn a second time with a slight shift.
bool WordAssembler::repeatsLast(std::u16string_view text, double start, double end) const {
  const double shift = start - m_lastStart;
  return m_glyphOffsets.size() > m_current.firstGlyph && std::abs(shift) < boldShift * m_run.em &&
         std::abs(shift) < (end - start) / 2 && std::abs(m_partingShift) < boldShift * m_run.em &&
         std::u16string_view(&m_pool[m_glyphOffsets.back()],
                             m_pool.size() - m_glyphOffsets.back()) == text;
}

// Text may be made bold piece by piece, too. A run that starts where the last one did waits for its
// end, which tells.
bool WordAssembler::mayEcho(const GlyphRun& run) const {
  const Point delta = run.origin - m_run.origin;
  if (!m_open || std::abs(delta.x) + std::abs(delta.y) > run.em) {
    return false;
  }
  const double near = boldShift * std::min(run.em, run.emAlong);
  return m_runGlyph >= m_current.firstGlyph && m_runGlyph < m_glyphOffsets.size() &&
         run.vertical == m_run.vertical && dot(run.direction, m_run.direction) > 0.999 &&
         std::abs(dot(delta, run.direction)) < near &&
         std::abs(dot(delta, acrossOf(run.direction))) < near;
}

// True when the run repeated what the last one shows. If not, it is told as it came.
bool WordAssembler::endEcho() {
  m_echoing = m_parting = false;
  std::size_t glyph = m_runGlyph;
  bool repeats = !m_echo.empty();
  for (const EchoGlyph& echo : m_echo) {
    const std::size_t last = glyph + 1;
    repeats = repeats && glyph < m_glyphOffsets.size() &&
              echo.text == std::u16string_view(&m_pool[m_glyphOffsets[glyph]],
                                               (last < m_glyphOffsets.size() ? m_glyphOffsets[last]
                                                                             : m_pool.size()) -
                                                   m_glyphOffsets[glyph]);
    ++glyph;
  }
  if (repeats) {
    return true;
  }
  startRun(m_echoRun);
  for (const EchoGlyph& echo : m_echo) {
    if (echo.gap != 0) {
      addGap(echo.gap);
    }
    place(echo.traits, echo.text, echo.start, echo.end);
  }
  return false;
}

// A mark is often placed on its letter by a shift in both directions. It joins the word, and the
// text goes on where the letter ended.
bool WordAssembler::joinsLast(std::uint16_t traits, std::u16string_view text, double start,
                              double end) {
  const bool near = (traits & TraitMark) != 0 && std::abs(m_partingShift) < m_run.em &&
                    start < m_lastEnd + markReach * m_run.em &&
                    m_runStart + end > m_current.start - markReach * m_run.em;
  if (!near) {
    return false;
  }
  const double lastStart = m_lastStart;
  const double lastEnd = m_lastEnd;
  append(traits, text, start, end);
  // A mark on the baseline may take room of its own.
  const bool level = std::abs(m_partingShift) <= sliver * m_run.em;
  m_lastStart = lastStart;
  m_lastEnd = level ? std::max(lastEnd, end) : lastEnd;
  m_keepsEnd = !level;
  return true;
}

// Fonts without accented letters have them drawn as two glyphs over one another, in either order.
bool WordAssembler::composeWithLast(std::uint16_t traits, std::u16string_view text, double start,
                                    double end) {
  const bool accentNow = (traits & TraitAccent) != 0;
  const bool accentBefore = (m_lastTraits & TraitAccent) != 0;
  if (accentNow == accentBefore || text.size() != 1 || std::abs(m_partingShift) > m_run.em) {
    return false;
  }
  const double from = accentNow ? m_lastStart : start;
  const double to = accentNow ? m_lastEnd : end;
  const double middle = accentNow ? (start + end) / 2 : (m_lastStart + m_lastEnd) / 2;
  const std::uint16_t body = accentNow ? m_lastTraits : traits;
  if (middle <= from || middle >= to || (body & TraitLetter) == 0) {
    return false;
  }
  const char16_t accent = combiningFormOf(accentNow ? text.front() : m_pool.back());
  m_pool.back() = accentedBody(accentNow ? m_pool.back() : text.front());
  m_pool.push_back(accent);
  m_current.traits |= TraitCombining | TraitLetter;
  m_lastTraits = TraitLetter;
  m_lastStart = std::min(m_lastStart, start);
  m_lastEnd = accentNow ? m_lastEnd : end;
  m_parting = m_steppedBack = false;
  return true;
}

void WordAssembler::openFragment(double start) {
  m_open = true;
  m_partingShift = 0;
  m_current = Fragment();
  m_current.text = static_cast<std::uint32_t>(m_pool.size());
  m_current.firstGlyph = static_cast<std::uint32_t>(m_glyphOffsets.size());
  m_current.start = static_cast<float>(m_runStart + start);
  m_current.heading = m_heading;
  if (m_heading == HeadingOblique) {
    m_current.angle =
        static_cast<std::int16_t>(rounded(1000 * std::atan2(m_run.direction.y, m_run.direction.x)));
  }
  m_current.em = static_cast<float>(m_run.em);
  m_current.ascent = m_run.font->ascent;
  m_current.descent = m_run.font->descent;
  m_current.origin = m_run.origin + m_run.direction * start;
  m_current.across = static_cast<float>(
      dot(m_current.origin, acrossOf(headingOrDirection(m_heading, m_run.direction))));
  m_currentDirection = m_run.direction;
  m_currentVertical = m_run.vertical;
  if (m_run.font != m_lastFont) {
    m_current.font = fontOffset(m_run.font);
  } else {
    m_current.font = m_lastFontOffset;
  }
}

void WordAssembler::closeFragment(bool atBlank) {
  if (!m_open) {
    return;
  }
  if (!m_parting) {
    m_current.end = static_cast<float>(m_runStart + m_lastEnd);
  }
  m_open = m_parting = m_steppedBack = false;
  m_current.length = static_cast<std::uint32_t>(m_pool.size()) - m_current.text;
  m_current.glyphs = static_cast<std::uint32_t>(m_glyphOffsets.size()) - m_current.firstGlyph;
  if (atBlank) {
    m_current.state |= FragmentEndsAtBlank;
  }
  m_pool.push_back(0);
  m_fragments.push_back(m_current);
}

// Names stand at the end of the pool's index, as numbers of fonts, until finish() adds their text.
std::uint32_t WordAssembler::fontOffset(const Font* font) {
  m_lastFont = font;
  for (std::size_t i = 0; i < m_fontOffsets.size(); ++i) {
    if (m_fontOffsets[i].first == font) {
      return m_lastFontOffset = static_cast<std::uint32_t>(i);
    }
  }
  m_fontOffsets.emplace_back(font, 0);
  return m_lastFontOffset = static_cast<std::uint32_t>(m_fontOffsets.size() - 1);
}

void WordAssembler::finish(PageWords& out) {
  if (m_capturing) {
    endReplacement();
  }
  if (m_echoing) {
    endEcho();
  }
  closeFragment(false);
  LineJoiner(m_fragments, m_pool, m_tolerance.between).run();

  for (auto& [font, offset] : m_fontOffsets) {
    offset = static_cast<std::uint32_t>(m_pool.size());
    m_pool.insert(m_pool.end(), font->name.begin(), font->name.end());
    m_pool.push_back(0);
  }
  out.words.clear();
  out.reading.clear();
  out.words.reserve(m_fragments.size());
  WordWriter writer(m_fragments, m_pool, m_glyphOffsets);
  for (const Fragment& fragment : m_fragments) {
    if ((fragment.state & (FragmentRepeats | FragmentContinues)) != 0) {
      continue;
    }
    Word word = writer.write(fragment);
    word.font = m_fontOffsets[fragment.font].second;
    word.fontSize = rounded(fragment.em);
    out.words.push_back(word);
  }
  std::swap(out.pool, m_pool);
  if (out.words.empty() && m_lostGlyphs == 0) {
    out.state = PageState::Empty;
  } else {
    out.state = m_lostGlyphs > 0 || 2 * m_unknownGlyphs > m_glyphOffsets.size()
                    ? PageState::Unreadable
                    : PageState::Good;
  }
  sortForReading(out, writer.anyRightToLeft());
}

} // namespace glyphrun
