// The words of one page, as a value: nothing in it refers to the file that it came from.
#pragma once

#include <cstdint>
#include <vector>

namespace glyphrun {

/// The gravest last; the values are those of the C interface.
enum class PageState : std::int32_t { Good = 0, Empty = 1, Unreadable = 2, Damaged = 3 };

struct Word {
  std::uint32_t text = 0; ///< offset in PageWords::pool of the text, which ends with a zero
  std::uint32_t font = 0; ///< offset of the font's name, likewise
  std::int32_t h = 0;     ///< left end of the baseline, points from the left
  std::int32_t v = 0;     ///< baseline, points from the top
  std::int32_t fontSize = 0;
  float left = 0;
  float top = 0;
  float right = 0;
  float bottom = 0;
};

struct PageWords {
  std::int32_t page = 0; ///< from 1
  PageState state = PageState::Empty;
  bool outOfMemory = false;
  std::vector<Word> words;            ///< in the order in which the page draws them
  std::vector<std::uint32_t> reading; ///< indices into `words` in reading order
  std::vector<char16_t> pool;

  void clear() {
    page = 0;
    state = PageState::Empty;
    outOfMemory = false;
    words.clear();
    reading.clear();
    pool.clear();
  }

  const char16_t* textOf(const Word& word) const { return pool.data() + word.text; }
};

} // namespace glyphrun
