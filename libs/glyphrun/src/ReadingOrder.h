// From linked fragments to words with rounded positions, and the order in which they are read.
#pragma once

#include "Fragments.h"
#include "PageWords.h"

#include <string>
#include <vector>

namespace glyphrun {

/// Makes words of fragments; text that must be put together is added to the pool.
class WordWriter {
public:
  WordWriter(const std::vector<Fragment>& fragments, std::vector<char16_t>& pool,
             const std::vector<std::uint32_t>& glyphOffsets)
      : m_fragments(fragments), m_pool(pool), m_glyphOffsets(glyphOffsets) {}

  /// The word that begins with a fragment; its font is left to the caller.
  Word write(const Fragment& first);
  bool anyRightToLeft() const { return m_anyRightToLeft; }

private:
  void collectText(const Fragment& first, bool rightToLeft);

  const std::vector<Fragment>& m_fragments;
  std::vector<char16_t>& m_pool;
  const std::vector<std::uint32_t>& m_glyphOffsets;
  std::u16string m_text;
  bool m_anyRightToLeft = false;
};

/// Fills PageWords::reading.
void sortForReading(PageWords& page, bool anyRightToLeft);

} // namespace glyphrun
