#include "engine/suggest/SetupMaker.h"

#include "engine/setup/FileNameMethod.h"
#include "engine/setup/SplitMethod.h"

#include <algorithm>

namespace folivex {

namespace {

constexpr std::size_t mostAnchorsTried = 3;

void set(SplitSetup& setup, SplitMethod method) {
  setup.pageExtract = traitsOf(method).text;
}

void set(SplitSetup& setup, FileNameMethod method) {
  setup.extract = fileNameMethodTexts()[static_cast<qsizetype>(method)];
}

QString rangeText(int low, int high) {
  return low == high ? QString::number(low) : QStringLiteral("%1-%2").arg(low).arg(high);
}

/// Everything that decides about ranges and names is the proposal's.
SplitSetup cleared(SplitSetup setup) {
  const SplitSetup defaults;
  setup.useSourceFileName = setup.useSourceFileNamePost = false;
  setup.ignoreCase = setup.rotated = setup.createList = false;
  setup.alwaysOverwrite = setup.alwaysAppend = false;
  setup.addBWords = QStringLiteral(" ");
  setup.takenWordsForFileName = defaults.takenWordsForFileName;
  setup.untilHHPosLessThan = defaults.untilHHPosLessThan;
  setup.startFromPage = 1;
  setup.startEndPage = setup.offsetFirst = setup.stripEnd = 0;
  setup.untilMatchPosH = setup.untilMatchPosV = 0;
  for (QString* text :
       {&setup.firstCharOfWord, &setup.anyCharOfWord, &setup.findString, &setup.prefixFileName,
        &setup.postfixFileName, &setup.extractUntil, &setup.extractFileName, &setup.matchPosH,
        &setup.matchPosV, &setup.reportRemoveChars, &setup.otherSettingsRemoveText}) {
    text->clear();
  }
  return setup;
}

/// What all texts begin with up to a colon: a label that is one word with its value.
QString commonLabel(const std::vector<QString>& texts) {
  const qsizetype colon = texts.front().indexOf(u':');
  const QString label = texts.front().left(colon + 1);
  const bool isCommon =
      colon > 0 && std::all_of(texts.begin(), texts.end(), [&](const QString& text) {
        return text.startsWith(label) && text.size() > label.size();
      });
  return isCommon ? label : QString();
}

} // namespace

SetupMaker::SetupMaker(const PageSample& sample, const PageNumbers& numbers, const SplitSetup& base,
                       const Beginnings& beginnings)
    : m_sample(sample), m_numbers(numbers), m_base(cleared(base)), m_beginnings(beginnings) {
  m_base.offsetFirst = beginnings.separators ? 1 : 0;
}

/// A setup file holds no ";" and no control characters, and a text that looks like a word number
/// is one.
bool SetupMaker::canStandIn(const QString& text) const {
  return !text.isEmpty() && text.size() < 200 && !text.startsWith(QLatin1String("[WORD")) &&
         std::none_of(text.begin(), text.end(), [](QChar c) {
           return c == u';' || c == u'|' || !c.isPrint() || c.isSurrogate();
         });
}

QString SetupMaker::labelOf(const ValuePlace& value) const {
  const QString last = m_sample.text(value.label).toString();
  return value.before == noText ? last : m_sample.text(value.before).toString() + u' ' + last;
}

Candidate SetupMaker::candidate(const SplitSetup& setup, const QString& how,
                                const std::vector<QString>& names) const {
  Candidate made;
  made.setup = setup;
  made.firstPages = m_beginnings.pages;
  if (m_beginnings.separators) {
    made.sheets = static_cast<int>(m_beginnings.pages.size());
    for (int& page : made.firstPages) {
      ++page;
    }
  }
  made.leading = m_beginnings.pages.front();
  made.names = names;
  made.reason = how;
  return made;
}

QString SetupMaker::howItBegins(const SplitSetup& setup) const {
  const qsizetype count = static_cast<qsizetype>(m_beginnings.pages.size());
  QString how = setup.findString.isEmpty()
                    ? QStringLiteral("a word at h %1 v %2 begins %3 documents")
                          .arg(setup.matchPosH, setup.matchPosV)
                          .arg(count)
                    : QStringLiteral("\"%1\" begins %2 documents").arg(setup.findString).arg(count);
  if (!setup.findString.isEmpty() && !setup.matchPosH.isEmpty()) {
    how += QStringLiteral(", always near h %1 v %2").arg(setup.matchPosH, setup.matchPosV);
  }
  if (m_beginnings.separators) {
    how += QStringLiteral(", on a sheet of its own that is left out");
  } else if (m_beginnings.byNumbers) {
    how += QStringLiteral(", where the page numbers begin anew");
  }
  return how;
}

/// Ways to begin, without a name.
std::vector<SplitSetup> SetupMaker::beginSetups() const {
  std::vector<SplitSetup> setups;
  if (m_beginnings.byNumbers && m_numbers.anew->one != noText) {
    SplitSetup setup = m_base;
    set(setup, SplitMethod::MatchToNextMatch);
    const QString one = m_sample.text(m_numbers.anew->one).toString();
    setup.findString = m_numbers.anew->before == noText
                           ? one
                           : m_sample.text(m_numbers.anew->before).toString() + u' ' + one;
    if (canStandIn(setup.findString) && m_numbers.anew->before != noText) {
      setups.push_back(setup);
    }
  }
  std::size_t tried = 0;
  for (const Anchor& anchor : m_beginnings.anchors) {
    SplitSetup setup = m_base;
    setup.findString = m_sample.text(anchor.text).toString();
    if (!canStandIn(setup.findString) || ++tried > mostAnchorsTried) {
      continue;
    }
    set(setup, anchor.reach == Anchor::Reach::Anywhere ? SplitMethod::MatchToNextMatch
                                                       : SplitMethod::MatchToNextMatchAtPosition);
    if (anchor.reach != Anchor::Reach::Anywhere) {
      setup.matchPosH = QString::number(anchor.h);
      setup.matchPosV =
          rangeText(anchor.v, anchor.reach == Anchor::Reach::AtColumn ? anchor.highV : anchor.v);
    }
    setups.push_back(setup);
  }
  return setups;
}

SplitSetup SetupMaker::atPlaceOf(const ValuePlace& value, bool unique) const {
  SplitSetup setup = m_base;
  set(setup, unique ? SplitMethod::MatchToNextUniqueMatchAtPosition
                    : SplitMethod::MatchToNextMatchAtPosition);
  set(setup, FileNameMethod::PositionMatch);
  setup.matchPosH = rangeText(value.h, value.highH);
  setup.matchPosV = QString::number(value.v);
  setup.otherSettingsRemoveText = commonLabel(value.texts);
  return setup;
}

std::vector<Candidate> SetupMaker::ofRun(const ValuePlace& value) const {
  std::vector<Candidate> made;
  const qsizetype count = static_cast<qsizetype>(m_beginnings.pages.size());
  const auto add = [&](const SplitSetup& setup, const QString& what) {
    made.push_back(
        candidate(setup,
                  QStringLiteral("%1 stands on every page and changes with each of %2 documents")
                      .arg(what)
                      .arg(count),
                  value.texts));
  };
  if (value.kind != ValuePlace::Kind::AtPlace && canStandIn(labelOf(value))) {
    SplitSetup setup = m_base;
    const bool isLine = value.kind == ValuePlace::Kind::LineOfLabel;
    const QString what = QStringLiteral("what follows \"%1\"").arg(labelOf(value));
    setup.findString = labelOf(value);
    set(setup, isLine ? FileNameMethod::AfterTextRestOfLine : FileNameMethod::NextWord);
    set(setup, SplitMethod::MatchToNextUniqueMatch);
    add(setup, what);
    if (value.before == noText && !value.labelMoves) {
      set(setup, SplitMethod::MatchToNextUniqueMatchAtPosition);
      setup.matchPosH = QString::number(value.labelH);
      setup.matchPosV = QString::number(value.labelV);
      add(setup, what);
    }
  }
  if (value.kind != ValuePlace::Kind::LineOfLabel && !value.valueMoves) {
    add(atPlaceOf(value, true),
        QStringLiteral("the word at h %1 v %2").arg(rangeText(value.h, value.highH)).arg(value.v));
  }
  return made;
}

void SetupMaker::nameAfterText(const ValuePlace& value, SplitSetup setup,
                               std::vector<Candidate>& made) const {
  if (value.kind == ValuePlace::Kind::AtPlace || !canStandIn(labelOf(value))) {
    return;
  }
  const bool isLine = value.kind == ValuePlace::Kind::LineOfLabel;
  const bool isSame = setup.findString == labelOf(value);
  if (isSame) {
    set(setup, isLine ? FileNameMethod::AfterTextRestOfLine : FileNameMethod::NextWord);
  } else {
    set(setup, isLine ? FileNameMethod::AfterTextRestOfLine : FileNameMethod::AfterText);
    setup.extractFileName = labelOf(value);
  }
  setup.otherSettingsRemoveText = commonLabel(value.texts);
  made.push_back(
      candidate(setup,
                howItBegins(setup) +
                    (isSame ? QStringLiteral("; what follows it")
                            : QStringLiteral("; what follows \"%1\"").arg(labelOf(value))) +
                    QStringLiteral(" is different each time"),
                value.texts));
}

void SetupMaker::nameByPlace(const ValuePlace& value, SplitSetup setup,
                             std::vector<Candidate>& made) const {
  if (value.kind == ValuePlace::Kind::LineOfLabel || value.valueMoves || value.rawH < 0 ||
      !commonLabel(value.texts).isEmpty()) {
    return;
  }
  // The prefix is the name; the text that begins the document must add nothing to it.
  set(setup, FileNameMethod::MatchedWord);
  setup.anyCharOfWord = QStringLiteral("[char>0");
  const QString place =
      QStringLiteral("%1,%2").arg(rangeText(value.rawH, value.highRawH)).arg(value.v);
  setup.prefixFileName = QStringLiteral("[POS%1]").arg(place);
  made.push_back(candidate(setup,
                           howItBegins(setup) +
                               QStringLiteral("; the word at h %1 v %2 is different each time")
                                   .arg(rangeText(value.rawH, value.highRawH))
                                   .arg(value.v),
                           value.texts));
}

std::vector<Candidate> SetupMaker::ofValue(const ValuePlace& value) const {
  std::vector<Candidate> made;
  const auto isLabel = [&](const Anchor& anchor) {
    return value.before == noText && anchor.text == value.label;
  };
  if (value.kind != ValuePlace::Kind::AtPlace) {
    const QString label = labelOf(value);
    const auto anchor =
        std::find_if(m_beginnings.anchors.begin(), m_beginnings.anchors.end(), isLabel);
    SplitSetup setup = m_base;
    setup.findString = label;
    set(setup, SplitMethod::MatchToNextMatch);
    nameAfterText(value, setup, made);
    if (anchor != m_beginnings.anchors.end() && anchor->reach != Anchor::Reach::Anywhere) {
      set(setup, SplitMethod::MatchToNextMatchAtPosition);
      setup.matchPosH = QString::number(anchor->h);
      setup.matchPosV = rangeText(
          anchor->v, anchor->reach == Anchor::Reach::AtColumn ? anchor->highV : anchor->v);
      made.clear();
      nameAfterText(value, setup, made);
    }
  }
  for (const SplitSetup& setup : beginSetups()) {
    nameAfterText(value, setup, made);
  }
  if (value.kind == ValuePlace::Kind::AtPlace) {
    const SplitSetup setup = atPlaceOf(value, false);
    made.push_back(candidate(
        setup, howItBegins(setup) + QStringLiteral("; it is different each time"), value.texts));
  }
  for (const SplitSetup& setup : beginSetups()) {
    nameByPlace(value, setup, made);
  }
  return made;
}

std::vector<Candidate> SetupMaker::ofBookmarks() const {
  const bool isRoot = *m_beginnings.byBookmarks == 0;
  SplitSetup setup = m_base;
  setup.offsetFirst = 0;
  set(setup, isRoot ? SplitMethod::RootBookmarks : SplitMethod::SecondLevelBookmarks);
  setup.extract = bookmarkFileNameMethodText();
  std::vector<QString> names;
  for (const Bookmark& bookmark : m_sample.outline()) {
    if (bookmark.level == *m_beginnings.byBookmarks && bookmark.page > 0 &&
        bookmark.page <= m_sample.pageCount()) {
      names.push_back(bookmark.title);
    }
  }
  return {candidate(setup,
                    QStringLiteral("a bookmark stands at the beginning of each of %1 documents and "
                                   "names it")
                        .arg(m_beginnings.pages.size()),
                    names)};
}

std::vector<Candidate> SetupMaker::unnamed() const {
  std::vector<Candidate> made;
  for (SplitSetup setup : beginSetups()) {
    set(setup, FileNameMethod::PageStartEnd);
    setup.prefixFileName = QStringLiteral("pages_");
    made.push_back(candidate(
        setup, howItBegins(setup) + QStringLiteral("; no value names them, so their pages do"),
        {}));
  }
  return made;
}

} // namespace folivex
