#include "app/groups/PickTargets.h"

#include "engine/setup/SplitSetup.h"

#include <array>

namespace folivex {

namespace {

using Place = const PickedPlace&;
using Area = const PickedArea&;

void setFindPosition(SplitSetup& setup, Place place) {
  setup.matchPosH = QString::number(place.h);
  setup.matchPosV = QString::number(place.v);
}

void setFindArea(SplitSetup& setup, Area area) {
  setup.matchPosH = spanText(area.hFrom, area.hTo);
  setup.matchPosV = spanText(area.vFrom, area.vTo);
}

template <QString SplitSetup::*affix> void appendPlace(SplitSetup& setup, Place place) {
  setup.*affix += QStringLiteral("[POS%1,%2]").arg(place.lookupH).arg(place.lookupV);
}

template <QString SplitSetup::*affix> void appendArea(SplitSetup& setup, Area area) {
  setup.*affix += QStringLiteral("[POS%1,%2]")
                      .arg(spanText(area.hFrom, area.hTo), spanText(area.vFrom, area.vTo));
}

struct Target {
  const char* text;
  void (*takePlace)(SplitSetup&, Place); ///< null: a word means nothing here
  void (*takeArea)(SplitSetup&, Area);   ///< null: an area means nothing here
};

constexpr std::array targets = {
    Target{"Find word(s) and position",
           [](SplitSetup& setup, Place place) {
             setup.findString = place.text;
             setFindPosition(setup, place);
           },
           setFindArea},
    Target{"Find word(s)", [](SplitSetup& setup, Place place) { setup.findString = place.text; },
           nullptr},
    Target{"At Position h, v", setFindPosition, setFindArea},
    Target{"Extract until word(s) and position",
           [](SplitSetup& setup, Place place) {
             setup.extractUntil = place.text;
             setup.untilMatchPosH = place.h;
             setup.untilMatchPosV = place.v;
           },
           nullptr},
    Target{"Use as filename after text",
           [](SplitSetup& setup, Place place) { setup.extractFileName = place.text; }, nullptr},
    Target{"Prefix: the word at this position", appendPlace<&SplitSetup::prefixFileName>,
           appendArea<&SplitSetup::prefixFileName>},
    Target{"Postfix: the word at this position", appendPlace<&SplitSetup::postfixFileName>,
           appendArea<&SplitSetup::postfixFileName>},
    Target{"E-mail address: where it stands", nullptr,
           [](SplitSetup& setup, Area area) {
             setup.emailMatchHorizFrom = area.hFrom;
             setup.emailMatchHorizTo = area.hTo;
             setup.emailMatchVert = area.vFrom;
             setup.emailMatchVertTo = area.vTo;
           }},
};

const Target* targetAt(int index) {
  const bool isThere = index >= 0 && static_cast<std::size_t>(index) < targets.size();
  return isThere ? &targets[static_cast<std::size_t>(index)] : nullptr;
}

} // namespace

const QStringList& pickTargetTexts() {
  static const QStringList texts = [] {
    QStringList all;
    for (const Target& target : targets) {
      all += QString::fromLatin1(target.text);
    }
    return all;
  }();
  return texts;
}

QString takePick(SplitSetup& setup, int target, const PickedPlace& place) {
  const Target* taker = targetAt(target);
  if (taker == nullptr || taker->takePlace == nullptr) {
    return QStringLiteral("Draw a rectangle: this takes an area, not a word.");
  }
  taker->takePlace(setup, place);
  return QStringLiteral("%1: taken from \"%2\" at %3, %4.")
      .arg(QString::fromLatin1(taker->text), place.text)
      .arg(place.h)
      .arg(place.v);
}

QString takePick(SplitSetup& setup, int target, const PickedArea& area) {
  const Target* taker = targetAt(target);
  if (taker == nullptr || taker->takeArea == nullptr) {
    return QStringLiteral("Click a word: this takes a word, not an area.");
  }
  taker->takeArea(setup, area);
  return QStringLiteral("%1: h %2, v %3.")
      .arg(QString::fromLatin1(taker->text), spanText(area.hFrom, area.hTo),
           spanText(area.vFrom, area.vTo));
}

} // namespace folivex
