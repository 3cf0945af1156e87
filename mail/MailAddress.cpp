#include "mail/MailAddress.h"

#include <QRegularExpression>
#include <QUrl>

#include <algorithm>

namespace folivex {

namespace {

constexpr qsizetype maxDomainLength = 253;

bool isAsciiAlnum(char16_t c) {
  return (c >= u'0' && c <= u'9') || (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z');
}

bool isAsciiDigit(char16_t c) {
  return c >= u'0' && c <= u'9';
}

/// A character beyond ASCII that a name may hold: letters with their accents, and digits. Halves of
/// a pair count, the whole text is checked for lone ones.
bool isForeignLetter(QChar c) {
  return c.unicode() >= 0x80 && (c.isLetterOrNumber() || c.isMark() || c.isSurrogate());
}

bool isAtomCharacter(QChar c) {
  static constexpr QStringView specials = u"!#$%&'*+-/=?^_`{|}~";
  return isAsciiAlnum(c.unicode()) || specials.contains(c) || isForeignLetter(c);
}

bool isDomainCharacter(QChar c) {
  return isAsciiAlnum(c.unicode()) || c == u'-' || isForeignLetter(c);
}

bool hasUnseenCharacter(QStringView text) {
  for (qsizetype i = 0; i < text.size(); ++i) {
    const QChar c = text[i];
    if (c.isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate()) {
      ++i;
      continue;
    }
    const QChar::Category category = c.category();
    if (c.isSurrogate() || category == QChar::Other_Control || category == QChar::Other_Format ||
        category == QChar::Separator_Line || category == QChar::Separator_Paragraph) {
      return true;
    }
  }
  return false;
}

/// Length of the quoted string that `text` begins with, its quotes included; 0 when it never ends.
qsizetype quotedLength(QStringView text) {
  for (qsizetype i = 1; i < text.size(); ++i) {
    if (text[i] == u'\\') {
      ++i;
    } else if (text[i] == u'"') {
      return i + 1;
    }
  }
  return 0;
}

/// Where the "@" between the two parts is; -1 without one.
qsizetype separatorAt(QStringView address) {
  if (!address.startsWith(u'"')) {
    return address.indexOf(u'@');
  }
  const qsizetype end = quotedLength(address);
  return end > 0 && end < address.size() && address[end] == u'@' ? end : -1;
}

QString localPartProblem(QStringView local) {
  if (local.isEmpty()) {
    return QStringLiteral("has nothing before the \"@\"");
  }
  if (local.toUtf8().size() > maxLocalPartLength) {
    return QStringLiteral("has more than 64 characters before the \"@\"");
  }
  if (local.startsWith(u'"')) {
    // A quoted part may hold nearly everything, but these would end the address for a server.
    return local.contains(u'<') || local.contains(u'>')
               ? QStringLiteral("has a bracket before the \"@\"")
               : QString();
  }
  QChar previous = u'.';
  for (const QChar c : local) {
    if (c == u'.' ? previous == u'.' : !isAtomCharacter(c)) {
      return QStringLiteral("has \"%1\" at a wrong place before the \"@\"").arg(c);
    }
    previous = c;
  }
  return previous == u'.' ? QStringLiteral("has a dot right before the \"@\"") : QString();
}

/// "[192.0.2.1]" or "[IPv6:2001:db8::1]".
bool isAddressLiteral(QStringView domain) {
  static const QRegularExpression literal(
      QStringLiteral(R"(\A\[(?:(?:(?:25[0-5]|2[0-4][0-9]|[01]?[0-9]{1,2})(?:\.(?!\])|(?=\]))){4})"
                     R"(|[Ii][Pp][Vv]6:(?=[^:]*:[^:]*:)[0-9A-Fa-f:.]+)\]\z)"));
  return literal.match(domain.toString()).hasMatch();
}

/// Letters, digits and hyphens, none of them at an end (RFC 1123).
bool isHostLabel(QStringView label) {
  static const QRegularExpression pattern(
      QStringLiteral(R"(\A[0-9A-Za-z](?:[0-9A-Za-z-]{0,61}[0-9A-Za-z])?\z)"));
  return pattern.match(label.toString()).hasMatch();
}

bool isAscii(QStringView text) {
  return std::all_of(text.begin(), text.end(), [](QChar c) { return c.unicode() < 0x80; });
}

QString asciiDomain(QStringView domain) {
  // Plain domains stay as they are, case included: only the others need another form.
  return isAscii(domain) ? domain.toString() : QString::fromLatin1(QUrl::toAce(domain.toString()));
}

QString domainProblem(QStringView domain, MailDomain kind) {
  if (domain.isEmpty()) {
    return QStringLiteral("has nothing behind the \"@\"");
  }
  if (kind == MailDomain::AnyHost && isAddressLiteral(domain)) {
    return {};
  }
  const QString ascii = asciiDomain(domain);
  const QList<QStringView> labels = QStringView(ascii).split(u'.');
  if (ascii.isEmpty() || ascii.size() > maxDomainLength ||
      !std::all_of(labels.begin(), labels.end(), isHostLabel)) {
    return QStringLiteral("has no valid domain behind the \"@\"");
  }
  const QStringView top = labels.back();
  if (kind == MailDomain::Public &&
      (labels.size() < 2 || top.size() < 2 ||
       std::all_of(top.begin(), top.end(), [](QChar c) { return isAsciiDigit(c.unicode()); }))) {
    return QStringLiteral("has no complete domain behind the \"@\"");
  }
  return {};
}

/// Letters of two scripts side by side are two words in a text that knows no blanks. What is no
/// letter (digits, dots, accents) belongs to both.
class OneScript {
public:
  /// False when `c` is of another script than the letters before.
  bool accepts(QChar c) {
    if (!c.isLetter() && !c.isSurrogate()) {
      return true;
    }
    const bool latin = c.script() == QChar::Script_Latin;
    if (!m_known) {
      m_known = true;
      m_latin = latin;
    }
    return latin == m_latin;
  }
  void restart() { m_known = false; }

private:
  bool m_known = false;
  bool m_latin = false;
};

/// Where the quoted local part that ends before `at` begins; -1 when it is none.
qsizetype quotedStart(QStringView word, qsizetype from, qsizetype at) {
  const qsizetype start = at >= 2 ? word.lastIndexOf(u'"', at - 2) : -1;
  return start >= from && quotedLength(word.mid(start, at - start)) == at - start ? start : -1;
}

/// Where the local part that ends at `at` begins, wrappers in front cut.
qsizetype localStart(QStringView word, qsizetype from, qsizetype at) {
  if (at > from && word[at - 1] == u'"') {
    const qsizetype quoted = quotedStart(word, from, at);
    return quoted >= 0 ? quoted : at;
  }
  qsizetype start = at;
  OneScript script;
  while (start > from && (word[start - 1] == u'.' || isAtomCharacter(word[start - 1])) &&
         word[start - 1] != u'|' && script.accepts(word[start - 1])) {
    --start;
  }
  // "E-mail=anna@..." and "Fax/E-mail/anna@...": a label, not a part of the address.
  for (qsizetype i = at; i > start; --i) {
    if ((word[i - 1] == u'=' || word[i - 1] == u'/') &&
        word.mid(start, i - start).contains(u"mail", Qt::CaseInsensitive)) {
      start = i;
      break;
    }
  }
  static constexpr QStringView wrappers = u".'`/=*{}~?!#$%^&-+";
  while (start < at && (wrappers.contains(word[start]) || word.mid(start, 2) == u"__" ||
                        (start > from && word[start - 1] == u'_' && word[start] == u'_'))) {
    ++start;
  }
  return start;
}

/// Behind the last character of the domain that begins at `from`, trailing punctuation cut.
qsizetype domainEnd(QStringView word, qsizetype from) {
  qsizetype end = from;
  OneScript script;
  while (end < word.size()) {
    const QChar c = word[end];
    if (c == u'.') {
      if (end + 1 >= word.size() || !isDomainCharacter(word[end + 1])) {
        break;
      }
      script.restart();
    } else if (!isDomainCharacter(c) || !script.accepts(c)) {
      break;
    }
    ++end;
  }
  while (end > from && (word[end - 1] == u'-' || word[end - 1] == u'.')) {
    --end;
  }
  return end;
}

} // namespace

QString addressProblem(QStringView address, MailDomain domain) {
  if (address.isEmpty()) {
    return QStringLiteral("is empty");
  }
  if (hasUnseenCharacter(address)) {
    return QStringLiteral("has a control character in it");
  }
  if (address.toUtf8().size() > maxAddressLength) {
    return QStringLiteral("has more than 254 characters");
  }
  const qsizetype at = separatorAt(address);
  if (at < 0) {
    return QStringLiteral("has no \"@\"");
  }
  const QString problem = localPartProblem(address.first(at));
  return problem.isEmpty() ? domainProblem(address.mid(at + 1), domain) : problem;
}

std::vector<PlacedAddress> addressesIn(QStringView word) {
  std::vector<PlacedAddress> found;
  qsizetype from = 0; // behind what the address before has taken
  const qsizetype url = word.indexOf(u"://");
  for (qsizetype at = word.indexOf(u'@'); at >= 0; at = word.indexOf(u'@', at + 1)) {
    const qsizetype start = localStart(word, from, at);
    const qsizetype end = domainEnd(word, at + 1);
    const bool partOfUrl = url >= 0 && url < at;
    const bool chained =
        (start > 0 && word[start - 1] == u'@') || (end < word.size() && word[end] == u'@');
    const QStringView address = word.mid(start, end - start);
    if (!partOfUrl && !chained && isMailAddress(address, MailDomain::Public)) {
      found.push_back({address.toString(), start, end});
    }
    from = std::max(end, at + 1);
  }
  return found;
}

QString comparableAddress(const QString& address) {
  const qsizetype at = address.lastIndexOf(u'@');
  return at < 0 ? address : address.left(at) + address.mid(at).toLower();
}

QString addressForServer(const QString& address) {
  const qsizetype at = separatorAt(address);
  if (at < 0) {
    return {};
  }
  const QString domain = asciiDomain(QStringView(address).mid(at + 1));
  return domain.isEmpty() ? QString() : address.left(at + 1) + domain;
}

} // namespace folivex
