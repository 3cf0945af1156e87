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
  if (std::abs(direction.y) < uprightSlope)
    heading = direction.x > 0 ? HeadingRight : HeadingLeft;
  else if (std::abs(direction.x) < uprightSlope)
    heading = direction.y > 0 ? HeadingDown : HeadingUp;
  return vertical && heading != HeadingOblique
             ? static_cast<std::uint8_t>(heading + HeadingVertical)
             : heading;
}

Point headingOrDirection(std::uint8_t heading, Point direction) {
  return heading < HeadingOblique ? headingVector(heading) : direction;
}

/** Downwards from the baseline, for text that runs along `direction`. */
Point acrossOf(Point direction) {
  return {-direction.y, direction.x};
}

/** Narrows [from, to] to where base + t * slope lies within [low, high]. */
void narrow(double base, double slope, double low, double high, double& from, double& to) {
  if (std::abs(slope) < 1e-9) {
    if (base < low || base > high)
      to = from - 1;
    return;
  }
  const double a = (low - base) / slope;
  const double b = (high - base) / slope;
  from = std::max(from, std::min(a, b));
  to = std::min(to, std::max(a, b));
}

std::int32_t rounded(double value) {
  constexpr double farthest = 1e6;
  return static_cast<std::int32_t>(std::floor(std::clamp(value, -farthest, farthest) + 0.5));
}

} // namespace

JoiningTolerance JoiningTolerance::fromFactor(double factor) {
  if (!std::isfinite(factor) || factor <= 0)
    factor = defaultFactor;
  const double more = factor - defaultFactor;
  return {std::clamp(gapInRun + more, smallestGap, widestGap),
          std::clamp(gapBetween + more, smallestGap, widestGap)};
}

void WordAssembler::beginPage(const Rect& visible, JoiningTolerance tolerance) {
  visible_ = visible;
  tolerance_ = tolerance;
  open_ = parting_ = steppedBack_ = keepsEnd_ = false;
  capturing_ = false;
  captured_.clear();
  capturedRuns_.clear();
  lastFont_ = nullptr;
  fontOffsets_.clear();
  pool_.clear();
  glyphOffsets_.clear();
  fragments_.clear();
  unknownGlyphs_ = 0;
}

void WordAssembler::beginRun(const GlyphRun& run) {
  if (capturing_) {
    capturedRuns_.push_back(run);
    run_ = run;
    return;
  }
  keepsEnd_ = false;
  if (open_) {
    const double before = runStart_ + lastEnd_;
    const Point delta = run.origin - endPoint_;
    const double gap = dot(delta, run.direction);
    const double shift = dot(delta, acrossOf(run.direction));
    const double em = std::min(run.em, static_cast<double>(current_.em));
    const bool sameWay =
        run.vertical == currentVertical_ && dot(run.direction, currentDirection_) > 0.999;
    const bool continues = sameWay && std::abs(shift) <= sliver * em &&
                           gap <= tolerance_.between * run.emAlong &&
                           gap >= -deepestOverlap * run.emAlong;
    current_.end = static_cast<float>(before);
    steppedBack_ = continues && gap < -slightOverlap * run.emAlong;
    narrowGap_ = sameWay && std::abs(shift) <= sliver * em && gap > 0 && gap <= widestGlue * run.em;
    parting_ = !continues || steppedBack_;
    partingShift_ = shift;
    if (!sameWay)
      closeFragment(false);
    const double width = lastEnd_ - lastStart_;
    lastEnd_ = -gap;
    lastStart_ = lastEnd_ - width;
  }
  run_ = run;
  heading_ = headingOf(run.direction, run.vertical);
  runStart_ = dot(run.origin, headingOrDirection(heading_, run.direction));
  const double lift = run.vertical ? 0 : middleHeight * run.em;
  const Point middle = run.origin - acrossOf(run.direction) * lift;
  visibleFrom_ = -1e9;
  visibleTo_ = 1e9;
  narrow(middle.x, run.direction.x, visible_.left, visible_.right, visibleFrom_, visibleTo_);
  narrow(middle.y, run.direction.y, visible_.top, visible_.bottom, visibleFrom_, visibleTo_);
}

void WordAssembler::addGap(double gap) {
  if (capturing_ || !open_ || parting_)
    return;
  const bool continues =
      gap <= tolerance_.inRun * run_.emAlong && gap >= -deepestOverlap * run_.emAlong;
  steppedBack_ = continues && gap < -slightOverlap * run_.emAlong;
  if (continues && !steppedBack_)
    return;
  narrowGap_ = gap > 0 && gap <= widestGlue * run_.em;
  current_.end = static_cast<float>(runStart_ + lastEnd_);
  parting_ = true;
  partingShift_ = 0;
}

void WordAssembler::endRun(double spacing) {
  if (open_ && !keepsEnd_)
    endPoint_ = run_.origin + run_.direction * (lastEnd_ + spacing);
}

