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

/// "anna_": somebody's name was cut, or a form has a line there. "E-mail_" is the name of a field,
/// and a text that ends in "+" ("A+") is none of an address.
bool breaksOffInName(QStringView piece) {
  return piece.size() >= 2 && piece.back() == u'_' && piece[piece.size() - 2].isLetterOrNumber() &&
         !piece.contains(u"mail", Qt::CaseInsensitive);
}

bool isKnownTop(QStringView label) {
  static constexpr std::array<QStringView, 7> known = {u"com", u"net",  u"org", u"edu",
                                                       u"gov", u"info", u"biz"};
  return std::find(known.begin(), known.end(), label) != known.end();
}

bool isCountry(QStringView label) {
  return label.size() == 2 && label[0].isLower() && label[1].isLower();
}

/// Names stand below these in many countries: "example.co.uk".
bool isSecondLevel(QStringView label) {
  return isKnownTop(label) || label == u"co" || label == u"ac";
}

/// Whether a domain that ends with this label may be whole.
bool endsDomain(QStringView label) {
  return isKnownTop(label) || isCountry(label);
}

/// ".org" or "org" and nothing else but punctuation behind. A web address is a word of its own.
bool isDomainPiece(QStringView piece) {
  const QChar first = piece.front();
  return (first.isLetterOrNumber() || (first == u'.' && piece.size() > 1)) &&
         !piece.startsWith(u"www.", Qt::CaseInsensitive);
}

/// Without the punctuation behind it.
QStringView bare(QStringView piece) {
  while (!piece.isEmpty() && !piece.back().isLetterOrNumber()) {
    piece.chop(1);
  }
  return piece;
}

/// Has a dot with something on either side.
bool hasLabels(QStringView piece) {
  const qsizetype dot = piece.indexOf(u'.');
  return dot > 0 && dot + 1 < piece.size();
}

/// The address has nothing of its own before its "@", or begins in the middle of a name.
bool lacksName(QStringView text) {
  return text.front() == u'@' || text.front() == u'.';
}

bool wantsPieceBefore(QStringView text, QStringView before) {
  return lacksName(text) && !before.contains(u'@') && isNameCharacter(before.back());
}

/// A domain as far as it was put together.
struct DomainSoFar {
  QStringView text;
  bool inPieces = false; ///< the last label came as a word of its own, with its dot in front

  bool hasDot() const { return text.left(text.size() - 1).contains(u'.'); }
  /// The last label, without the dot behind it.
  QStringView label() const {
    const QStringView whole = text.endsWith(u'.') ? text.chopped(1) : text;
    return whole.mid(whole.lastIndexOf(u'.') + 1);
  }
};

/// What to do with the next word.
enum class Next {
  Take,
  Leave,
  Doubt ///< whether it belongs to the address cannot be told: no address is better than a wrong one
};

Next takeIf(bool wanted) {
  return wanted ? Next::Take : Next::Leave;
}

/// ".org" behind a domain.
Next dottedPiece(const DomainSoFar& domain, QStringView behind) {
  if (domain.text.isEmpty() || !domain.text.back().isLetterOrNumber() || !behind[1].isLower()) {
    return Next::Leave;
  }
  if (!domain.hasDot() || !endsDomain(domain.label())) {
    return Next::Take;
  }
  const bool mayGoOn = isSecondLevel(domain.label()) && isCountry(bare(behind.mid(1)));
  return !mayGoOn ? Next::Leave : domain.inPieces ? Next::Take : Next::Doubt;
}

/// What stands behind a domain that ends with a dot: its end, or the next sentence.
bool wantsTopDomain(const DomainSoFar& domain, QStringView behind) {
  return domain.hasDot() ? isKnownTop(bare(behind)) && !endsDomain(domain.label())
                         : endsDomain(bare(behind)) || hasLabels(behind);
}

Next pieceBehind(const DomainSoFar& domain, QStringView behind, bool ownName) {
  if (behind.contains(u'@') || !isDomainPiece(behind)) {
    return Next::Leave;
  }
  if (behind.front() == u'.') {
    return dottedPiece(domain, behind);
  }
  if (domain.text.isEmpty()) {
    return Next::Take;
  }
  const QChar last = domain.text.back();
  if (last == u'.') {
    return takeIf(wantsTopDomain(domain, behind));
  }
  const bool startsMidWord = ownName && last.isLower() && behind.front().isLower() &&
                             hasLabels(behind) && behind.count(u'.') == 1;
  return takeIf(!domain.hasDot() && (last == u'-' || startsMidWord));
}

