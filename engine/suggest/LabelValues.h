// LabelValues: the values that stand behind labels.
#pragma once

#include "engine/suggest/ValuePlace.h"

namespace folivex {

/// Points by which words of a line may stand above or below each other in recognised text.
inline constexpr int unevenPrint = 3;

/// A word that all pages have, and the one in front of it when that belongs to the label.
struct Label {
  TextId text = noText;
  TextId before = noText;
  bool operator==(const Label&) const = default;
};

/// Whether it can say what stands behind it: it has a word or a number sign, and is no number,
/// telephone number, web or e-mail address itself.
bool isPlausible(const PageSample& sample, const Label& label);

/// For each label the line, the next word to the right and the word that follow its first
/// occurrence on each page; of the first two only those that are something else than the last.
std::vector<ValuePlace> valuesBehind(const PageSample& sample, const std::vector<int>& pages,
                                     const std::vector<Label>& labels);

} // namespace folivex
