// LineText: words that belong together on a line.
#pragma once

#include "engine/suggest/PageSample.h"

namespace folivex {

/// Whether the word goes on with the line of the one before, with no more than a blank between.
bool continuesLine(const PageSample& sample, std::span<const SampleWord> words, std::size_t word);

/// The first of the words and those of its line that follow it, up to a gap that no blank has. The
/// least h of what stands behind a gap is kept in `gap`, which is 0 before the first.
QString lineFrom(const PageSample& sample, std::span<const SampleWord> words, int& gap);

} // namespace folivex
