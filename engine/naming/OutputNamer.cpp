#include "engine/naming/OutputNamer.h"

#include "engine/base/Text.h"
#include "engine/naming/OutputPath.h"
#include "platform/Paths.h"

#include <utility>

namespace folivex {

namespace {

QString sixDigits(int value) {
  return QStringLiteral("%1").arg(value, 6, 10, QLatin1Char('0'));
}

/// The source's name without its folder and without ".pdf".
QString titleOf(const QString& sourcePath) {
  QString title = platform::fileTitle(sourcePath);
  if (const QLatin1String ending(".pdf"); title.endsWith(ending, Qt::CaseInsensitive)) {
    title.chop(ending.size());
  }
  return title;
}

} // namespace

OutputNamer::OutputNamer(const SplitSetup& setup, PageWordLookup& words, NameList& list,
                         NameClock clock, FileSystemRules rules)
    : m_method(fileNameMethodOf(setup)), m_cleaner(setup), m_trimCount(setup.stripEnd),
      m_pageOffset(setup.offsetFirst), m_titleAsPrefix(setup.useSourceFileName),
      m_titleAsPostfix(setup.useSourceFileNamePost), m_words(words), m_clock(std::move(clock)),
      m_rules(rules), m_list(list), m_prefix(setup.prefixFileName),
      m_postfix(setup.postfixFileName) {}

void OutputNamer::startSource(const QString& sourcePath, const QString& outputFolder,
                              int totalPages) {
  const NameTemplate title(titleOf(sourcePath));
  m_title = title.text();
  if (m_titleAsPrefix) {
    m_prefix = title;
  }
  if (m_titleAsPostfix) {
    m_postfix = title;
  }
  m_outputFolder = outputFolder;
  m_totalPages = totalPages;
  m_sequence = 0;
}

NamedOutput OutputNamer::name(const SplitRange& range) {
  NamedOutput named;
  named.cleanedRestOfLine = m_cleaner.restOfLine(range.restOfLine);
  const QString matchText =
      m_cleaner.matchText(takesRestOfLine(m_method) ? range.restOfLine : range.rangeText);

  const NameTokenValues values = tokenValues(range, matchText);
  OutputPath path(m_outputFolder, m_rules);
  path.setPrefix(m_prefix.text(), m_prefix.expanded(values));
  path.setPostfix(m_postfix.text(), m_postfix.expanded(values));
  if (m_prefix.asksForFolder() || m_postfix.asksForFolder()) {
    named.folderToMake = path.folder(matchText);
  }

  named.cleanedText = matchText;
  if (m_trimCount > 0) {
    cutText(named.cleanedText, std::max<qsizetype>(matchText.size() - m_trimCount, 0));
  }
  const OutputPath::Body middle = body(range, named);
  named.path = path.text(middle);
  if (m_method == FileNameMethod::FileList) {
    m_list.used(middle.text, named.path);
  }
  return named;
}

NameTokenValues OutputNamer::tokenValues(const SplitRange& range, const QString& matchText) const {
  NameTokenValues values;
  values.title = m_title;
  values.matchText = matchText;
  values.firstPage = qint64{range.firstPage} + 1;
  values.lastPage = qint64{range.lastPage} + 1;
  values.pageOffset = m_pageOffset;
  values.totalPages = m_totalPages;
  values.wordAt = [this, page = range.firstPage](IntRange h, IntRange v) {
    return m_cleaner.word(m_words.wordAt(page, h, v));
  };
  values.now = m_clock;
  return values;
}

OutputPath::Body OutputNamer::body(const SplitRange& range, NamedOutput& named) {
  using Cut = OutputPath::Cut;
  const qint64 firstPage = qint64{range.firstPage} + 1;
  const qint64 lastPage = qint64{range.lastPage} + 1;
  switch (m_method) {
  case FileNameMethod::MatchedWord:
  case FileNameMethod::NextWord:
  case FileNameMethod::PositionMatch:
  case FileNameMethod::AfterText:
  case FileNameMethod::Bookmark:
    return {named.cleanedText, Cut::BodyFirst};
  case FileNameMethod::PageStart:
    return {QString::number(firstPage), Cut::BodyLast};
  case FileNameMethod::PageStartEnd:
    return {QString::number(firstPage) + u'-' + QString::number(lastPage), Cut::BodyLast};
  case FileNameMethod::SequentialNumber:
    return {sixDigits(++m_sequence), Cut::BodyLast};
  case FileNameMethod::AfterTextRestOfLine:
  case FileNameMethod::AfterTextRestOfLineAndNextPage:
    return {named.cleanedRestOfLine, Cut::BodyFirst};
  case FileNameMethod::FileList:
    return {listLine(named), Cut::BodyFirst};
  }
  return {};
}

QString OutputNamer::listLine(NamedOutput& named) {
  QString line = m_cleaner.word(m_list.take());
  named.nameList = m_list.state();
  return line;
}

} // namespace folivex
