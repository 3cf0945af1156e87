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
  state_.text.size = number(1);
  Frame& frame = frames_.back();
  for (const auto& [known, font] : frame.fonts) {
    if (known == name) {
      state_.text.font = font;
      return;
    }
  }
  const std::string key(name);
  state_.text.font = fonts_.find(frame.resources.get("Font").get(key.c_str()));
  frame.fonts.emplace_back(key, state_.text.font);
}

void ContentReader::applyGraphicsState() {
  const std::string name(text(0, TokenKind::Name));
  const PdfObject font = frames_.back().resources.get("ExtGState").get(name.c_str()).get("Font");
  if (font.size() == 2) {
    state_.text.font = fonts_.find(font.at(0));
    state_.text.size = font.at(1).number();
  }
}

void ContentReader::moveLine(double x, double y) {
  lineMatrix_.e += x * lineMatrix_.a + y * lineMatrix_.c;
  lineMatrix_.f += x * lineMatrix_.b + y * lineMatrix_.d;
  textMatrix_ = lineMatrix_;
}

void ContentReader::startRun(std::size_t longestPiece) {
  ++textOperators_;
  TextState& textState = state_.text;
  if (textState.font == nullptr)
    textState.font = fonts_.find(PdfObject());
  const Matrix matrix = textMatrix_ * state_.matrix;
  const bool vertical = textState.font->vertical;
  const Point right = matrix.applyVector({1, 0});
  const Point up = matrix.applyVector({0, 1});
  const double horizontal = textState.size * textState.scale;
  pen_ = 0;
  textShift_ = 0;
  emits_ = false;
  spacing_ = 0;
  spacingParts_ = false;

  const Point along = vertical ? up * -textState.size : right * horizontal;
  const double emAlong = length(along);
  const double perUnit = vertical ? -length(up) : length(right);
  const double sign = (vertical ? textState.size : horizontal) < 0 ? -1 : 1;
  unit_ = perUnit * sign;
  if (!matrix.finite() || !std::isfinite(emAlong) || emAlong < 1e-6)
    return;
  GlyphRun run;
  run.origin = matrix.apply({0, textState.rise});
  run.direction = along * (1 / emAlong);
  const Point other = vertical ? right * horizontal : up * textState.size;
  run.em = std::abs(other.x * run.direction.y - other.y * run.direction.x);
  run.emAlong = emAlong;
  run.vertical = vertical;
  run.font = textState.font;
  if (run.em < 1e-6 || !std::isfinite(run.em) || !std::isfinite(run.origin.x) ||
      !std::isfinite(run.origin.y))
    return;
  spacing_ = textState.charSpace * (vertical ? 1 : textState.scale) * unit_;
  emits_ = !hidden();
  if (emits_)
    words_.beginRun(run);
  // Some producers set character spacing for a single gap inside a line. Spaced letters are more
  // than two, and do not go on from plain ones.
  const std::size_t glyphs = textState.font->oneByte ? longestPiece : longestPiece / 2;
  const bool spacedBefore = std::abs(spacing_ - lastSpacing_) < spacing_ / 4;
  spacingParts_ = spacing_ > fewestGap * emAlong &&
                  (glyphs < fewestSpacedLetters || spacing_ > widestSpacing * emAlong ||
                   (words_.continues() && !spacedBefore));
}

template <bool OneByte> void ContentReader::showGlyphs(std::string_view bytes) {
  const TextState& textState = state_.text;
  Font& font = *textState.font;
  const double scale = font.vertical ? 1 : textState.scale;
  const double advanceScale = textState.size * scale;
  for (std::size_t at = 0; at < bytes.size();) {
    std::uint32_t code = static_cast<unsigned char>(bytes[at]);
    const unsigned taken = OneByte ? 1 : font.takeCode(bytes.substr(at), code);
    const CodeInfo* info = OneByte ? &font.codes[code] : &font.lookUp(code);
    at += taken;
    if ((info->traits & TraitUnknown) != 0 && font.mayAskProgram) {
      fonts_.askProgram(font);
      info = OneByte ? &font.codes[code] : &font.lookUp(code);
    }
    const double advance = static_cast<double>(info->advance) * advanceScale;
    if (emits_) {
      const double end = pen_ + advance * unit_;
      words_.addGlyph(*info, std::min(pen_, end), std::max(pen_, end));
      if (spacingParts_)
        words_.addGap(spacing_);
    }
    double shift = advance + textState.charSpace * scale;
    if (taken == 1 && code == ' ')
      shift += textState.wordSpace * scale;
    textShift_ += shift;
    pen_ += shift * unit_;
  }
  glyphsShown_ += bytes.size();
  if (glyphsShown_ > glyphsAllowed_)
    damaged_ = stopped_ = true;
}

void ContentReader::finishRun() {
  if (emits_)
    words_.endRun(spacingParts_ ? 0 : spacing_);
  lastSpacing_ = spacing_;
  const bool vertical = state_.text.font->vertical;
  textMatrix_.e += textShift_ * (vertical ? textMatrix_.c : textMatrix_.a);
  textMatrix_.f += textShift_ * (vertical ? textMatrix_.d : textMatrix_.b);
}

void ContentReader::showString(std::string_view bytes) {
  startRun(bytes.size());
  if (state_.text.font->oneByte)
    showGlyphs<true>(bytes);
  else
    showGlyphs<false>(bytes);
  finishRun();
}

void ContentReader::showArray() {
  // Bytes that follow one another without an adjustment to speak of.
  std::size_t piece = 0;
  std::size_t longest = 0;
  for (const Token& item : array_) {
    if (item.kind == TokenKind::Number)
      piece = std::abs(item.number) < smallAdjustment ? piece : 0;
    else
      longest = std::max(longest, piece += item.text.size());
  }
  startRun(longest);
  for (const Token& item : array_) {
    if (item.kind == TokenKind::Number)
      showAdjustment(item.number);
    else if (state_.text.font->oneByte)
      showGlyphs<true>(item.text);
    else
      showGlyphs<false>(item.text);
    if (stopped_)
      break;
  }
  array_.clear();
  finishRun();
}

void ContentReader::showAdjustment(double thousandths) {
  const TextState& textState = state_.text;
  const bool vertical = textState.font->vertical;
  const double shift = -thousandths / 1000 * textState.size * (vertical ? 1 : textState.scale);
  textShift_ += shift;
  pen_ += shift * unit_;
  // Negative letter-spacing narrows what the adjustment opens; a positive one is no gap by itself.
  if (emits_)
    words_.addGap(shift * unit_ + (spacingParts_ ? spacing_ : std::min(spacing_, 0.0)));
}

} // namespace glyphrun