/// "anna@mail.my-": the domain goes on, and nobody knows where. A row of dashes is a line, and one
/// behind a top domain is a dash.
bool breaksOffInDomain(QStringView text) {
  const QStringView label = text.chopped(1).mid(text.lastIndexOf(u'.') + 1);
  return text.size() >= 2 && text.back() == u'-' && text[text.size() - 2].isLetterOrNumber() &&
         !isKnownTop(label);
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
      if (isWhole(pieces, placed) && standsRight(index, positionOf(pieces, placed.start),
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
    bool doubtBefore = false; ///< the name at the start may lack its beginning
    bool doubtBehind = false; ///< the domain at the end may go on
  };

  QStringView textOf(std::size_t index) const {
    return QStringView(m_search.m_text).mid(m_words[index].start, m_words[index].length);
  }

  /// First and last word of every word's line, and those of them that a row of words inside the
  /// horizontal window leads to, all but for the limit on their number.
  void findLines() {
    const std::size_t count = m_words.size();
    for (Reach* reach : {&m_line, &m_inWindow}) {
      reach->first.resize(count);
      reach->last.resize(count);
    }
    for (std::size_t i = 0; i < count; ++i) {
      const bool sameLine = i > 0 && m_words[i - 1].v == m_words[i].v;
      const bool joins = sameLine && isInside(m_words[i - 1].h, m_rules.horizontalFrom, -1);
      m_line.first[i] = sameLine ? m_line.first[i - 1] : i;
      m_inWindow.first[i] = joins ? m_inWindow.first[i - 1] : i;
    }
    for (std::size_t i = count; i-- > 0;) {
      const bool sameLine = i + 1 < count && m_words[i + 1].v == m_words[i].v;
      const bool joins = sameLine && isInside(m_words[i + 1].h, -1, m_rules.horizontalTo);
      m_line.last[i] = sameLine ? m_line.last[i + 1] : i;
      m_inWindow.last[i] = joins ? m_inWindow.last[i + 1] : i;
    }
  }

  /// How far the neighbours of each word go.
  struct Reach {
    std::vector<std::size_t> first;
    std::vector<std::size_t> last;

    std::size_t firstOf(std::size_t index) const {
      return std::max(first[index], index - std::min(index, neighbourLimit));
    }
    std::size_t lastOf(std::size_t index) const {
      return std::min(last[index], index + neighbourLimit);
    }
  };

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
    const bool ownName = !lacksName(pieces.text);
    while (pieces.first > m_inWindow.firstOf(index) && mayJoin(pieces, pieces.first - 1)) {
      const QStringView before = textOf(pieces.first - 1);
      if (before.isEmpty() || !wantsPieceBefore(pieces.text, before)) {
        pieces.doubtBefore = !before.isEmpty() && breaksOffInName(before);
        break;
      }
      pieces.text.prepend(before);
      --pieces.first;
    }
    gatherBehind(pieces, m_inWindow.lastOf(index), ownName);
    return pieces;
  }

  void gatherBehind(Pieces& pieces, std::size_t lastNeighbour, bool ownName) const {
    bool inPieces = false;
    while (pieces.last < lastNeighbour && mayJoin(pieces, pieces.last)) {
      const QStringView behind = textOf(pieces.last + 1);
      const QStringView text(pieces.text);
      const Next next =
          behind.isEmpty()
              ? Next::Leave
              : pieceBehind({text.mid(text.lastIndexOf(u'@') + 1), inPieces}, behind, ownName);
      pieces.doubtBehind = next == Next::Doubt;
      if (next != Next::Take) {
        break;
      }
      inPieces = behind.front() == u'.';
      pieces.text.append(behind);
      ++pieces.last;
    }
    pieces.doubtBehind = pieces.doubtBehind || breaksOffInDomain(pieces.text);
  }

  /// An address at an end of the pieces that may be but a part of one is none.
  static bool isWhole(const Pieces& pieces, const PlacedAddress& placed) {
    const bool atStart = placed.start == 0;
    const bool atEnd = placed.end + 1 >= pieces.text.size();
    return !(atStart && pieces.doubtBefore) && !(atEnd && pieces.doubtBehind);
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
      const qsizetype lineStart = m_words[m_line.firstOf(index)].start;
      const auto behind =
          std::upper_bound(m_after.begin(), m_after.end(), start - m_rules.afterText.size());
      if (behind == m_after.begin() || *(behind - 1) < lineStart) {
        return false;
      }
    }
    if (!m_rules.beforeText.isEmpty()) {
      const Word& last = m_words[m_line.lastOf(index)];
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
  Reach m_line;
  Reach m_inWindow;
  QStringList m_found;
};

AddressReader::Found AddressSearch::find() const {
  Page page(*this);
  for (std::size_t i = 0; i < m_words.size(); ++i) {
    if (handlePendingEvents) {
      handlePendingEvents();
    }
    page.look(i);
  }
  AddressReader::Found all;
  QStringList mailboxes; // several spellings of one are one
  for (const QString& address : page.found()) {
    const QString mailbox = comparableAddress(address);
    if (mailboxes.size() <= maxFurtherAddresses && !mailboxes.contains(mailbox)) {
      if (mailboxes.isEmpty()) {
        all.address = address;
      } else {
        all.further += address;
      }
      mailboxes += mailbox;
    }
  }
  return all;
}

AddressReader::Found AddressSearch::read(WordSource& words) {
  startPage();
  const int count = words.numWords();
  for (int i = 0; i < count; ++i) {
    add(words.word(i));
  }
  return find();
}

std::unique_ptr<AddressReader> addressReaderFor(const SplitSetup& setup) {
  return std::make_unique<AddressSearch>(AddressRules::of(setup));
}

} // namespace folivex
