#include "mail/MailHeader.h"

#include "mail/MailAddress.h"

#include <algorithm>
#include <vector>

namespace folivex {

namespace {

constexpr qsizetype lineLength = 76;
/// Bytes of text in one encoded word: "=?UTF-8?B?" and "?=" leave 63 of its 75 characters, and the
/// first line has the header's name in front.
constexpr qsizetype encodedWordBytes = 39;
constexpr qsizetype parameterPiece = 50;
constexpr qsizetype longestQuotedName = 60;

bool isPrintableAscii(QChar c) {
  return c >= u' ' && c.unicode() < 0x7F;
}

/// Text that stays as it is: it can be folded at its blanks, and unfolding gives it back.
bool isPlain(const QString& text) {
  if (text.contains(QLatin1String("=?")) || text.contains(QLatin1String("  ")) ||
      text.startsWith(u' ') || text.endsWith(u' ')) {
    return false;
  }
  qsizetype run = 0;
  for (const QChar c : text) {
    run = c == u' ' ? 0 : run + 1;
    if (!isPrintableAscii(c) || run >= lineLength - 16) {
      return false;
    }
  }
  return true;
}

/// Bytes of the character that begins at `at`: none is ever cut in two.
qsizetype characterLength(const QByteArray& utf8, qsizetype at) {
  qsizetype length = 1;
  while (at + length < utf8.size() &&
         (static_cast<unsigned char>(utf8[at + length]) & 0xC0) == 0x80) {
    ++length;
  }
  return length;
}

QByteArray encodedWords(const QString& text) {
  const QByteArray utf8 = text.toUtf8();
  QByteArray words;
  for (qsizetype at = 0; at < utf8.size();) {
    qsizetype length = 0;
    while (at + length < utf8.size()) {
      const qsizetype next = characterLength(utf8, at + length);
      if (length > 0 && length + next > encodedWordBytes) {
        break;
      }
      length += next;
    }
    words += (words.isEmpty() ? "=?UTF-8?B?" : "\r\n =?UTF-8?B?") +
             utf8.mid(at, length).toBase64() + "?=";
    at += length;
  }
  return words;
}

QByteArray foldedAtBlanks(const QByteArray& text, qsizetype column) {
  QByteArray folded;
  for (const QByteArray& word : text.split(' ')) {
    const bool first = folded.isEmpty();
    if (!first && column + 1 + word.size() > lineLength) {
      folded += "\r\n ";
      column = 1 + word.size();
    } else {
      folded += first ? "" : " ";
      column += word.size() + (first ? 0 : 1);
    }
    folded += word;
  }
  return folded;
}

QByteArray quoted(const QString& text) {
  QByteArray result = "\"";
  for (const char c : text.toUtf8()) {
    if (c == '"' || c == '\\') {
      result += '\\';
    }
    result += c;
  }
  return result + '"';
}

QByteArray displayName(const QString& name) {
  const bool quotable = name.size() <= longestQuotedName && !name.contains(QLatin1String("=?")) &&
                        std::all_of(name.begin(), name.end(), isPrintableAscii);
  return quotable ? quoted(name) : encodedWords(name);
}

QByteArray percentEncoded(const QByteArray& utf8) {
  return utf8.toPercentEncoding({}, "!~'()*");
}

} // namespace

QString withoutControlCharacters(const QString& text) {
  QString result;
  result.reserve(text.size());
  bool inRun = false;
  for (const QChar c : text) {
    const QChar::Category category = c.category();
    const bool control = category == QChar::Other_Control || category == QChar::Separator_Line ||
                         category == QChar::Separator_Paragraph;
    if (!control) {
      result += c;
    } else if (!inRun) {
      result += u' ';
    }
    inRun = control;
  }
  return result;
}

QByteArray textHeader(QByteArrayView name, const QString& text) {
  const QString clean = withoutControlCharacters(text);
  QByteArray line = name.toByteArray() + ": ";
  line += isPlain(clean) ? foldedAtBlanks(clean.toLatin1(), line.size()) : encodedWords(clean);
  return line + "\r\n";
}

QByteArray addressHeader(QByteArrayView name, const QString& display, const QString& address) {
  const QString clean = withoutControlCharacters(display).trimmed();
  QByteArray line = name.toByteArray() + ": ";
  const QByteArray ascii = addressForServer(address).toUtf8();
  if (clean.isEmpty()) {
    return line + ascii + "\r\n";
  }
  return line + displayName(clean) + "\r\n <" + ascii + ">\r\n";
}

QByteArray addressListHeader(QByteArrayView name, const QStringList& addresses) {
  QByteArray line = name.toByteArray() + ": ";
  for (const QString& address : addresses) {
    line += (line.endsWith(": ") ? "" : ",\r\n ") + addressForServer(address).toUtf8();
  }
  return line + "\r\n";
}

QByteArray attachmentHeader(const QString& fileName) {
  const QString name = withoutControlCharacters(fileName);
  QByteArray header = "Content-Disposition: attachment";
  if (name.size() <= longestQuotedName && std::all_of(name.begin(), name.end(), isPrintableAscii)) {
    return header + ";\r\n filename=" + quoted(name) + "\r\n";
  }
  const QByteArray utf8 = name.toUtf8();
  std::vector<QByteArray> pieces(1);
  for (qsizetype at = 0; at < utf8.size();) {
    const qsizetype length = characterLength(utf8, at);
    const QByteArray character = percentEncoded(utf8.mid(at, length));
    if (pieces.back().size() + character.size() > parameterPiece) {
      pieces.emplace_back();
    }
    pieces.back() += character;
    at += length;
  }
  for (std::size_t i = 0; i < pieces.size(); ++i) {
    const QByteArray number =
        pieces.size() > 1 ? "*" + QByteArray::number(static_cast<int>(i)) : "";
    header += ";\r\n filename" + number + "*=" + (i == 0 ? "UTF-8''" : "") + pieces[i];
  }
  return header + "\r\n";
}

} // namespace folivex
