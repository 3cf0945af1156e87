#include "mail/MailHeader.h"

#include "mail/MailAddress.h"

#include <QRegularExpression>

namespace folivex {

namespace {

/// Bytes of text in one encoded word: "=?UTF-8?B?" and "?=" leave 63 of its 75 characters, and the
/// first line has the header's name in front.
constexpr qsizetype encodedWordBytes = 39;
constexpr qsizetype parameterPiece = 50;
constexpr qsizetype longestQuoted = 60;

/// Text that stays as it is: it can be folded at its blanks, and unfolding gives it back.
bool isPlain(const QString& text) {
  static const QRegularExpression plain(
      QStringLiteral(R"(\A(?! |.*(?:=\?|  |[!-~]{60}))[ -~]*(?<! )\z)"));
  return plain.match(text).hasMatch();
}

bool isQuotable(const QString& text) {
  static const QRegularExpression printable(QStringLiteral(R"(\A[ -~]*\z)"));
  return text.size() <= longestQuoted && printable.match(text).hasMatch();
}

/// The UTF-8 of the text in pieces of at most `most` bytes as `encoded` gives them. No character is
/// cut in two.
QByteArrayList piecesOf(const QString& text, qsizetype most,
                        QByteArray (*encoded)(const QByteArray& character)) {
  QByteArrayList pieces(1);
  for (qsizetype at = 0, length = 0; at < text.size(); at += length) {
    length = text[at].isHighSurrogate() ? 2 : 1;
    const QByteArray character = encoded(text.mid(at, length).toUtf8());
    if (pieces.back().size() + character.size() > most) {
      pieces.emplace_back();
    }
    pieces.back() += character;
  }
  return pieces;
}

QByteArray asItIs(const QByteArray& character) {
  return character;
}

QByteArray percentEncoded(const QByteArray& character) {
  return character.toPercentEncoding({}, "!~'()*");
}

QByteArray encodedWords(const QString& text) {
  QByteArrayList words = piecesOf(text, encodedWordBytes, asItIs);
  for (QByteArray& word : words) {
    word = "=?UTF-8?B?" + word.toBase64() + "?=";
  }
  return words.join("\r\n ");
}

QByteArray foldedAtBlanks(QString text) {
  static const QRegularExpression line(QStringLiteral("(?=.{61})(.{1,60}) "));
  return text.replace(line, QStringLiteral("\\1\r\n ")).toLatin1();
}

QByteArray quoted(QString text) {
  static const QRegularExpression special(QStringLiteral(R"((["\\]))"));
  return '"' + text.replace(special, QStringLiteral("\\\\1")).toLatin1() + '"';
}

} // namespace

QString withoutControlCharacters(QString text) {
  static const QRegularExpression controls(QStringLiteral(R"([\p{Cc}\p{Zl}\p{Zp}]+)"));
  return text.replace(controls, QStringLiteral(" "));
}

QByteArray textHeader(const QByteArray& name, const QString& text) {
  const QString clean = withoutControlCharacters(text);
  return name + ": " + (isPlain(clean) ? foldedAtBlanks(clean) : encodedWords(clean));
}

QByteArray addressHeader(const QByteArray& name, const QString& display, const QString& address) {
  const QString clean = withoutControlCharacters(display).trimmed();
  const QByteArray ascii = addressForServer(address).toUtf8();
  if (clean.isEmpty()) {
    return name + ": " + ascii;
  }
  const bool quotable = isQuotable(clean) && !clean.contains(QLatin1String("=?"));
  return name + ": " + (quotable ? quoted(clean) : encodedWords(clean)) + "\r\n <" + ascii + '>';
}

QByteArray addressListHeader(const QByteArray& name, const QStringList& addresses) {
  QByteArrayList own;
  for (const QString& address : addresses) {
    own += addressForServer(address).toUtf8();
  }
  return name + ": " + own.join(",\r\n ");
}

QByteArray attachmentHeader(const QString& fileName) {
  const QString name = withoutControlCharacters(fileName);
  QByteArray header = "Content-Disposition: attachment";
  if (isQuotable(name)) {
    return header + ";\r\n filename=" + quoted(name);
  }
  const QByteArrayList pieces = piecesOf(name, parameterPiece, percentEncoded);
  for (qsizetype i = 0; i < pieces.size(); ++i) {
    const QByteArray number = pieces.size() > 1 ? "*" + QByteArray::number(i) : "";
    header += ";\r\n filename" + number + "*=" + (i == 0 ? "UTF-8''" : "") + pieces[i];
  }
  return header;
}

} // namespace folivex