void WordAssembler::place(std::uint16_t traits, std::u16string_view text, double start,
                          double end) {
  if ((traits & TraitBlank) != 0) {
    closeFragment(true);
    return;
  }
  if ((traits & TraitNothing) != 0 || !shows(start, end))
    return;
  if (open_ && composeWithLast(traits, text, start, end))
    return;
  if (parting_ && (repeatsLast(text, start, end) || joinsLast(traits, text, start, end))) {
    parting_ = steppedBack_ = false;
    return;
  }
  const bool glue = narrowGap_ && (traits & lastTraits_ & TraitWide) != 0;
  if (parting_ && !steppedBack_ && !glue)
    closeFragment(false);
  parting_ = steppedBack_ = false;
  if (!open_ && text.empty()) {
    ++unknownGlyphs_;
    return;
  }
  if (!open_)
    openFragment(start);
  append(traits, text, start, end);
}

void WordAssembler::append(std::uint16_t traits, std::u16string_view text, double start,
                           double end) {
  if ((traits & TraitUnknown) != 0)
    ++unknownGlyphs_;
  glyphOffsets_.push_back(static_cast<std::uint32_t>(pool_.size()));
  pool_.insert(pool_.end(), text.begin(), text.end());
  current_.traits |= traits;
  lastTraits_ = traits;
  lastStart_ = start;
  lastEnd_ = end;
  keepsEnd_ = false;
}

// Text may be made bold glyph by glyph, each drawn a second time with a slight shift.
bool WordAssembler::repeatsLast(std::u16string_view text, double start, double end) const {
  const double shift = start - lastStart_;
  return glyphOffsets_.size() > current_.firstGlyph && std::abs(shift) < boldShift * run_.em &&
         std::abs(shift) < (end - start) / 2 && std::abs(partingShift_) < boldShift * run_.em &&
         std::u16string_view(&pool_[glyphOffsets_.back()], pool_.size() - glyphOffsets_.back()) ==
             text;
}

// A mark is often placed on its letter by a shift in both directions. It joins the word, and the
// text goes on where the letter ended.
bool WordAssembler::joinsLast(std::uint16_t traits, std::u16string_view text, double start,
                              double end) {
  const bool near = (traits & TraitMark) != 0 && std::abs(partingShift_) < run_.em &&
                    start < lastEnd_ + markReach * run_.em &&
                    runStart_ + end > current_.start - markReach * run_.em;
  if (!near)
    return false;
  const double lastStart = lastStart_;
  const double lastEnd = lastEnd_;
  append(traits, text, start, end);
  // A mark on the baseline may take room of its own.
  const bool level = std::abs(partingShift_) <= sliver * run_.em;
  lastStart_ = lastStart;
  lastEnd_ = level ? std::max(lastEnd, end) : lastEnd;
  keepsEnd_ = !level;
  return true;
}

// Fonts without accented letters have them drawn as two glyphs over one another, in either order.
bool WordAssembler::composeWithLast(std::uint16_t traits, std::u16string_view text, double start,
                                    double end) {
  const bool accentNow = (traits & TraitAccent) != 0;
  const bool accentBefore = (lastTraits_ & TraitAccent) != 0;
  if (accentNow == accentBefore || text.size() != 1 || std::abs(partingShift_) > run_.em)
    return false;
  const double from = accentNow ? lastStart_ : start;
  const double to = accentNow ? lastEnd_ : end;
  const double middle = accentNow ? (start + end) / 2 : (lastStart_ + lastEnd_) / 2;
  const std::uint16_t body = accentNow ? lastTraits_ : traits;
  if (middle <= from || middle >= to || (body & TraitLetter) == 0)
    return false;
  const char16_t accent = combiningFormOf(accentNow ? text.front() : pool_.back());
  pool_.back() = accentedBody(accentNow ? pool_.back() : text.front());
  pool_.push_back(accent);
  current_.traits |= TraitCombining | TraitLetter;
  lastTraits_ = TraitLetter;
  lastStart_ = std::min(lastStart_, start);
  lastEnd_ = accentNow ? lastEnd_ : end;
  parting_ = steppedBack_ = false;
  return true;
}

void WordAssembler::openFragment(double start) {
  open_ = true;
  partingShift_ = 0;
  current_ = Fragment();
  current_.text = static_cast<std::uint32_t>(pool_.size());
  current_.firstGlyph = static_cast<std::uint32_t>(glyphOffsets_.size());
  current_.start = static_cast<float>(runStart_ + start);
  current_.heading = heading_;
  current_.em = static_cast<float>(run_.em);
  current_.ascent = run_.font->ascent;
  current_.descent = run_.font->descent;
  current_.origin = run_.origin + run_.direction * start;
  current_.across = static_cast<float>(
      dot(current_.origin, acrossOf(headingOrDirection(heading_, run_.direction))));
  currentDirection_ = run_.direction;
  currentVertical_ = run_.vertical;
  if (run_.font != lastFont_)
    current_.font = fontOffset(run_.font);
  else
    current_.font = lastFontOffset_;
}

