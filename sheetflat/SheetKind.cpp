#include "sheetflat/SheetKind.h"

#include <QStringView>

#include <algorithm>

namespace sheetflat {

namespace {

// Enough to tell text from bytes, and a web page from a table.
constexpr qsizetype headSize = 65536;

// A compound file names its streams somewhere in it, in UTF-16.
bool isEncryptedPackage(const QByteArray& content) {
  constexpr QStringView stream = u"EncryptedPackage";
  return content.contains(
      QByteArray(reinterpret_cast<const char*>(stream.utf16()), stream.size() * 2));
}

// An OpenDocument file begins with its type, stored as it is; other kinds of zip have none.
SheetKind kindOfZip(const QByteArray& content) {
  const QByteArray head = content.left(256);
  if (!head.contains("mimetypeapplication/vnd.oasis.opendocument.")) {
    return SheetKind::OpenXml;
  }
  return head.contains("opendocument.spreadsheet") ? SheetKind::OpenDocument : SheetKind::Other;
}

bool isText(const QByteArray& head) {
  if (head.startsWith("\xff\xfe") || head.startsWith("\xfe\xff")) {
    return true;
  }
  return std::none_of(head.begin(), head.end(), [](char c) {
    return static_cast<unsigned char>(c) < 0x20 && c != '\t' && c != '\n' && c != '\r' && c != '\f';
  });
}

bool isWebPage(const QByteArray& head) {
  const QByteArray start = head.left(1024).toLower();
  return start.contains("<html") || start.contains("<table");
}

} // namespace

SheetKind kindOf(const QByteArray& content) {
  if (content.startsWith("PK\x03\x04")) {
    return kindOfZip(content);
  }
  if (content.startsWith("\xd0\xcf\x11\xe0\xa1\xb1\x1a\xe1")) {
    return isEncryptedPackage(content) ? SheetKind::Encrypted : SheetKind::Binary;
  }
  const QByteArray head = content.left(headSize);
  if (head.startsWith("%PDF-") || !isText(head)) {
    return SheetKind::Other;
  }
  return isWebPage(head) ? SheetKind::WebPage : SheetKind::Text;
}

} // namespace sheetflat
