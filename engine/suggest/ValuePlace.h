// ValuePlace: a place of pages where a value stands that may name a document.
#pragma once

#include "engine/suggest/PageSample.h"

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
  void reach(const SampleWord& value) {
    h.reach(value.h);
    rawH.reach(value.rawH);
    v.reach(value.v);
  }

  Kind kind = Kind::AtPlace;
  TextId label = noText;  ///< its last word
  TextId before = noText; ///< the word in front of that, where the last alone is not enough
  Span labelH;            ///< of the label, as a search is typed
  Span labelV;
  Span h;    ///< of the value, as a search is typed
  Span rawH; ///< the same as a name is typed
  Span v;
  Span step;              ///< how far below the label the value stands
  Span aside;             ///< and how far to the right of it; 0 of a label that begins its line
  TextId head = noText;   ///< the word right above the value, when it is always the same
  bool isPart = false;    ///< others follow it closely on its line
  int lineEndsBefore = 0; ///< h of what stands behind the gap; 0 when nothing does

  std::vector<QString> texts; ///< one a page; empty where the page has none
  double worth = 0;           ///< how well the texts would name documents
};

} // namespace folivex
