// The part of ContentReader that shows text.

#include "ContentReader.h"

#include <algorithm>
#include <cmath>

namespace glyphrun {

namespace {

// Letter-spacing in ems: below the first it never parts, above the second it always does.
constexpr double fewestGap = 0.15;
constexpr double widestSpacing = 1.0;
// A run of fewer glyphs may have its character spacing for the sake of one gap.
constexpr std::size_t fewestSpacedLetters = 3;
// Traits of codes that take a second look.
constexpr unsigned lookAgain =
    unsigned{TraitUnknown} | unsigned{CodeLeftOut} | unsigned{CodeManyUnits};
// Thousandths of an em that are kerning at most.
constexpr double smallAdjustment = 60;

} // namespace

void ContentReader::selectFont() {
  const std::string_view name = text(0, TokenKind::Name);
  m_state.text.size = number(1);
  Frame& frame = m_frames.back();
  for (const auto& [known, font] : frame.fonts) {
    if (known == name) {
      m_state.text.font = font;
      return;
    }
  }
  const std::string key(name);
  m_state.text.font = m_fonts.find(frame.resources.get("Font").get(key.c_str()));
  frame.fonts.emplace_back(key, m_state.text.font);
}

void ContentReader::applyGraphicsState() {
  const std::string name(text(0, TokenKind::Name));
  const PdfObject font = m_frames.back().resources.get("ExtGState").get(name.c_str()).get("Font");
  if (font.size() == 2) {
    m_state.text.font = m_fonts.find(font.at(0));
    m_state.text.size = font.at(1).number();
  }
}

void ContentReader::moveLine(double x, double y) {
  m_lineMatrix.e += x * m_lineMatrix.a + y * m_lineMatrix.c;
  m_lineMatrix.f += x * m_lineMatrix.b + y * m_lineMatrix.d;
  m_textMatrix = m_lineMatrix;
}

void ContentReader::startRun(const ShownPieces& pieces) {
  ++m_textOperators;
  TextState& textState = m_state.text;
  if (textState.font == nullptr) {
    textState.font = m_fonts.find(PdfObject());
  }
  const Matrix matrix = m_textMatrix * m_state.matrix;
  const bool vertical = textState.font->vertical;
  const Point right = matrix.applyVector({1, 0});
  const Point up = matrix.applyVector({0, 1});
  const double horizontal = textState.size * textState.scale;
  m_pen = 0;
  m_textShift = 0;
  m_emits = false;
  m_spacing = 0;
  m_spacingParts = false;
  m_spacingOpen = false;

  const Point along = vertical ? up * -textState.size : right * horizontal;
  const double emAlong = length(along);
  const double perUnit = vertical ? -length(up) : length(right);
  const double sign = (vertical ? textState.size : horizontal) < 0 ? -1 : 1;
  m_unit = perUnit * sign;
  if (!matrix.finite() || !std::isfinite(emAlong) || emAlong < 1e-6) {
    return;
  }
  GlyphRun run;
  run.origin = matrix.apply({0, textState.rise});
  run.direction = along * (1 / emAlong);
  const Point other = vertical ? right * horizontal : up * textState.size;
  const double em = static_cast<double>(textState.font->em);
  run.em = em * std::abs(other.x * run.direction.y - other.y * run.direction.x);
  run.emAlong = em * emAlong;
  run.vertical = vertical;
  run.font = textState.font;
  if (run.em < 1e-6 || !std::isfinite(run.em) || !std::isfinite(run.origin.x) ||
      !std::isfinite(run.origin.y)) {
    return;
  }
  m_spacing = textState.charSpace * (vertical ? 1 : textState.scale) * m_unit;
  m_emits = !hidden();
  if (m_emits && (m_lastSpacingOpen || m_spacing > fewestGap * run.emAlong)) {
    beginSpaced(run, pieces);
  } else if (m_emits) {
    m_words.beginRun(run);
  }
}

// Some producers set character spacing for a single gap inside a line, others space letters, of
// which each may have an operator of its own. What it is in a short run is known when the next one
// comes: equal spacing goes on, anything else makes it a gap.
void ContentReader::beginSpaced(GlyphRun& run, const ShownPieces& pieces) {
  const bool wide = m_spacing > fewestGap * run.emAlong;
  const bool widest = m_spacing > widestSpacing * run.emAlong;
  const bool likeBefore = wide && std::abs(m_spacing - m_lastSpacing) < m_spacing / 4;
  const std::size_t glyphs = run.font->oneByte ? pieces.longest : pieces.longest / 2;
  const bool leader = wide && !likeBefore && pieces.leader;
  m_spacingOpen = wide && glyphs < fewestSpacedLetters;
  if (m_lastSpacingOpen && likeBefore && !widest) {
    run.bridged = m_lastSpacing;
  } else if (m_lastSpacingOpen) {
    m_words.partLastOfTwo(m_lastSpacing);
  }
  if (leader) {
    m_words.endWord();
  }
  m_words.beginRun(run);
  m_spacingParts = wide && (widest || leader || pieces.compensated);
}

// Producers map the text of a cluster to its first glyph and leave the others out of the map. Other
// codes that the map leaves out are characters like any other, or else marks of no width. Among
// letters that are drawn piece by piece a glyph that nothing is known of is told of the page only.
bool ContentReader::standsBefore(const Font& font, const CodeInfo& info) {
  const std::u16string_view text = font.textOf(info);
  if ((info.traits & CodeLeftOut) == 0) {
    m_cluster = (info.traits & TraitUnknown) == 0 ? text : std::u16string_view();
    m_clusterGlyphs = 1;
    return false;
  }
  const bool unknown = (info.traits & TraitUnknown) != 0;
  const bool covered = m_clusterGlyphs < m_cluster.size() &&
                       (unknown || m_cluster.find(text) != std::u16string::npos);
  m_clusterGlyphs += m_clusterGlyphs != SIZE_MAX;
  if (unknown && !covered && font.hasClusters && info.advance != 0) {
    m_words.loseGlyph();
    return true;
  }
  return covered || (unknown && info.advance == 0);
}

template <bool OneByte> void ContentReader::showGlyphs(std::string_view bytes) {
  const TextState& textState = m_state.text;
  Font& font = *textState.font;
  const double scale = font.vertical ? 1 : textState.scale;
  const double advanceScale = textState.size * scale;
  const bool isPlain = OneByte && m_emits && !m_spacingParts;
  for (std::size_t at = 0; at < bytes.size();) {
    if (isPlain) {
      WordAssembler::Pen pen{m_pen, m_textShift, m_unit, advanceScale, textState.charSpace * scale};
      if (const std::size_t taken = m_words.addPlain(font.codes, bytes.substr(at), pen)) {
        m_pen = pen.place;
        m_textShift = pen.shift;
        m_clusterGlyphs = SIZE_MAX;
        at += taken;
        continue;
      }
    }
    std::uint32_t code = static_cast<unsigned char>(bytes[at]);
    const unsigned taken = OneByte ? 1 : font.takeCode(bytes.substr(at), code);
    const CodeInfo* info = OneByte ? &font.codes[code] : &font.lookUp(code);
    at += taken;
    if ((info->traits & lookAgain) != 0) {
      if ((info->traits & TraitUnknown) != 0 && font.mayAskProgram) {
        m_fonts.askProgram(font);
        info = OneByte ? &font.codes[code] : &font.lookUp(code);
      }
      if (standsBefore(font, *info)) {
        m_silent = font.withoutText(*info);
        info = &m_silent;
      }
    } else {
      m_clusterGlyphs = SIZE_MAX;
    }
    const double advance = static_cast<double>(info->advance) * advanceScale;
    if (m_emits) {
      const double end = m_pen + advance * m_unit;
      m_words.addGlyph(*info, std::min(m_pen, end), std::max(m_pen, end));
      if (m_spacingParts) {
        m_words.addGap(m_spacing);
      }
    }
    double shift = advance + textState.charSpace * scale;
    if (taken == 1 && code == ' ') {
      shift += textState.wordSpace * scale;
    }
    m_textShift += shift;
    m_pen += shift * m_unit;
  }
  m_glyphsShown += bytes.size();
  if (m_glyphsShown > m_glyphsAllowed) {
    m_damaged = m_stopped = true;
  }
}

void ContentReader::finishRun() {
  if (m_emits) {
    m_words.endRun(m_spacingParts || m_spacingOpen ? 0 : m_spacing);
  }
  m_lastSpacing = m_spacing;
  m_lastSpacingOpen = m_spacingOpen && m_emits;
  const bool vertical = m_state.text.font->vertical;
  m_textMatrix.e += m_textShift * (vertical ? m_textMatrix.c : m_textMatrix.a);
  m_textMatrix.f += m_textShift * (vertical ? m_textMatrix.d : m_textMatrix.b);
}

/// Dots or the like, which lead the eye from a text to its number.
bool ContentReader::isLeader(std::string_view bytes) const {
  if (m_state.text.font == nullptr || bytes.empty() || !m_state.text.font->oneByte) {
    return false;
  }
  const CodeInfo& first = m_state.text.font->codes[static_cast<unsigned char>(bytes[0])];
  return std::u16string_view(u".\u00B7\u2026_-").find(first.text) != std::u16string_view::npos &&
         bytes.find_first_not_of(bytes[0]) == std::string_view::npos;
}

void ContentReader::showString(std::string_view bytes) {
  startRun({bytes.size(), m_state.text.charSpace != 0 && isLeader(bytes), false});
  if (m_state.text.font->oneByte) {
    showGlyphs<true>(bytes);
  } else {
    showGlyphs<false>(bytes);
  }
  finishRun();
}

void ContentReader::showArray() {
  const TextState& textState = m_state.text;
  const double small = textState.font == nullptr
                           ? smallAdjustment
                           : smallAdjustment * static_cast<double>(textState.font->em);
  std::size_t piece = 0;
  ShownPieces pieces{0, textState.charSpace != 0 && !m_array.empty(), false};
  for (const Token& item : m_array) {
    if (item.kind == TokenKind::Number) {
      piece = std::abs(item.number) < small ? piece : 0;
      const double rest = item.number / 1000 * textState.size - textState.charSpace;
      pieces.compensated = pieces.compensated || std::abs(rest) < textState.charSpace / 4;
    } else {
      pieces.longest = std::max(pieces.longest, piece += item.text.size());
      pieces.leader = pieces.leader && isLeader(item.text);
    }
  }
  startRun(pieces);
  for (const Token& item : m_array) {
    if (item.kind == TokenKind::Number) {
      showAdjustment(item.number);
    } else if (m_state.text.font->oneByte) {
      showGlyphs<true>(item.text);
    } else {
      showGlyphs<false>(item.text);
    }
    if (m_stopped) {
      break;
    }
  }
  m_array.clear();
  finishRun();
}

void ContentReader::showAdjustment(double thousandths) {
  const TextState& textState = m_state.text;
  const bool vertical = textState.font->vertical;
  const double shift = -thousandths / 1000 * textState.size * (vertical ? 1 : textState.scale);
  m_textShift += shift;
  m_pen += shift * m_unit;
  // Negative letter-spacing narrows what the adjustment opens; a positive one is no gap by itself.
  if (m_emits) {
    m_words.addGap(shift * m_unit + (m_spacingParts ? m_spacing : std::min(m_spacing, 0.0)));
  }
}

} // namespace glyphrun
