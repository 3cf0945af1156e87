#include "ReadingOrder.h"

#include "Fragments.h"
#include "Unicode.h"

#include <algorithm>
#include <cmath>

namespace glyphrun {

namespace {

bool runsSideways(const Fragment& fragment) {
  return fragment.heading == HeadingRight || fragment.heading == HeadingLeft;
}

/// The upright box of a word from its first fragment's start to `end`.
Rect boxOf(const Fragment& first, float end) {
  const float up = first.ascent * first.em;
  const float down = -first.descent * first.em;
  if (first.heading >= HeadingOblique) {
    const double reach = std::max(static_cast<double>(end - first.start), 0.0);
    return {first.origin.x, first.origin.y - up, first.origin.x + reach, first.origin.y + down};
  }
  if (first.heading == HeadingRight) {
    const float low = first.line - up;
    const float high = first.line + down;
    return {std::min(first.start, end), std::min(low, high), std::max(first.start, end),
            std::max(low, high)};
  }
  const Point along = headingVector(first.heading);
  const Point across{-along.y, along.x};
  const bool vertical = first.heading >= HeadingVertical;
  const double half = first.em / 2;
  const double low = vertical ? first.line - half : first.line - up;
  const double high = vertical ? first.line + half : first.line + down;
  const Point a = along * first.start + across * low;
  const Point b = along * end + across * high;
  return {std::min(a.x, b.x), std::min(a.y, b.y), std::max(a.x, b.x), std::max(a.y, b.y)};
}

enum class WordKind : std::uint8_t { Neutral, LeftToRight, RightToLeft };

WordKind kindOf(const char16_t* text) {
  const std::u16string_view view(text);
  bool letters = false;
  for (std::size_t at = 0; at < view.size();) {
    const std::uint16_t traits = traitsOf(takeCodePoint(view, at));
    if ((traits & TraitRightToLeft) != 0) {
      return WordKind::RightToLeft;
    }
    letters = letters || (traits & TraitLetter) != 0;
  }
  return letters ? WordKind::LeftToRight : WordKind::Neutral;
}

bool isRightToLeftLabel(const char16_t* text) {
  return kindOf(text) == WordKind::RightToLeft && std::u16string_view(text).ends_with(u':');
}

// Most of its words tell; but a label stands before what it names.
bool isReadFromRight(const PageWords& page, const std::uint32_t* from, const std::uint32_t* to) {
  const auto textAt = [&](const std::uint32_t* at) { return page.textOf(page.words[*at]); };
  if (to - from > 1 && isRightToLeftLabel(textAt(to - 1))) {
    return true;
  }
  std::ptrdiff_t balance = 0;
  for (const std::uint32_t* at = from; at != to; ++at) {
    const WordKind kind = kindOf(textAt(at));
    balance += kind == WordKind::RightToLeft ? 1 : kind == WordKind::LeftToRight ? -1 : 0;
  }
  return balance > 0 || (balance == 0 && !isRightToLeftLabel(textAt(from)));
}

// In a right-to-left line words are read from the right; a stretch of left-to-right words in it,
// with the numbers between and behind them, keeps its own order.
void orderRightToLeftLine(const PageWords& page, std::uint32_t* from, std::uint32_t* to) {
  if (!isReadFromRight(page, from, to)) {
    return;
  }
  std::reverse(from, to);
  for (std::uint32_t* at = from; at != to;) {
    if (kindOf(page.textOf(page.words[*at])) == WordKind::RightToLeft) {
      ++at;
      continue;
    }
    std::uint32_t* end = at;
    bool letters = false;
    for (; end != to; ++end) {
      const WordKind kind = kindOf(page.textOf(page.words[*end]));
      if (kind == WordKind::RightToLeft) {
        break;
      }
      letters = letters || kind == WordKind::LeftToRight;
    }
    if (letters) {
      std::reverse(at, end);
    }
    at = end;
  }
}

} // namespace

void WordWriter::collectText(const Fragment& first, bool rightToLeft) {
  m_text.clear();
  for (const Fragment* fragment = &first;;
       fragment = &m_fragments[static_cast<std::size_t>(fragment->next)]) {
    for (std::uint32_t i = 0; i < fragment->glyphs; ++i) {
      const std::uint32_t glyph = fragment->firstGlyph + i;
      const std::uint32_t begin = m_glyphOffsets[glyph];
      const std::uint32_t end =
          i + 1 < fragment->glyphs ? m_glyphOffsets[glyph + 1] : fragment->text + fragment->length;
      const std::size_t at = m_text.size();
      m_text.append(&m_pool[begin], end - begin);
      // A glyph for several letters is written in reading order within a word that is not.
      if (rightToLeft && end - begin > 1) {
        std::reverse(m_text.begin() + static_cast<std::ptrdiff_t>(at), m_text.end());
      }
    }
    if (fragment->next < 0) {
      break;
    }
  }
}

Word WordWriter::write(const Fragment& first) {
  Word word;
  std::uint16_t traits = first.traits;
  float end = first.end;
  Rect box = boxOf(first, first.end);
  for (std::int32_t next = first.next; next >= 0;) {
    const Fragment& fragment = m_fragments[static_cast<std::size_t>(next)];
    traits |= fragment.traits;
    end = std::max(end, fragment.end);
    const Rect more = boxOf(fragment, fragment.end);
    box = {std::min(box.left, more.left), std::min(box.top, more.top),
           std::max(box.right, more.right), std::max(box.bottom, more.bottom)};
    next = fragment.next;
  }
  const bool rightToLeft = (traits & TraitRightToLeft) != 0 && first.heading < HeadingVertical;
  m_anyRightToLeft = m_anyRightToLeft || rightToLeft;
  word.text = first.text;
  if (first.next >= 0 || rightToLeft || (traits & TraitCombining) != 0) {
    collectText(first, rightToLeft);
    if (rightToLeft) {
      visualToLogical(m_text);
    }
    if ((traits & (TraitCombining | TraitRightToLeft)) != 0) {
      compose(m_text);
    }
    word.text = static_cast<std::uint32_t>(m_pool.size());
    m_pool.insert(m_pool.end(), m_text.begin(), m_text.end());
    m_pool.push_back(0);
  }

  Point position = first.origin;
  if (runsSideways(first)) {
    position.x = first.heading == HeadingRight ? first.start : -end;
    position.y = first.heading == HeadingRight ? first.line : -first.line;
  }
  word.h = rounded(position.x);
  word.v = rounded(position.y);
  word.left = static_cast<float>(box.left);
  word.top = static_cast<float>(box.top);
  word.right = static_cast<float>(box.right);
  word.bottom = static_cast<float>(box.bottom);
  return word;
}

void sortForReading(PageWords& page, bool anyRightToLeft) {
  page.reading.resize(page.words.size());
  for (std::uint32_t i = 0; i < page.reading.size(); ++i) {
    page.reading[i] = i;
  }
  const auto before = [&page](std::uint32_t a, std::uint32_t b) {
    const Word& left = page.words[a];
    const Word& right = page.words[b];
    return left.v != right.v ? left.v < right.v : left.h < right.h;
  };
  if (!std::is_sorted(page.reading.begin(), page.reading.end(), before)) {
    std::stable_sort(page.reading.begin(), page.reading.end(), before);
  }
  if (!anyRightToLeft) {
    return;
  }
  std::uint32_t* const all = page.reading.data();
  for (std::size_t from = 0; from < page.reading.size();) {
    std::size_t to = from + 1;
    while (to < page.reading.size() && page.words[all[to]].v == page.words[all[from]].v) {
      ++to;
    }
    orderRightToLeftLine(page, all + from, all + to);
    from = to;
  }
}

} // namespace glyphrun
