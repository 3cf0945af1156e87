// From glyphs in the order in which a page draws them to words.
#pragma once

#include "Font.h"
#include "Fragments.h"
#include "Geometry.h"
#include "PageWords.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace glyphrun {

/// What the glyphs of one text-showing operator have in common.
struct GlyphRun {
  Point origin;          ///< of the first glyph, in points on the shown page, y downwards
  Point direction{1, 0}; ///< unit vector in which the text runs
  double em = 0;         ///< font size across the text direction, in points
  double emAlong = 0;    ///< font size along it (differs when text is stretched)
  bool vertical = false; ///< glyphs stand below one another
  double bridged = 0;    ///< letter-spacing behind the run before, of which endRun() was not told
  Font* font = nullptr;
};

/// The widest gaps that do not part a word, in ems.
struct JoiningTolerance {
  double inRun = 0;   ///< between glyphs of one operator, where a gap is kerning or a blank
  double between = 0; ///< between pieces placed one by one, where it may be a table's gap

  /// From the factor of the settings, 1.02 for plain text. Each hundredth more is a hundredth of an
  /// em.
  static JoiningTolerance fromFactor(double factor);
};

/// Takes the glyphs of one page and gives its words. It knows nothing of PDF: a test can feed it by
/// hand. One thread; reused from page to page so that nothing is allocated for a word or a glyph.
class WordAssembler {
public:
  void beginPage(const Rect& visible, JoiningTolerance tolerance);
  /// Glyphs whose middle lies outside do not count.
  void setVisible(const Rect& visible) { m_visible = visible; }
  const Rect& visible() const { return m_visible; }

  void beginRun(const GlyphRun& run);
  /// One glyph from `start` to `end`, in points from the run's origin along its direction.
  void addGlyph(const CodeInfo& info, double start, double end) {
    if (m_capturing) {
      capture(info.traits, start, end);
    } else if ((info.traits & plainTraits) == 0 && m_open && !m_parting) {
      appendPlain(info, start, end);
    } else {
      place(info.traits, (m_echoing ? m_echoRun : m_run).font->textOf(info), start, end);
    }
  }
  /// Where the next glyph of a string starts, and what moves it.
  struct Pen {
    double place = 0;   ///< from the run's origin along its direction, points
    double shift = 0;   ///< the same in units of text space
    double unit = 0;    ///< points for one of these
    double advance = 0; ///< units for an advance of 1
    double spacing = 0; ///< units behind each glyph
  };
  /// The glyphs of one-byte codes, as addGlyph() takes them, up to the first about which anything
  /// is to be thought of: most of a page in one go. Returns their number.
  std::size_t addPlain(const std::array<CodeInfo, 256>& codes, std::string_view bytes, Pen& pen) {
    if (m_capturing || !m_open || m_parting) {
      return 0;
    }
    std::size_t count = 0;
    for (const char byte : bytes) {
      const CodeInfo& info = codes[static_cast<unsigned char>(byte)];
      if (byte == ' ' || (info.traits & (plainTraits | CodeLeftOut)) != 0) {
        break;
      }
      const double advance = static_cast<double>(info.advance) * pen.advance;
      const double end = pen.place + advance * pen.unit;
      appendPlain(info, std::min(pen.place, end), std::max(pen.place, end));
      const double shift = advance + pen.spacing;
      pen.shift += shift;
      pen.place += shift * pen.unit;
      ++count;
    }
    return count;
  }
  /// The next glyph starts `gap` points farther than the last one's advance and spacing say.
  void addGap(double gap);
  /// `spacing` is what letter-spacing leaves behind the last glyph.
  void endRun(double spacing = 0);

  /// The spacing between the two glyphs of the last run, if it has just two, was a gap after all.
  void partLastOfTwo(double spacing);
  /// A glyph that nothing is known of stands in no word.
  void loseGlyph() { ++m_lostGlyphs; }
  /// What follows begins another word, however near it is.
  void endWord();

  /// The glyphs up to endReplacement() stand for `text`. Replacements do not nest.
  void beginReplacement(std::u16string text);
  void endReplacement();
  bool replacing() const { return m_capturing; }

