#include "mail/AddressSearch.h"

#include "engine/setup/SplitSetup.h"
#include "mail/MailAddress.h"

#include <QStringMatcher>

#include <algorithm>
#include <array>

namespace folivex {

namespace {

constexpr std::size_t neighbourLimit = 255;
constexpr qsizetype lineTextLimit = 255;
/// Points from one piece to the next, for each character and the blank between them: wider than any
/// text that is read, narrower than the way to the next column.
constexpr int widestAdvance = 24;

bool isInside(int value, int from, int to) {
  return (from == -1 || value >= from) && (to == -1 || value <= to);
}

QString folded(const QString& text, bool ignoreCase) {
  if (!ignoreCase) {
    return text;
  }
  QString result = text;
  for (QChar& c : result) {
    if (c >= u'A' && c <= u'Z') {
      c = QChar(c.unicode() + (u'a' - u'A'));
    }
  }
  return result;
}

/// Where a text stands in the page's text, in order.
std::vector<qsizetype> occurrences(const QString& page, const QString& text) {
  std::vector<qsizetype> found;
  if (text.isEmpty()) {
    return found;
  }
  const QStringMatcher matcher(text);
  for (qsizetype at = matcher.indexIn(page); at >= 0; at = matcher.indexIn(page, at + 1)) {
    found.push_back(at);
  }
  return found;
}

bool isNameCharacter(QChar c) {
  return c.isLetterOrNumber() || c == u'_' || c == u'+' || c == u'-' || c == u'.';
}

/// "anna_" and "anna+": nobody ends a word so, somebody's name was cut.
bool breaksOffInName(QStringView piece) {
  return piece.size() >= 2 && (piece.back() == u'_' || piece.back() == u'+') &&
         piece[piece.size() - 2].isLetterOrNumber();
}

bool isTopDomain(QStringView label) {
  static constexpr std::array<QStringView, 7> known = {u"com", u"net",  u"org", u"edu",
                                                       u"gov", u"info", u"biz"};
  return std::find(known.begin(), known.end(), label) != known.end();
}

/// ".org" or "org" and nothing else but punctuation behind.
bool isDomainPiece(QStringView piece) {
  const QChar first = piece.front();
  return first.isLetterOrNumber() || (first == u'.' && piece.size() > 1);
}

bool wantsPieceBefore(QStringView text, QStringView before) {
  const qsizetype at = text.indexOf(u'@');
  const bool cut = at == 0 || text.front() == u'.';
  return before.contains(u'@') ? false
                               : (cut ? isNameCharacter(before.back()) : breaksOffInName(before));
}

bool wantsPieceBehind(QStringView text, QStringView behind, bool ownName) {
  if (behind.contains(u'@') || !isDomainPiece(behind)) {
    return false;
  }
  const QStringView domain = text.mid(text.lastIndexOf(u'@') + 1);
  const QChar last = text.back();
  if (behind.front() == u'.') {
    return last.isLetterOrNumber() && behind[1].isLower();
  }
  const qsizetype dot = domain.left(domain.size() - 1).lastIndexOf(u'.');
  if (dot >= 0) {
    // "anna@mail.example." is the end of a sentence, unless "com" follows.
    return last == u'.' && isTopDomain(behind) &&
           !isTopDomain(domain.mid(dot + 1, domain.size() - dot - 2));
  }
  return domain.isEmpty() || last == u'.' || last == u'-' ||
         (ownName && last.isLower() && behind.front().isLower() && behind.indexOf(u'.') > 0);
}

} // namespace

AddressRules AddressRules::of(const SplitSetup& setup) {
  return {setup.emailMatchVert,    setup.emailMatchVertTo,    setup.emailMatchHorizFrom,
          setup.emailMatchHorizTo, setup.emailHorizAfterText, setup.emailHorizBeforeText,
          setup.ignoreCase};
}

AddressSearch::AddressSearch(AddressRules rules) : m_rules(std::move(rules)) {
  for (QString* text : {&m_rules.afterText, &m_rules.beforeText}) {
    *text = folded(text->simplified().left(lineTextLimit), m_rules.ignoreCase);
  }
}

void AddressSearch::startPage() {
  m_text.clear();
  m_words.clear();
}

void AddressSearch::add(const PageWord& word) {
  const QStringView text = word.text.left(maxWordLength);
  if (!m_words.empty()) {
    m_text += u' ';
  }
  m_words.push_back({m_text.size(), text.size(), word.h, word.v, text.contains(u'@')});
  m_text += text;
}

/// One look at a page: the lines, the places of the two texts, and what was found so far.
class AddressSearch::Page {
public:
  explicit Page(const AddressSearch& search)
      : m_search(search), m_rules(search.m_rules), m_words(search.m_words) {
    const QString text = folded(search.m_text, m_rules.ignoreCase);
    m_after = occurrences(text, m_rules.afterText);
    m_before = occurrences(text, m_rules.beforeText);
    findLines();
  }

  void look(std::size_t index) {
    const Word& word = m_words[index];
    if (!word.hasAt || !isInside(word.v, m_rules.verticalFrom, m_rules.verticalTo) ||
        !isInside(word.h, m_rules.horizontalFrom, m_rules.horizontalTo)) {
      return;
    }
    const Pieces pieces = gather(index);
    for (const PlacedAddress& placed : addressesIn(pieces.text)) {
      if (standsRight(index, positionOf(pieces, placed.start),
                      positionOf(pieces, placed.end - 1) + 1)) {
        m_found.push_back(placed.address);
      }
    }
  }

