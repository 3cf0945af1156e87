#include "Fragments.h"

#include "Unicode.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace glyphrun {

namespace {

// Part of an em by which baselines may differ and still be one line to the eye.
constexpr float sliver = 0.1F;
constexpr float smallestSliver = 0.2F;
// Two lines are never so near.
constexpr float widestSliver = 0.3F;
// A second drawing for boldness is set off by less than this part of an em.
constexpr float boldShift = 0.12F;
// Kerning reaches back no farther than this part of an em.
constexpr float deepestOverlap = 0.25F;

} // namespace

Point headingVector(std::uint8_t heading) {
  switch (heading & 3) {
  case HeadingDown:
    return {0, 1};
  case HeadingLeft:
    return {-1, 0};
  case HeadingUp:
    return {0, -1};
  default:
    return {1, 0};
  }
}

void LineJoiner::run() {
  std::vector<std::uint32_t> order;
  order.reserve(m_fragments.size());
  for (std::uint32_t i = 0; i < m_fragments.size(); ++i) {
    order.push_back(i);
  }

  const auto above = [this](std::uint32_t a, std::uint32_t b) {
    const Fragment& left = m_fragments[a];
    const Fragment& right = m_fragments[b];
    if (left.heading != right.heading || left.angle != right.angle) {
      return left.heading != right.heading ? left.heading < right.heading
                                           : left.angle < right.angle;
    }
    return left.across < right.across;
  };
  if (!std::is_sorted(order.begin(), order.end(), above)) {
    std::stable_sort(order.begin(), order.end(), above);
  }

  for (std::size_t from = 0; from < order.size();) {
    const Fragment& first = m_fragments[order[from]];
    std::size_t to = from + 1;
    for (; to < order.size(); ++to) {
      const Fragment& last = m_fragments[order[to - 1]];
      const Fragment& next = m_fragments[order[to]];
      const float em = std::min({first.em, last.em, next.em});
      const float allowed = std::clamp(smallestSliver, sliver * em, widestSliver * em);
      if (next.heading != first.heading || next.angle != first.angle ||
          next.across - last.across > allowed || next.across - first.across > 2 * allowed) {
        break;
      }
    }
    const float line = m_fragments[order[from + (to - from) / 2]].across;
    for (std::size_t i = from; i < to; ++i) {
      m_fragments[order[i]].line = line;
    }
    handleLine(order.data() + from, order.data() + to);
    from = to;
  }
}

void LineJoiner::handleLine(std::uint32_t* from, std::uint32_t* to) {
  const auto before = [this](std::uint32_t a, std::uint32_t b) {
    return m_fragments[a].start < m_fragments[b].start;
  };
  if (!std::is_sorted(from, to, before)) {
    std::stable_sort(from, to, before);
  }

  for (std::uint32_t* at = from; at != to; ++at) {
    dropRepeats(from, at);
  }
  std::uint32_t* last = nullptr;
  for (std::uint32_t* at = from; at != to; ++at) {
    Fragment& fragment = m_fragments[*at];
    if ((fragment.state & FragmentRepeats) != 0) {
      continue;
    }
    if (last != nullptr && touches(m_fragments[*last], fragment)) {
      m_fragments[*last].next = static_cast<std::int32_t>(*at);
      fragment.state |= FragmentContinues;
    }
    last = at;
  }
}

// Where a piece with a blank in it is drawn twice, the second drawing of what stands before the
// blank is alone, while the first one ends a longer word. Of glyphs that nothing is known of nobody
// can say that they are the same.
bool LineJoiner::repeatsEndOf(const Fragment& earlier, const Fragment& fragment) const {
  const float glyph = (earlier.end - earlier.start) / static_cast<float>(earlier.glyphs);
  const float shift = std::min(boldShift * std::min(fragment.em, earlier.em), glyph / 2);
  return std::abs(fragment.end - earlier.end) < shift && fragment.length < earlier.length &&
         (fragment.traits & TraitUnknown) == 0 &&
         std::memcmp(&m_pool[earlier.text + earlier.length - fragment.length],
                     &m_pool[fragment.text], fragment.length * sizeof(char16_t)) == 0;
}

// Text drawn twice for boldness begins at the same place, give or take. One of the two may go on
// farther, where the text behind it touches.
void LineJoiner::dropRepeats(const std::uint32_t* from, const std::uint32_t* at) {
  constexpr int neighbours = 6;
  Fragment& fragment = m_fragments[*at];
  for (const std::uint32_t* back = at; back != from && at - back < neighbours;) {
    Fragment& earlier = m_fragments[*--back];
    if (fragment.start - earlier.start > boldShift * std::min(fragment.em, earlier.em)) {
      if (repeatsEndOf(earlier, fragment)) {
        fragment.state |= FragmentRepeats;
      }
      return;
    }
    const std::uint32_t shared = std::min(fragment.length, earlier.length);
    // Narrow digits stand nearer to each other than wide ones to their second drawing.
    const float glyph = (earlier.end - earlier.start) / static_cast<float>(earlier.glyphs);
    if ((earlier.state & FragmentRepeats) != 0 || fragment.start - earlier.start >= glyph / 2 ||
        std::memcmp(&m_pool[earlier.text], &m_pool[fragment.text], shared * sizeof(char16_t)) !=
            0) {
      continue;
    }
    Fragment& shorter = fragment.length <= earlier.length ? fragment : earlier;
    shorter.state |= FragmentRepeats;
    return;
  }
}

bool LineJoiner::isPunctuationAlone(const Fragment& fragment) const {
  const char16_t* text = &m_pool[fragment.text];
  return std::all_of(text, text + fragment.length, isPunctuation);
}

bool LineJoiner::touches(const Fragment& left, const Fragment& right) const {
  // What is drawn from the right, such as the colon of a label, has its blank at the other end.
  const auto isDrawnFromRight = [&] {
    return (left.traits & TraitRightToLeft) != 0 ||
           ((right.traits & TraitRightToLeft) != 0 && isPunctuationAlone(left));
  };
  if ((left.state & FragmentEndsAtBlank) != 0 && !isDrawnFromRight()) {
    return false;
  }
  const float em = std::min(left.em, right.em);
  const float gap = right.start - left.end;
  return gap <= static_cast<float>(m_tolerance) * em && gap >= -deepestOverlap * em &&
         std::max(left.em, right.em) < 3 * em;
}

} // namespace glyphrun
