#include "engine/suggest/WordMeaning.h"

#include "engine/match/PositionRule.h"
#include "engine/setup/FileNameMethod.h"
#include "engine/setup/SplitMethod.h"
#include "engine/setup/SplitSetup.h"

#include <QRegularExpression>

#include <array>

namespace folivex {

namespace {

SplitMethod methodOf(const SplitSetup& setup) {
  return splitMethodOf(setup.pageExtract);
}

/// Names that came from bookmarks would have nothing to come from.
void splitBy(SplitSetup& setup, SplitMethod method) {
  if (splitTraitsOf(setup.pageExtract).fromBookmarks &&
      fileNameMethodOf(setup.extract) == FileNameMethod::Bookmark) {
    setup.extract = textOf(FileNameMethod::NextWord);
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
bool beginsHere(const SplitSetup& setup, const Picked& word) {
  const SplitMethodTraits& traits = splitTraitsOf(setup.pageExtract);
  const bool isFound = setup.findString.isEmpty()
                           ? traits.atPosition
                           : isSame(setup, setup.findString.section(u' ', -1, -1), word.text);
  return isFound &&
         (!traits.atPosition || PositionRule(setup.matchPosH, setup.matchPosV)
                                    .holds(word.range.hFrom, word.range.vFrom, word.text.size()));
}

/// "Account:", "No.", "Account" before "10472": says what the word behind it is.
bool isLabel(const SplitSetup& setup, const Picked& word) {
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
  setup.extract = textOf(method);
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
    setup.extract = textOf(FileNameMethod::PageStart);
  }
  return told;
}

QString begin(SplitSetup& setup, const Picked& word) {
  setup.findString = word.text;
  splitBy(setup, methodAnywhere(setup));
  return QStringLiteral("Documents begin with \"%1\".").arg(word.text);
}

void searchIn(SplitSetup& setup, const PositionRange& area) {
  setup.matchPosH = spanText(area.hFrom, area.hTo);
  setup.matchPosV = spanText(area.vFrom, area.vTo);
  splitBy(setup, methodAtPosition(setup));
}

QString beginHere(SplitSetup& setup, const Picked& word) {
  setup.findString = word.text;
  searchIn(setup, word.range);
  return QStringLiteral("Documents begin with \"%1\" at %2.").arg(word.text, rangeText(word.range));
}

QString end(SplitSetup& setup, const Picked& word) {
  setup.extractUntil = word.text;
  splitBy(setup, SplitMethod::MatchToUntil);
  return QStringLiteral("Documents end with the page of \"%1\".").arg(word.text);
}

QString nameByPlace(SplitSetup& setup, const Picked& word) {
  return nameByPosition(setup, QStringLiteral("%1,%2").arg(word.lookupH).arg(word.lookupV),
                        QStringLiteral("Files are named by the word at %1 of their first page.")
                            .arg(rangeText(word.range)));
}

QString nameByNext(SplitSetup& setup, const Picked& word) {
  const QString told = QStringLiteral("Files are named by the word behind \"%1\".");
  return beginsHere(setup, word) ? nameBy(setup, FileNameMethod::NextWord, told.arg(word.text))
                                 : nameAfter(setup, FileNameMethod::AfterText, word.text, told);
}

/// The word pointed at stands in one document; in others it is what stands in its stead.
QString nameByWord(SplitSetup& setup, const Picked& word) {
  if (beginsHere(setup, word)) {
    return nameBy(setup, FileNameMethod::MatchedWord,
                  QStringLiteral("Files are named by the word that documents begin with."));
  }
  if (!isLabel(setup, word)) {
    return nameByPlace(setup, word);
  }
  Picked label = word;
  label.text = word.before;
  label.range.hFrom = label.range.hTo = word.beforeH;
  return nameByNext(setup, label);
}

QString nameByRestOfLine(SplitSetup& setup, const Picked& word) {
  return nameAfter(setup, FileNameMethod::AfterTextRestOfLine, word.text,
                   QStringLiteral("Files are named by the rest of the line behind \"%1\"."));
}

/// Windows that were set for another place would leave the address out.
QString findAddressBehind(SplitSetup& setup, const Picked& word) {
  const SplitSetup fresh;
  setup.emailMatchVert = fresh.emailMatchVert;
  setup.emailMatchVertTo = fresh.emailMatchVertTo;
  setup.emailMatchHorizFrom = fresh.emailMatchHorizFrom;
  setup.emailMatchHorizTo = fresh.emailMatchHorizTo;
  setup.emailHorizAfterText = word.text;
  setup.emailHorizBeforeText.clear();
  return QStringLiteral("The e-mail address stands behind \"%1\".").arg(word.text);
}

QString beginIn(SplitSetup& setup, const Picked& area) {
  setup.findString.clear();
  searchIn(setup, area.range);
  return QStringLiteral("Documents begin with any word at %1.").arg(rangeText(area.range));
}

QString searchHere(SplitSetup& setup, const Picked& area) {
  searchIn(setup, area.range);
  return QStringLiteral("\"%1\" begins a document at %2 only.")
      .arg(setup.findString, rangeText(area.range));
}

QString nameByArea(SplitSetup& setup, const Picked& area) {
  const PositionRange& range = area.range;
  return nameByPosition(setup,
                        QStringLiteral("%1,%2").arg(spanText(range.hFrom, range.hTo),
                                                    spanText(range.vFrom, range.vTo)),
                        QStringLiteral("Files are named by what stands at %1 of their first page.")
                            .arg(rangeText(area.range)));
}

/// An address is looked for where the words are drawn, whatever the layout.
QString findAddressIn(SplitSetup& setup, const Picked& area) {
  PositionRange drawn = area.range;
  if (setup.rotated) {
    drawn = {drawn.vFrom, drawn.vTo, drawn.hFrom, drawn.hTo};
  }
  setup.emailMatchHorizFrom = drawn.hFrom;
  setup.emailMatchHorizTo = drawn.hTo;
  setup.emailMatchVert = drawn.vFrom;
  setup.emailMatchVertTo = drawn.vTo;
  setup.emailHorizAfterText.clear();
  setup.emailHorizBeforeText.clear();
  return QStringLiteral("The e-mail address stands at %1.").arg(rangeText(drawn));
}

struct Row {
  const char* text;
  QString (*take)(SplitSetup&, const Picked&);
  bool needsPlace = false; ///< by h and v as a search counts them
};
// By Meaning.
constexpr std::array rows = {Row{"Documents &begin with this word", begin},
                             Row{"Documents begin with this word at this &place", beginHere, true},
                             Row{"Documents &end with it", end},
                             Row{"Name files by &this word", nameByWord},
                             Row{"Name files by the word be&hind it", nameByNext},
                             Row{"Name files by the &rest of the line", nameByRestOfLine},
                             Row{"Name files by &what stands at this place", nameByPlace, true},
                             Row{"The e-&mail address stands behind this word", findAddressBehind},
                             Row{"Documents &begin with any word in this area", beginIn},
                             Row{"&Look for the search word in this area only", searchHere},
                             Row{"&Name files by what stands in this area", nameByArea},
                             Row{"The e-&mail address stands in this area", findAddressIn}};

const Row& rowOf(Meaning meaning) {
  return rows[static_cast<std::size_t>(meaning)];
}

} // namespace

std::vector<Meaning> meaningsOf(const Picked& picked) {
  std::vector<Meaning> meanings;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const auto meaning = static_cast<Meaning>(i);
    if ((meaning < Meaning::AreaBegins) == !picked.text.isEmpty()) {
      meanings.push_back(meaning);
    }
  }
  return meanings;
}

QString meaningText(Meaning meaning) {
  return QString::fromLatin1(rowOf(meaning).text);
}

bool canMean(Meaning meaning, const Picked& picked) {
  return !rowOf(meaning).needsPlace || (picked.range.hFrom > 0 && picked.range.vFrom > 0);
}

QString takeMeaning(SplitSetup& setup, Meaning meaning, const Picked& picked) {
  return rowOf(meaning).take(setup, picked);
}

} // namespace folivex