void WordAssembler::closeFragment(bool atBlank) {
  if (!open_)
    return;
  if (!parting_)
    current_.end = static_cast<float>(runStart_ + lastEnd_);
  open_ = parting_ = steppedBack_ = false;
  current_.length = static_cast<std::uint32_t>(pool_.size()) - current_.text;
  current_.glyphs = static_cast<std::uint32_t>(glyphOffsets_.size()) - current_.firstGlyph;
  if (atBlank)
    current_.state |= FragmentEndsAtBlank;
  pool_.push_back(0);
  fragments_.push_back(current_);
}

// Names stand at the end of the pool's index, as numbers of fonts, until finish() adds their text.
std::uint32_t WordAssembler::fontOffset(const Font* font) {
  lastFont_ = font;
  for (std::size_t i = 0; i < fontOffsets_.size(); ++i)
    if (fontOffsets_[i].first == font)
      return lastFontOffset_ = static_cast<std::uint32_t>(i);
  fontOffsets_.emplace_back(font, 0);
  return lastFontOffset_ = static_cast<std::uint32_t>(fontOffsets_.size() - 1);
}

void WordAssembler::capture(double start, double end) {
  if (capturedRuns_.empty())
    capturedRuns_.push_back(run_);
  captured_.push_back({static_cast<std::uint32_t>(capturedRuns_.size() - 1), start, end});
}

void WordAssembler::beginReplacement(std::u16string text) {
  capturing_ = true;
  replacement_ = std::move(text);
  captured_.clear();
  capturedRuns_.clear();
}

// Nothing tells which glyph stands for which character, so the characters are spread evenly over
// the glyphs; a blank among them then parts words about where it should.
void WordAssembler::endReplacement() {
  if (!capturing_)
    return;
  capturing_ = false;
  std::vector<char32_t> characters;
  const std::u16string text = spelledOut(replacement_);
  for (std::size_t at = 0; at < text.size();)
    characters.push_back(takeCodePoint(text, at));
  if (captured_.empty() || characters.empty())
    return;

  const double perCharacter =
      static_cast<double>(captured_.size()) / static_cast<double>(characters.size());
  std::uint32_t run = UINT32_MAX;
  for (std::size_t i = 0; i < characters.size(); ++i) {
    const double from = static_cast<double>(i) * perCharacter;
    const double to = from + perCharacter;
    const auto first = std::min(static_cast<std::size_t>(from), captured_.size() - 1);
    const auto last =
        std::clamp(static_cast<std::size_t>(std::ceil(to)) - 1, first, captured_.size() - 1);
    const CapturedGlyph& a = captured_[first];
    const CapturedGlyph& b = captured_[last].run == a.run ? captured_[last] : a;
    const double start = a.start + (a.end - a.start) * (from - static_cast<double>(first));
    const double end =
        &b == &captured_[last]
            ? b.start + (b.end - b.start) * std::min(1.0, to - static_cast<double>(last))
            : a.end;
    if (a.run != run) {
      endRun();
      run = a.run;
      GlyphRun moved = capturedRuns_[run];
      beginRun(moved);
      if (open_)
        addGap(start - lastEnd_);
    } else if (open_) {
      addGap(start - lastEnd_);
    }
    std::u16string one;
    appendCodePoint(one, characters[i]);
    place(traitsOf(characters[i]), one, start, end);
  }
  endRun();
}

void WordAssembler::finish(PageWords& out) {
  if (capturing_)
    endReplacement();
  closeFragment(false);
  LineJoiner(fragments_, pool_, tolerance_.between).run();

  for (auto& [font, offset] : fontOffsets_) {
    offset = static_cast<std::uint32_t>(pool_.size());
    pool_.insert(pool_.end(), font->name.begin(), font->name.end());
    pool_.push_back(0);
  }
  out.words.clear();
  out.reading.clear();
  out.words.reserve(fragments_.size());
  WordWriter writer(fragments_, pool_, glyphOffsets_);
  for (const Fragment& fragment : fragments_) {
    if ((fragment.state & (FragmentRepeats | FragmentContinues)) != 0)
      continue;
    Word word = writer.write(fragment);
    word.font = fontOffsets_[fragment.font].second;
    word.fontSize = rounded(fragment.em);
    out.words.push_back(word);
  }
  std::swap(out.pool, pool_);
  if (out.words.empty())
    out.state = PageState::Empty;
  else
    out.state = 2 * unknownGlyphs_ > glyphOffsets_.size() ? PageState::Unreadable : PageState::Good;
  sortForReading(out, writer.anyRightToLeft());
}

} // namespace glyphrun
