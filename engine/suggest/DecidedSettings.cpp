#include "engine/suggest/DecidedSettings.h"

#include "engine/setup/SplitSetup.h"

#include <array>

namespace folivex {

namespace {

// Everything that decides about ranges and names is the proposal's.
constexpr std::array decidingFlags = {
    &SplitSetup::useSourceFileName, &SplitSetup::useSourceFileNamePost,
    &SplitSetup::ignoreCase,        &SplitSetup::rotated,
    &SplitSetup::createList,        &SplitSetup::alwaysOverwrite,
    &SplitSetup::alwaysAppend};
constexpr std::array decidingNumbers = {
    &SplitSetup::takenWordsForFileName, &SplitSetup::untilHHPosLessThan, &SplitSetup::startFromPage,
    &SplitSetup::startEndPage,          &SplitSetup::offsetFirst,        &SplitSetup::stripEnd,
    &SplitSetup::untilMatchPosH,        &SplitSetup::untilMatchPosV};
constexpr std::array decidingTexts = {
    &SplitSetup::pageExtract,       &SplitSetup::extract,
    &SplitSetup::addBWords,         &SplitSetup::firstCharOfWord,
    &SplitSetup::anyCharOfWord,     &SplitSetup::findString,
    &SplitSetup::prefixFileName,    &SplitSetup::postfixFileName,
    &SplitSetup::extractUntil,      &SplitSetup::extractFileName,
    &SplitSetup::matchPosH,         &SplitSetup::matchPosV,
    &SplitSetup::reportRemoveChars, &SplitSetup::otherSettingsRemoveText};
// Where the e-mail addresses are; kept as it was when the pages have none.
constexpr std::array mailNumbers = {&SplitSetup::emailMatchVert, &SplitSetup::emailMatchVertTo,
                                    &SplitSetup::emailMatchHorizFrom,
                                    &SplitSetup::emailMatchHorizTo};
constexpr std::array mailTexts = {&SplitSetup::emailHorizAfterText,
                                  &SplitSetup::emailHorizBeforeText};

template <typename Fields> void take(const Fields& fields, const SplitSetup& from, SplitSetup& to) {
  for (const auto field : fields) {
    to.*field = from.*field;
  }
}

} // namespace

SplitSetup withoutRules(SplitSetup setup) {
  SplitSetup plain;
  for (const auto text : decidingTexts) {
    (plain.*text).clear();
  }
  plain.addBWords = QStringLiteral(" ");
  plain.startFromPage = 1;
  take(decidingFlags, plain, setup);
  take(decidingNumbers, plain, setup);
  take(decidingTexts, plain, setup);
  return setup;
}

void takeRules(const SplitSetup& proposed, SplitSetup& setup) {
  take(decidingFlags, proposed, setup);
  take(decidingNumbers, proposed, setup);
  take(decidingTexts, proposed, setup);
  take(mailNumbers, proposed, setup);
  take(mailTexts, proposed, setup);
}

} // namespace folivex
