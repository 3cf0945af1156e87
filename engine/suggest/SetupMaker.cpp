#include "engine/suggest/SetupMaker.h"

#include "engine/setup/FileNameMethod.h"
#include "engine/setup/SplitMethod.h"
#include "engine/suggest/DecidedSettings.h"
#include "engine/suggest/LabelValues.h"
#include "engine/suggest/ValueWorth.h"

#include <algorithm>

namespace folivex {

namespace {

constexpr std::size_t mostAnchorsTried = 3;

void set(SplitSetup& setup, SplitMethod method) {
  setup.pageExtract = traitsOf(method).text;
}

void set(SplitSetup& setup, FileNameMethod method) {
  setup.extract = textOf(method);
}

/// Begin with the anchor's text, where it has to stand.
void beginWith(const Anchor& anchor, SplitSetup& setup) {
  const bool isAnywhere = anchor.reach == Anchor::Reach::Anywhere;
  set(setup, isAnywhere ? SplitMethod::MatchToNextMatch : SplitMethod::MatchToNextMatchAtPosition);
  if (!isAnywhere) {
    setup.matchPosH = QString::number(anchor.h);
    setup.matchPosV = anchor.v.text();
  }
}

void endLine(const ValuePlace& value, SplitSetup& setup) {
  if (value.isLine() && value.lineEndsBefore > 0) {
    setup.untilHHPosLessThan = value.lineEndsBefore;
  }
}

} // namespace

SetupMaker::SetupMaker(const PageSample& sample, const PageNumbers& numbers, const SplitSetup& base,
                       const Beginnings& beginnings)
    : m_sample(sample), m_numbers(numbers), m_base(withoutRules(base)), m_beginnings(beginnings) {
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

Candidate SetupMaker::candidate(const SplitSetup& setup, const Reason& reason,
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
  made.reason = reason.before;
  made.furtherReason = reason.behind;
  return made;
}

SetupMaker::Reason SetupMaker::begins(const SplitSetup& setup, const QString& andNamed) const {
  const bool byWord = !setup.findString.isEmpty();
  Reason reason;
  reason.before =
      (byWord ? QStringLiteral("\"%1\"").arg(setup.findString)
              : QStringLiteral("a word at h %1 v %2").arg(setup.matchPosH, setup.matchPosV)) +
      QStringLiteral(" begins");
  if (byWord && !setup.matchPosH.isEmpty()) {
    reason.behind = QStringLiteral(", always near h %1 v %2").arg(setup.matchPosH, setup.matchPosV);
  }
  if (m_beginnings.separators) {
    reason.behind += QStringLiteral(", on a sheet of its own that is left out");
  } else if (m_beginnings.byNumbers) {
    reason.behind += QStringLiteral(", where the page numbers begin anew");
  }
  reason.behind += QStringLiteral("; ") + andNamed;
  return reason;
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
    beginWith(anchor, setup);
    setups.push_back(setup);
  }
  return setups;
}

SplitSetup SetupMaker::atPlaceOf(const ValuePlace& value, bool unique) const {
  SplitSetup setup = m_base;
  set(setup, unique ? SplitMethod::MatchToNextUniqueMatchAtPosition
                    : SplitMethod::MatchToNextMatchAtPosition);
  // The word at the place counts as the line's first.
  set(setup, value.isLine() ? FileNameMethod::AfterTextRestOfLine : FileNameMethod::PositionMatch);
  endLine(value, setup);
  setup.matchPosH = value.h.text();
  setup.matchPosV = value.v.text();
  setup.otherSettingsRemoveText = commonLabel(value.texts);
  return setup;
}

std::vector<Candidate> SetupMaker::ofRun(const ValuePlace& value) const {
  std::vector<Candidate> made;
  const auto add = [&](const SplitSetup& setup, const QString& what) {
    made.push_back(candidate(
        setup, {what + QStringLiteral(" stands on every page and changes with each of"), {}},
        value.texts));
  };
  if (value.hasLabel() && canStandIn(labelOf(value))) {
    SplitSetup setup = m_base;
    const bool isLine = value.isLine();
    endLine(value, setup);
    const QString what = QStringLiteral("what follows \"%1\"").arg(labelOf(value));
    setup.findString = labelOf(value);
    set(setup, isLine ? FileNameMethod::AfterTextRestOfLine : FileNameMethod::NextWord);
    setup.otherSettingsRemoveText = commonLabel(value.texts);
    set(setup, SplitMethod::MatchToNextUniqueMatch);
    add(setup, what);
    if (value.before == noText && value.labelH.width() == 0 && value.labelV.width() == 0) {
      set(setup, SplitMethod::MatchToNextUniqueMatchAtPosition);
      setup.matchPosH = value.labelH.text();
      setup.matchPosV = value.labelV.text();
      add(setup, what);
    }
  }
  if ((!value.isLine() || !value.hasLabel()) && value.v.width() <= unevenPrint) {
    add(atPlaceOf(value, true),
        QStringLiteral("the word at h %1 v %2").arg(value.h.text(), value.v.text()));
  }
  return made;
}

void SetupMaker::nameAfterText(const ValuePlace& value, SplitSetup setup,
                               std::vector<Candidate>& made) const {
  if (!value.hasLabel() || value.kind == ValuePlace::Kind::BesideLabel ||
      !canStandIn(labelOf(value))) {
    return;
  }
  const bool isLine = value.isLine();
  endLine(value, setup);
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
                begins(setup, (isSame ? QStringLiteral("what follows it")
                                      : QStringLiteral("what follows \"%1\"").arg(labelOf(value))) +
                                  QStringLiteral(" is different each time")),
                value.texts));
}

