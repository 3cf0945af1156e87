// WordMeaning: what a word or an area pointed at on a page can be meant for in a setup.
#pragma once

#include "engine/match/PositionRange.h"

#include <QString>

#include <vector>

namespace folivex {

struct SplitSetup;

/// A word or an area pointed at.
struct Picked {
  PositionRange range;          ///< as a search counts it; of a word one place
  QString text = {};            ///< of the word; empty for an area
  int lookupH = 0, lookupV = 0; ///< where a token of a name finds the word
  QString before = {};          ///< the word before it in its line; empty when it is the first
  int beforeH = 0;
};

enum class Meaning {
  Begins,          ///< documents begin with this word
  BeginsHere,      ///< ... at this place only
  Ends,            ///< documents end with it
  Names,           ///< files are named by this word, or what stands in its stead
  NextNames,       ///< ... by the word behind it
  RestOfLineNames, ///< ... by the rest of the line
  PlaceNames,      ///< ... by what stands at this place
  AddressBehind,   ///< the e-mail address stands behind it

  AreaBegins,   ///< documents begin with any word in the area
  AreaSearched, ///< the search word counts in the area only
  AreaNames,    ///< files are named by what stands in the area
  AreaAddress   ///< the e-mail address stands in the area
};

/// What it can be meant for, in the order of a menu.
std::vector<Meaning> meaningsOf(const Picked& picked);
/// As a menu offers it, with its mnemonic.
QString meaningText(Meaning meaning);
/// Whether a setup can say it: a place outside the page's positive positions has other meanings.
bool canMean(Meaning meaning, const Picked& picked);
/// Sets every setting that makes it come true, and no other. Returns a sentence that tells it.
QString takeMeaning(SplitSetup& setup, Meaning meaning, const Picked& picked);

} // namespace folivex
