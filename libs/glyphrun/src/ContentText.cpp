// The part of ContentReader that shows text.

#include "ContentReader.h"

#include <algorithm>
#include <cmath>

namespace glyphrun {

namespace {

// Letter-spacing in ems: below the first it never parts, above the second it always does.
constexpr double fewestGap = 0.15;
constexpr double widestSpacing = 1.0;
constexpr std::size_t fewestSpacedLetters = 3;
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

void ContentReader::startRun(std::size_t longestPiece) {
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
  run.em = std::abs(other.x * run.direction.y - other.y * run.direction.x);
  run.emAlong = emAlong;
  run.vertical = vertical;
  run.font = textState.font;
  if (run.em < 1e-6 || !std::isfinite(run.em) || !std::isfinite(run.origin.x) ||
      !std::isfinite(run.origin.y)) {
    return;
  }
  m_spacing = textState.charSpace * (vertical ? 1 : textState.scale) * m_unit;
  m_emits = !hidden();
  if (m_emits) {
    m_words.beginRun(run);
  }
  // Some producers set character spacing for a single gap inside a line. Spaced letters are more
  // than two, and do not go on from plain ones.
  const std::size_t glyphs = textState.font->oneByte ? longestPiece : longestPiece / 2;
  const bool spacedBefore = std::abs(m_spacing - m_lastSpacing) < m_spacing / 4;
  m_spacingParts = m_spacing > fewestGap * emAlong &&
                   (glyphs < fewestSpacedLetters || m_spacing > widestSpacing * emAlong ||
                    (m_words.continues() && !spacedBefore));
}

template <bool OneByte> void ContentReader::showGlyphs(std::string_view bytes) {
  const TextState& textState = m_state.text;
  Font& font = *textState.font;
  const double scale = font.vertical ? 1 : textState.scale;
  const double advanceScale = textState.size * scale;
  for (std::size_t at = 0; at < bytes.size();) {
    std::uint32_t code = static_cast<unsigned char>(bytes[at]);
    const unsigned taken = OneByte ? 1 : font.takeCode(bytes.substr(at), code);
    const CodeInfo* info = OneByte ? &font.codes[code] : &font.lookUp(code);
    at += taken;
    if ((info->traits & TraitUnknown) != 0 && font.mayAskProgram) {
      m_fonts.askProgram(font);
      info = OneByte ? &font.codes[code] : &font.lookUp(code);
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
    m_words.endRun(m_spacingParts ? 0 : m_spacing);
  }
  m_lastSpacing = m_spacing;
  const bool vertical = m_state.text.font->vertical;
  m_textMatrix.e += m_textShift * (vertical ? m_textMatrix.c : m_textMatrix.a);
  m_textMatrix.f += m_textShift * (vertical ? m_textMatrix.d : m_textMatrix.b);
}

void ContentReader::showString(std::string_view bytes) {
  startRun(bytes.size());
  if (m_state.text.font->oneByte) {
    showGlyphs<true>(bytes);
  } else {
    showGlyphs<false>(bytes);
  }
  finishRun();
}

void ContentReader::showArray() {
  // Bytes that follow one another without an adjustment to speak of.
  std::size_t piece = 0;
  std::size_t longest = 0;
  for (const Token& item : m_array) {
    if (item.kind == TokenKind::Number) {
      piece = std::abs(item.number) < smallAdjustment ? piece : 0;
    } else {
      longest = std::max(longest, piece += item.text.size());
    }
  }
  startRun(longest);
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