void SetupMaker::nameByPlace(const ValuePlace& value, SplitSetup setup,
                             std::vector<Candidate>& made) const {
  constexpr int farthest = 8; // more, and other words stand there too
  if (value.isLine() || value.v.width() > farthest || value.rawH.low < 0 ||
      !commonLabel(value.texts).isEmpty()) {
    return;
  }
  // The prefix is the name; the text that begins the document must add nothing to it.
  set(setup, FileNameMethod::MatchedWord);
  setup.anyCharOfWord = QStringLiteral("[char>0");
  setup.prefixFileName = QStringLiteral("[POS%1,%2]").arg(value.rawH.text(), value.v.text());
  made.push_back(
      candidate(setup,
                begins(setup, QStringLiteral("the word at h %1 v %2 is different each time")
                                  .arg(value.rawH.text())
                                  .arg(value.v.low)),
                value.texts));
}

std::vector<Candidate> SetupMaker::ofValue(const ValuePlace& value) const {
  std::vector<Candidate> made;
  const auto isLabel = [&](const Anchor& anchor) {
    return value.before == noText && anchor.text == value.label;
  };
  if (value.hasLabel()) {
    const QString label = labelOf(value);
    const auto anchor =
        std::find_if(m_beginnings.anchors.begin(), m_beginnings.anchors.end(), isLabel);
    SplitSetup setup = m_base;
    setup.findString = label;
    set(setup, SplitMethod::MatchToNextMatch);
    nameAfterText(value, setup, made);
    if (anchor != m_beginnings.anchors.end() && anchor->reach != Anchor::Reach::Anywhere) {
      beginWith(*anchor, setup);
      made.clear();
      nameAfterText(value, setup, made);
    }
  }
  for (const SplitSetup& setup : beginSetups()) {
    nameAfterText(value, setup, made);
  }
  if (!value.hasLabel()) {
    const SplitSetup setup = atPlaceOf(value, false);
    made.push_back(
        candidate(setup, begins(setup, QStringLiteral("it is different each time")), value.texts));
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
  for (const Bookmark& bookmark : m_sample.bookmarks(*m_beginnings.byBookmarks)) {
    names.push_back(bookmark.title);
  }
  return {candidate(setup, {QStringLiteral("a bookmark begins and names each of"), {}}, names)};
}

std::vector<Candidate> SetupMaker::unnamed() const {
  std::vector<Candidate> made;
  for (SplitSetup setup : beginSetups()) {
    set(setup, FileNameMethod::PageStartEnd);
    setup.prefixFileName = QStringLiteral("pages_");
    made.push_back(candidate(
        setup, begins(setup, QStringLiteral("no value names them, so their pages do")), {}));
  }
  return made;
}

} // namespace folivex
