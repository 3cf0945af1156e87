// Lines of fragments: which stand on one baseline, which repeat each other, which touch.
#pragma once

#include "WordAssembler.h"

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

/// Groups fragments to lines, marks repeated ones and links those that form one word.
class LineJoiner {
public:
  LineJoiner(std::vector<Fragment>& fragments, const std::vector<char16_t>& pool, double tolerance)
      : m_fragments(fragments), m_pool(pool), m_tolerance(tolerance) {}

  void run();

private:
  void handleLine(std::uint32_t* from, std::uint32_t* to);
  void dropRepeats(const std::uint32_t* from, const std::uint32_t* at);
  bool touches(const Fragment& left, const Fragment& right) const;

  std::vector<Fragment>& m_fragments;
  const std::vector<char16_t>& m_pool;
  double m_tolerance;
};

} // namespace glyphrun
