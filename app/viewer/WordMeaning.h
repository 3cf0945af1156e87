// WordMeaning: what a word or an area pointed at on a page can be meant for in a setup.
#pragma once

#include "app/viewer/PageWordMap.h"

#include <QString>

#include <span>

namespace folivex {

struct SplitSetup;

/// A word pointed at. h and v as a search counts them, lookupH and lookupV as a token of a name
/// does.
struct PickedPlace {
  QString text;
  int h = 0;
  int v = 0;
  int lookupH = 0;
  int lookupV = 0;
  int page = 0;        ///< from 1
  QString before = {}; ///< the word before it in its line; empty when it is the first
  int beforeH = 0;
};

/// A rectangle drawn on a page.
struct PickedArea : PositionRange {
  int page = 0; ///< from 1
};

enum class WordMeaning {
  Begins,          ///< documents begin with this word
  BeginsHere,      ///< ... at this place only
  Ends,            ///< documents end with it
  Names,           ///< files are named by this word, or what stands in its stead
  NextNames,       ///< ... by the word behind it
  RestOfLineNames, ///< ... by the rest of the line
  PlaceNames,      ///< ... by what stands at this place
  AddressBehind    ///< the e-mail address stands behind it
};

enum class AreaMeaning {
  Begins,     ///< documents begin with any word in the area
  SearchHere, ///< the search word counts in the area only
  Names,      ///< files are named by what stands in the area
  Address     ///< the e-mail address stands in the area
};

/// In the order of a menu.
std::span<const WordMeaning> wordMeanings();
std::span<const AreaMeaning> areaMeanings();
/// As a menu offers it, with its mnemonic.
QString meaningText(WordMeaning meaning);
QString meaningText(AreaMeaning meaning);

/// Whether a setup can say it: a place outside the page's positive positions has other meanings.
bool canMean(WordMeaning meaning, const PickedPlace& place);

/// Sets every setting that makes it come true, and no other. Returns a sentence that tells it.
QString takeMeaning(SplitSetup& setup, WordMeaning meaning, const PickedPlace& place);
QString takeMeaning(SplitSetup& setup, AreaMeaning meaning, const PickedArea& area);

} // namespace folivex
