// Names an output by any prefix, postfix and filter from any text. The path must stay in the output
// folder, fit the file system, and hold nothing that a page smuggled in.
//
// An input is lines: method index, prefix, postfix, filter, remove list, then the text of the page
// to its end.
#include "engine/naming/OutputNamer.h"
#include "fuzz/Targets.h"

#include <algorithm>
#include <cstring>

namespace fuzzing {

namespace {

using namespace folivex;

constexpr qsizetype nameLimit = 255;
constexpr qsizetype roomForPart = 10;

/// The text of the page wherever a token asks for it.
class EverywhereWord : public PageWordLookup {
public:
  explicit EverywhereWord(const QString& text) : m_text(text) {}
  QString wordAt(int, IntRange, IntRange) override { return m_text; }

private:
  QString m_text;
};

bool hides(QChar character) {
  const char16_t code = character.unicode();
  return code < 0x20 || code == 0x7F || (code >= 0x202A && code <= 0x202E) ||
         (code >= 0x2066 && code <= 0x2069) || QStringView(u"<>:?*\"\\|").contains(character);
}

void checkName(const QString& name, bool parentIsTyped) {
  require(!name.isEmpty() && name.toUtf8().size() <= nameLimit);
  require(parentIsTyped || (name != u"." && name != u".."));
  require(std::none_of(name.begin(), name.end(), hides) && name.isValidUtf16());
}

} // namespace

void runNames(const QByteArray& bytes) {
  const QList<QByteArray> lines = bytes.split('\n');
  const auto line = [&lines](qsizetype index) { return QString::fromUtf8(lines.value(index)); };
  SplitSetup setup;
  const int method = lines.value(0).toInt();
  setup.extract =
      method >= 0 && method < 9 ? fileNameMethodTexts()[method] : bookmarkFileNameMethodText();
  setup.prefixFileName = line(1);
  setup.postfixFileName = line(2);
  setup.anyCharOfWord = line(3);
  setup.otherSettingsRemoveText = line(4);
  // The page's bytes a second time as they are: they hold what no decoder lets through.
  const QByteArray page = lines.mid(5).join('\n');
  QString units(page.size() / 2, QChar(0));
  std::memcpy(units.data(), page.constData(), static_cast<std::size_t>(units.size()) * 2);
  const QString text = QString::fromUtf8(page) + units;

  EverywhereWord words(text);
  NameList list;
  OutputNamer namer(setup, words, list,
                    [] { return QDateTime(QDate(2026, 3, 9), QTime(8, 5, 7)); });
  namer.startSource(text, QStringLiteral("/out"), 9);
  SplitRange range;
  range.rangeText = range.restOfLine = text;
  const NamedOutput named = namer.name(range);

  require(named.path.startsWith(u"/out/") && named.path.endsWith(u".pdf"));
  const QStringList names = named.path.sliced(5).split(u'/');
  require(names.last().toUtf8().size() + roomForPart <= nameLimit);
  const bool parentIsTyped = setup.prefixFileName.contains(u'.');
  for (const QString& name : names) {
    checkName(name, parentIsTyped);
  }
  require(named.cleanedText.size() <= 255 && named.cleanedRestOfLine.size() <= 1024);
  require(named.folderToMake.isEmpty() || named.folderToMake.count(u'/') == 2);
}

} // namespace fuzzing
