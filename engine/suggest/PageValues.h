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
    BesideLabel, ///< the next word to the right, where lines are not quite even
    LineOfLabel, ///< the words of that line that follow the label, up to a gap
    AtPlace,     ///< the word at h, v
    LineAtPlace  ///< and those behind it on its line, up to a gap
  };
  bool isLine() const { return kind == Kind::LineOfLabel || kind == Kind::LineAtPlace; }
  bool hasLabel() const { return kind != Kind::AtPlace && kind != Kind::LineAtPlace; }

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
  int v = 0; ///< to highV
  int highV = 0;
  bool valueMoves = false; ///< up or down
  TextId head = noText;    ///< the word right above the value, when it is always the same
  int lowStep = 0;         ///< how far below the label the value stands, at least
  int highStep = 0;
  int lineEndsBefore = 0; ///< h of what stands behind the gap; 0 when nothing does

  std::vector<QString> texts; ///< one a page; empty where the page has none
  double worth = 0;           ///< how well the texts would name documents
};

/// What texts look like, to tell a name from a date, an amount or a part of a sentence.
double worthOf(const std::vector<QString>& texts, bool hasLabel, bool endsWithColon);

/// The values of these pages, the worthiest first, a few dozen at most. `mostMissing`: how many of
/// the pages may lack one.
std::vector<ValuePlace> findValues(const PageSample& sample, const std::vector<int>& pages,
                                   int mostMissing);

/// The texts of a value that was found on some pages, on these.
std::vector<QString> textsOf(const PageSample& sample, const ValuePlace& value,
                             const std::vector<int>& pages);

} // namespace folivex
