// Lines of fragments: which stand on one baseline, which repeat each other, which touch.
#pragma once

#include "Geometry.h"

#include <cstdint>
#include <vector>

namespace glyphrun {

/// Direction of a fragment's text on the shown page.
enum Heading : std::uint8_t {
  HeadingRight,
  HeadingDown,
  HeadingLeft,
  HeadingUp,
  HeadingVertical, ///< glyphs below one another; added to one of the four above
  HeadingOblique = 8
};

/// The unit vector of the four upright headings.
Point headingVector(std::uint8_t heading);

enum FragmentState : std::uint8_t {
  FragmentEndsAtBlank = 1,
  FragmentRepeats = 2,  ///< draws again what another one shows
  FragmentContinues = 4 ///< is part of the word that an earlier one of its line begins
};

/// A stretch of glyphs drawn one after the other that touch.
struct Fragment {
  std::uint32_t text = 0;
  std::uint32_t length = 0;
  std::uint32_t firstGlyph = 0;
  std::uint32_t glyphs = 0;
  std::uint32_t font = 0;
  std::int32_t next = -1; ///< the fragment that continues the word
  float start = 0;        ///< along the direction, from a common origin
  float end = 0;
  float across = 0; ///< baseline across the direction
  float em = 0;
  float line = 0; ///< `across` of the line it belongs to
  float ascent = 0;
  float descent = 0;
  std::uint8_t heading = 0; ///< Heading
  std::uint8_t state = 0;   ///< FragmentState
  std::uint16_t traits = 0; ///< all traits of its glyphs
  std::int16_t angle = 0;   ///< of an oblique heading, in thousandths of a radian
  Point origin;
};

/// Groups fragments to lines, marks repeated ones and links those that form one word.
class LineJoiner {
public:
  LineJoiner(std::vector<Fragment>& fragments, const std::vector<char16_t>& pool, double tolerance)
      : m_fragments(fragments), m_pool(pool), m_tolerance(tolerance) {}

  void run();

private:
  void handleLine(std::uint32_t* from, std::uint32_t* to);
  void dropRepeats(const std::uint32_t* from, const std::uint32_t* at);
  bool repeatsEndOf(const Fragment& earlier, const Fragment& fragment) const;
  bool isPunctuationAlone(const Fragment& fragment) const;
  bool touches(const Fragment& left, const Fragment& right) const;

  std::vector<Fragment>& m_fragments;
  const std::vector<char16_t>& m_pool;
  double m_tolerance;
};

} // namespace glyphrun
