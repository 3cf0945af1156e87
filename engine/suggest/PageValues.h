// PageValues: places of pages where a value stands that may name a document.
#pragma once

#include "engine/suggest/PageSample.h"

#include <QString>

#include <vector>

namespace folivex {

/// A value is found again on other pages by the label in front of it, or by its place.
struct ValuePlace {
  enum class Kind {
    BehindLabel, ///< the word behind the label, on its line or the next one
    LineOfLabel, ///< all words of that line that follow the label
    AtPlace      ///< the word at h, v
  };

  Kind kind = Kind::AtPlace;
  TextId label = noText;  ///< its last word
  TextId before = noText; ///< the word in front of that, where the last alone is not enough
  int labelH = 0;         ///< where the label stands on the first page, as a search is typed
  int labelV = 0;
  bool labelMoves = false;
  int h = 0; ///< of the value: from h to highH, as a search is typed
  int highH = 0;
  int rawH = 0; ///< the same as a name is typed
  int highRawH = 0;
  int v = 0;
  bool valueMoves = false; ///< up or down

  std::vector<QString> texts; ///< one a page; empty where the page has none
  double worth = 0;           ///< how well the texts would name documents
};

/// What texts look like, to tell a name from a date, an amount or a part of a sentence.
double worthOf(const std::vector<QString>& texts, bool hasLabel, bool endsWithColon);

/// The values of these pages, the worthiest first, a few dozen at most. `mostMissing`: how many of
/// the pages may lack one.
std::vector<ValuePlace> findValues(const PageSample& sample, const std::vector<int>& pages,
                                   int mostMissing);

} // namespace folivex