  /// Forms the words of the page. Sets everything of `out` but its page number and memory flag.
  void finish(PageWords& out);

private:
  static constexpr std::uint16_t plainTraits =
      TraitBlank | TraitNothing | TraitUnknown | TraitAccent | TraitMark | CodeManyUnits;

  struct CapturedRun {
    GlyphRun run;
    double spacing;
  };
  struct CapturedGlyph {
    std::uint32_t run;
    double start;
    double end;
    double gap; ///< that was told before it
    bool blank;
  };

  struct EchoGlyph {
    std::uint16_t traits;
    std::u16string text;
    double start;
    double end;
    double gap; ///< that was told before it
  };

  void startRun(const GlyphRun& run);
  bool mayEcho(const GlyphRun& run) const;
  bool endEcho();
  void capture(std::uint16_t traits, double start, double end);
  void enterCaptured(std::size_t glyph, bool gapsPart);
  void replaceEach(const std::vector<char32_t>& characters, bool blanksDrawn);
  void spreadEvenly(const std::vector<char32_t>& characters);
  void placeOne(char32_t character, double start, double end);
  void place(std::uint16_t traits, std::u16string_view text, double start, double end);
  bool repeatsLast(std::u16string_view text, double start, double end) const;
  bool joinsLast(std::uint16_t traits, std::u16string_view text, double start, double end);
  bool composeWithLast(std::uint16_t traits, std::u16string_view text, double start, double end);
  void append(std::uint16_t traits, std::u16string_view text, double start, double end);
  void openFragment(double start);
  void closeFragment(bool atBlank);
  std::uint32_t fontOffset(const Font* font);
  bool shows(double start, double end) const {
    const double middle = (start + end) / 2;
    return middle >= m_visibleFrom && middle <= m_visibleTo;
  }
  void appendPlain(const CodeInfo& info, double start, double end) {
    if (!shows(start, end)) {
      return;
    }
    m_glyphOffsets.push_back(static_cast<std::uint32_t>(m_pool.size()));
    m_pool.push_back(info.text);
    m_current.traits |= info.traits;
    m_lastTraits = info.traits;
    m_lastStart = start;
    m_lastEnd = end;
    m_keepsEnd = false;
  }

  Rect m_visible;
  JoiningTolerance m_tolerance;
  GlyphRun m_run;
  double m_runStart = 0; ///< of the run's origin along the heading
  double m_visibleFrom = 0;
  double m_visibleTo = 0;

  Fragment m_current;
  Point m_currentDirection;
  // The last glyph, from the run's origin.
  double m_lastStart = 0;
  double m_lastEnd = 0;
  double m_partingShift = 0; ///< across, from the fragment's baseline to the new run's
  Point m_endPoint;          ///< the same on the page, between runs

  std::u16string m_replacement;
  std::vector<CapturedRun> m_capturedRuns;
  std::vector<CapturedGlyph> m_captured;
  double m_capturedGap = 0;
  std::uint32_t m_enteredRun = 0;

  GlyphRun m_echoRun;
  std::vector<EchoGlyph> m_echo;
  std::size_t m_runGlyph = 0; ///< the first of the run

  const Font* m_lastFont = nullptr;
  std::uint32_t m_lastFontOffset = 0;
  std::vector<std::pair<const Font*, std::uint32_t>> m_fontOffsets;
  std::vector<char16_t> m_pool;
  std::vector<std::uint32_t> m_glyphOffsets;
  std::vector<Fragment> m_fragments;
  std::size_t m_unknownGlyphs = 0;
  std::size_t m_lostGlyphs = 0; ///< of these, the ones that nothing at all is known of

  bool m_open = false; ///< m_current may grow
  bool m_currentVertical = false;
  bool m_capturing = false;
  bool m_echoing = false;  ///< the run may repeat the one before
  bool m_keepsEnd = false; ///< the run shows a mark, which moves nothing
  // A gap, or a step back, ends the fragment unless the next glyph is a mark or an accent that
  // belongs to it, or repeats its last one.
  bool m_parting = false;
  bool m_steppedBack = false; ///< no farther than kerning does; m_parting as well
  bool m_narrowGap = false;   ///< parts no characters that know no blanks; m_parting as well
  std::uint8_t m_heading = 0;
  std::uint16_t m_lastTraits = 0; ///< of the last glyph
};

} // namespace glyphrun