  const QStringList& found() const { return m_found; }

private:
  struct Pieces {
    std::size_t first = 0;
    std::size_t last = 0;
    QString text;
  };

  QStringView textOf(std::size_t index) const {
    return QStringView(m_search.m_text).mid(m_words[index].start, m_words[index].length);
  }

  /// First and last neighbour of every word, but for the limit on their number.
  void findLines() {
    const std::size_t count = m_words.size();
    m_lineStart.resize(count);
    m_lineEnd.resize(count);
    for (std::size_t i = 0; i < count; ++i) {
      const bool joins = i > 0 && m_words[i - 1].v == m_words[i].v &&
                         isInside(m_words[i - 1].h, m_rules.horizontalFrom, -1);
      m_lineStart[i] = joins ? m_lineStart[i - 1] : i;
    }
    for (std::size_t i = count; i-- > 0;) {
      const bool joins = i + 1 < count && m_words[i + 1].v == m_words[i].v &&
                         isInside(m_words[i + 1].h, -1, m_rules.horizontalTo);
      m_lineEnd[i] = joins ? m_lineEnd[i + 1] : i;
    }
  }
  std::size_t firstNeighbour(std::size_t index) const {
    return std::max(m_lineStart[index], index - std::min(index, neighbourLimit));
  }
  std::size_t lastNeighbour(std::size_t index) const {
    return std::min(m_lineEnd[index], index + neighbourLimit);
  }

  /// A blank at most lies between words `left` and `left` + 1, as far as their positions tell, and
  /// what is put together is not too long for an address yet.
  bool mayJoin(const Pieces& pieces, std::size_t left) const {
    if (pieces.text.size() > maxWordLength) {
      return false;
    }
    const Word& a = m_words[left];
    const Word& b = m_words[left + 1];
    const qsizetype characters = (a.h <= b.h ? a.length : b.length) + 1;
    return std::abs(static_cast<qsizetype>(a.h) - b.h) <= widestAdvance * characters;
  }

  Pieces gather(std::size_t index) const {
    Pieces pieces{index, index, textOf(index).toString()};
    const bool ownName = pieces.text.indexOf(u'@') > 0;
    while (pieces.first > firstNeighbour(index) && mayJoin(pieces, pieces.first - 1) &&
           m_words[pieces.first - 1].length > 0 &&
           wantsPieceBefore(pieces.text, textOf(pieces.first - 1))) {
      pieces.text.prepend(textOf(--pieces.first));
    }
    while (pieces.last < lastNeighbour(index) && mayJoin(pieces, pieces.last) &&
           m_words[pieces.last + 1].length > 0 &&
           wantsPieceBehind(pieces.text, textOf(pieces.last + 1), ownName)) {
      pieces.text.append(textOf(++pieces.last));
    }
    return pieces;
  }

  /// Where a character of the pieces stands in the page's text.
  qsizetype positionOf(const Pieces& pieces, qsizetype offset) const {
    std::size_t piece = pieces.first;
    while (piece < pieces.last && offset >= m_words[piece].length) {
      offset -= m_words[piece].length;
      ++piece;
    }
    return m_words[piece].start + offset;
  }

  bool standsRight(std::size_t index, qsizetype start, qsizetype end) const {
    if (!m_rules.afterText.isEmpty()) {
      const qsizetype lineStart = m_words[firstNeighbour(index)].start;
      const auto behind =
          std::upper_bound(m_after.begin(), m_after.end(), start - m_rules.afterText.size());
      if (behind == m_after.begin() || *(behind - 1) < lineStart) {
        return false;
      }
    }
    if (!m_rules.beforeText.isEmpty()) {
      const Word& last = m_words[lastNeighbour(index)];
      const auto next = std::lower_bound(m_before.begin(), m_before.end(), end);
      if (next == m_before.end() || *next + m_rules.beforeText.size() > last.start + last.length) {
        return false;
      }
    }
    return true;
  }

  const AddressSearch& m_search;
  const AddressRules& m_rules;
  const std::vector<Word>& m_words;
  std::vector<qsizetype> m_after;
  std::vector<qsizetype> m_before;
  std::vector<std::size_t> m_lineStart;
  std::vector<std::size_t> m_lineEnd;
  QStringList m_found;
};

namespace {

/// Keeps the first of several spellings of one mailbox.
void addAddress(FoundAddresses& all, const QString& address) {
  const QString key = comparableAddress(address);
  const auto isSame = [&key](const QString& other) { return comparableAddress(other) == key; };
  if (all.address.isEmpty()) {
    all.address = address;
  } else if (!isSame(all.address) && all.further.size() < maxFurtherAddresses &&
             std::none_of(all.further.begin(), all.further.end(), isSame)) {
    all.further += address;
  }
}

} // namespace

FoundAddresses AddressSearch::find() const {
  Page page(*this);
  for (std::size_t i = 0; i < m_words.size(); ++i) {
    if (handlePendingEvents) {
      handlePendingEvents();
    }
    page.look(i);
  }
  FoundAddresses all;
  for (const QString& address : page.found()) {
    addAddress(all, address);
  }
  return all;
}

void addAddresses(FoundAddresses& all, const FoundAddresses& ofPage) {
  if (ofPage.address.isEmpty()) {
    return;
  }
  addAddress(all, ofPage.address);
  for (const QString& address : ofPage.further) {
    addAddress(all, address);
  }
}

} // namespace folivex
