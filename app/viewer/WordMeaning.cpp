#include "app/viewer/WordMeaning.h"

#include "engine/match/PositionRule.h"
#include "engine/setup/FileNameMethod.h"
#include "engine/setup/SplitMethod.h"
#include "engine/setup/SplitSetup.h"

#include <QRegularExpression>

#include <array>

namespace folivex {

namespace {

using Place = const PickedPlace&;
using Area = const PickedArea&;

SplitMethod methodOf(const SplitSetup& setup) {
  return splitMethodOf(setup.pageExtract);
}

/// Names that came from bookmarks would have nothing to come from.
void splitBy(SplitSetup& setup, SplitMethod method) {
  if (splitTraitsOf(setup.pageExtract).fromBookmarks &&
      fileNameMethodOf(setup.extract) == FileNameMethod::Bookmark) {
    setup.extract = fileNameMethodTexts()[static_cast<int>(FileNameMethod::NextWord)];
  }
  if (methodOf(setup) != method) {
    setup.pageExtract = traitsOf(method).text;
  }
}

/// The method that is most like the setup's and takes the search word wherever it stands. Without
/// an until text, a method that waits for one would never begin a second document.
SplitMethod methodAnywhere(const SplitSetup& setup) {
  const bool hasUntil = !setup.extractUntil.isEmpty();
  switch (methodOf(setup)) {
  case SplitMethod::MatchToNextUniqueMatch:
  case SplitMethod::MatchToNextUniqueMatchAtPosition:
    return SplitMethod::MatchToNextUniqueMatch;
  case SplitMethod::MatchToUntil:
  case SplitMethod::MatchToUntilAtPosition:
    return hasUntil ? SplitMethod::MatchToUntil : SplitMethod::MatchToNextMatch;
  case SplitMethod::MatchedPageOnly:
    return SplitMethod::MatchedPageOnly;
  default:
    return SplitMethod::MatchToNextMatch;
  }
}

SplitMethod methodAtPosition(const SplitSetup& setup) {
  switch (methodOf(setup)) {
  case SplitMethod::MatchToNextUniqueMatch:
  case SplitMethod::MatchToNextUniqueMatchAtPosition:
    return SplitMethod::MatchToNextUniqueMatchAtPosition;
  case SplitMethod::MatchToUntilAtPosition:
    return setup.extractUntil.isEmpty() ? SplitMethod::MatchToNextMatchAtPosition
                                        : SplitMethod::MatchToUntilAtPosition;
  default:
    return SplitMethod::MatchToNextMatchAtPosition;
  }
}

bool isSame(const SplitSetup& setup, const QString& one, const QString& other) {
  return one.compare(other, setup.ignoreCase ? Qt::CaseInsensitive : Qt::CaseSensitive) == 0;
}

/// Whether a document begins with the word at this place, or with some words that it ends.
bool beginsHere(const SplitSetup& setup, Place place) {
  const SplitMethodTraits& traits = splitTraitsOf(setup.pageExtract);
  const bool isFound = setup.findString.isEmpty()
                           ? traits.atPosition
                           : isSame(setup, setup.findString.section(u' ', -1, -1), place.text);
  return isFound && (!traits.atPosition || PositionRule(setup.matchPosH, setup.matchPosV)
                                               .holds(place.h, place.v, place.text.size()));
}

/// "Account:", "No.", "Account" before "10472": says what the word behind it is.
bool isLabel(const SplitSetup& setup, Place word) {
  if (word.before.isEmpty()) {
    return false;
  }
  const auto isDigit = [](QChar character) { return character.isDigit(); };
  const bool hasDigits = std::ranges::any_of(word.before, isDigit);
  return QStringView(u":.#=").contains(word.before.back()) ||
         isSame(setup, setup.findString, word.before) ||
         (!hasDigits && std::ranges::any_of(word.text, isDigit));
}

QString nameBy(SplitSetup& setup, FileNameMethod method, const QString& told) {
  if (splitTraitsOf(setup.pageExtract).fromBookmarks) {
    return QStringLiteral("Files are named after bookmarks while documents begin at bookmarks. "
                          "Choose what they begin with first.");
  }
  setup.extract = fileNameMethodTexts()[static_cast<int>(method)];
  return told;
}

QString nameAfter(SplitSetup& setup, FileNameMethod method, const QString& text,
                  const QString& told) {
  QString answer = nameBy(setup, method, told.arg(text));
  if (namesAfterText(fileNameMethodOf(setup.extract))) {
    setup.extractFileName = text;
  }
  return answer;
}

/// The word's place becomes a part of the names, beside what else stands in front; the page's
/// number tells apart the documents that have the same word there.
QString nameByPosition(SplitSetup& setup, const QString& position, const QString& told) {
  static const QRegularExpression token(QStringLiteral("\\[POS[^\\]]*\\]"));
  const QString own = QStringLiteral("[POS%1]").arg(position);
  if (setup.useSourceFileName) {
    setup.useSourceFileName = false;
    setup.prefixFileName = QStringLiteral("[FILETITLE]_");
  }
  if (const auto found = token.match(setup.prefixFileName); found.hasMatch()) {
    setup.prefixFileName.replace(found.capturedStart(), found.capturedLength(), own);
  } else {
    setup.prefixFileName += own + u'_';
  }
  if (!splitTraitsOf(setup.pageExtract).fromBookmarks) {
    setup.extract = fileNameMethodTexts()[static_cast<int>(FileNameMethod::PageStart)];
  }
  return told;
}

QString begin(SplitSetup& setup, Place place) {
  setup.findString = place.text;
  splitBy(setup, methodAnywhere(setup));
  return QStringLiteral("Documents begin with \"%1\".").arg(place.text);
}

QString beginHere(SplitSetup& setup, Place place) {
  setup.findString = place.text;
  setup.matchPosH = QString::number(place.h);
  setup.matchPosV = QString::number(place.v);
  splitBy(setup, methodAtPosition(setup));
  return QStringLiteral("Documents begin with \"%1\" at %2.")
      .arg(place.text, positionText(place.h, place.v));
}

QString end(SplitSetup& setup, Place place) {
  setup.extractUntil = place.text;
  splitBy(setup, SplitMethod::MatchToUntil);
  return QStringLiteral("Documents end with the page of \"%1\".").arg(place.text);
}

QString nameByPlace(SplitSetup& setup, Place place) {
  return nameByPosition(setup, QStringLiteral("%1,%2").arg(place.lookupH).arg(place.lookupV),
                        QStringLiteral("Files are named by the word at %1 of their first page.")
                            .arg(positionText(place.h, place.v)));
}

QString nameByNext(SplitSetup& setup, Place place) {
  const QString told = QStringLiteral("Files are named by the word behind \"%1\".");
  return beginsHere(setup, place) ? nameBy(setup, FileNameMethod::NextWord, told.arg(place.text))
                                  : nameAfter(setup, FileNameMethod::AfterText, place.text, told);
}

/// The word pointed at stands in one document; in others it is what stands in its stead.
QString nameByWord(SplitSetup& setup, Place place) {
  if (beginsHere(setup, place)) {
    return nameBy(setup, FileNameMethod::MatchedWord,
                  QStringLiteral("Files are named by the word that documents begin with."));
  }
  if (!isLabel(setup, place)) {
    return nameByPlace(setup, place);
  }
  PickedPlace label;
  label.text = place.before;
  label.h = place.beforeH;
  label.v = place.v;
  return nameByNext(setup, label);
}

QString nameByRestOfLine(SplitSetup& setup, Place place) {
  return nameAfter(setup, FileNameMethod::AfterTextRestOfLine, place.text,
                   QStringLiteral("Files are named by the rest of the line behind \"%1\"."));
}

/// Windows that were set for another place would leave the address out.
QString findAddressBehind(SplitSetup& setup, Place place) {
  const SplitSetup fresh;
  setup.emailMatchVert = fresh.emailMatchVert;
  setup.emailMatchVertTo = fresh.emailMatchVertTo;
  setup.emailMatchHorizFrom = fresh.emailMatchHorizFrom;
  setup.emailMatchHorizTo = fresh.emailMatchHorizTo;
  setup.emailHorizAfterText = place.text;
  setup.emailHorizBeforeText.clear();
  return QStringLiteral("The e-mail address stands behind \"%1\".").arg(place.text);
}

void searchIn(SplitSetup& setup, Area area) {
  setup.matchPosH = spanText(area.hFrom, area.hTo);
  setup.matchPosV = spanText(area.vFrom, area.vTo);
  splitBy(setup, methodAtPosition(setup));
}

QString beginIn(SplitSetup& setup, Area area) {
  setup.findString.clear();
  searchIn(setup, area);
  return QStringLiteral("Documents begin with any word at %1.").arg(rangeText(area));
}

QString searchHere(SplitSetup& setup, Area area) {
  searchIn(setup, area);
  return QStringLiteral("\"%1\" begins a document at %2 only.")
      .arg(setup.findString, rangeText(area));
}

QString nameByArea(SplitSetup& setup, Area area) {
  return nameByPosition(
      setup,
      QStringLiteral("%1,%2").arg(spanText(area.hFrom, area.hTo), spanText(area.vFrom, area.vTo)),
      QStringLiteral("Files are named by what stands at %1 of their first page.")
          .arg(rangeText(area)));
}

/// An address is looked for where the words are drawn, whatever the layout.
QString findAddressIn(SplitSetup& setup, Area area) {
  const PickedArea drawn =
      setup.rotated ? PickedArea{{area.vFrom, area.vTo, area.hFrom, area.hTo}} : area;
  setup.emailMatchHorizFrom = drawn.hFrom;
  setup.emailMatchHorizTo = drawn.hTo;
  setup.emailMatchVert = drawn.vFrom;
  setup.emailMatchVertTo = drawn.vTo;
  setup.emailHorizAfterText.clear();
  setup.emailHorizBeforeText.clear();
  return QStringLiteral("The e-mail address stands at %1.").arg(rangeText(drawn));
}

struct WordRow {
  const char* text;
  QString (*take)(SplitSetup&, Place);
  bool needsPlace = false; ///< by h and v as a search counts them
};
// By WordMeaning.
constexpr std::array wordRows = {
    WordRow{"Documents &begin with this word", begin},
    WordRow{"Documents begin with this word at this &place", beginHere, true},
    WordRow{"Documents &end with it", end},
    WordRow{"Name files by &this word", nameByWord},
    WordRow{"Name files by the word be&hind it", nameByNext},
    WordRow{"Name files by the &rest of the line", nameByRestOfLine},
    WordRow{"Name files by &what stands at this place", nameByPlace, true},
    WordRow{"The e-&mail address stands behind this word", findAddressBehind}};

struct AreaRow {
  const char* text;
  QString (*take)(SplitSetup&, Area);
};
// By AreaMeaning.
constexpr std::array areaRows = {AreaRow{"Documents &begin with any word in this area", beginIn},
                                 AreaRow{"&Look for the search word in this area only", searchHere},
                                 AreaRow{"&Name files by what stands in this area", nameByArea},
                                 AreaRow{"The e-&mail address stands in this area", findAddressIn}};

const WordRow& rowOf(WordMeaning meaning) {
  return wordRows[static_cast<std::size_t>(meaning)];
}

const AreaRow& rowOf(AreaMeaning meaning) {
  return areaRows[static_cast<std::size_t>(meaning)];
}

} // namespace

std::span<const WordMeaning> wordMeanings() {
  using enum WordMeaning;
  static constexpr std::array all = {Begins,    BeginsHere,      Ends,       Names,
                                     NextNames, RestOfLineNames, PlaceNames, AddressBehind};
  static_assert(all.size() == wordRows.size());
  return all;
}

std::span<const AreaMeaning> areaMeanings() {
  using enum AreaMeaning;
  static constexpr std::array all = {Begins, SearchHere, Names, Address};
  static_assert(all.size() == areaRows.size());
  return all;
}

QString meaningText(WordMeaning meaning) {
  return QString::fromLatin1(rowOf(meaning).text);
}

QString meaningText(AreaMeaning meaning) {
  return QString::fromLatin1(rowOf(meaning).text);
}

bool canMean(WordMeaning meaning, const PickedPlace& place) {
  return !rowOf(meaning).needsPlace || (place.h > 0 && place.v > 0);
}

QString takeMeaning(SplitSetup& setup, WordMeaning meaning, const PickedPlace& place) {
  return rowOf(meaning).take(setup, place);
}

QString takeMeaning(SplitSetup& setup, AreaMeaning meaning, const PickedArea& area) {
  return rowOf(meaning).take(setup, area);
}

} // namespace folivex
