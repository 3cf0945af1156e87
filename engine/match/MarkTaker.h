// MarkTaker: told of the words that make documents and names.
#pragma once

#include "engine/match/WordPlacer.h"

#include <QStringView>

namespace folivex {

/// Told while pages are matched, in page order. Page indexes count from 0; positions are those at
/// which words count as standing. Of several words that match together the last one is told, with
/// the text of all.
class MarkTaker {
public:
  virtual ~MarkTaker() = default;

  /// A document begins with this text.
  virtual void begins(int pageIndex, QStringView text, const PlacedWord& last) = 0;
  /// The until text ends the document.
  virtual void ends(int pageIndex, QStringView text, const PlacedWord& last) = 0;
  /// The word goes into the name of the open document; with `anew` those told since its beginning
  /// do not.
  virtual void names(int pageIndex, const PlacedWord& word, bool anew) = 0;
};

} // namespace folivex
