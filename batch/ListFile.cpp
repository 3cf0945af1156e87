#include "batch/ListFile.h"

#include "platform/FileSystem.h"
#include "platform/Paths.h"
#include "platform/TextFile.h"

#include <QFileInfo>

#include <algorithm>
#include <optional>

namespace folivex {

namespace {

/// Bytes that hold more than the characters of a line, whatever these are.
constexpr qsizetype maxLineBytes = 4LL * (maxListLine + 1);

constexpr QChar bar = u'|';
constexpr QChar prefixNotUsed = u'~';
constexpr QChar prefixNoStamp = u'+';

platform::FileAccess accessOf(const QString& path) {
  return platform::isInTemporaryFolder(path) ? platform::FileAccess::Private
                                             : platform::FileAccess::Ordinary;
}

/// A line break of any kind ends the text, but not as its first character.
QStringView withoutLineBreak(QStringView line) {
  for (qsizetype i = 0; i < line.size(); ++i) {
    const char16_t c = line[i].unicode();
    if (c == 0 || (i > 0 && c >= 10 && c <= 13)) {
      return line.first(i);
    }
  }
  return line;
}

std::optional<BatchEntry> entryOfLine(QStringView wholeLine) {
  const QStringView line = withoutLineBreak(wholeLine);
  if (line.isEmpty()) {
    return std::nullopt;
  }
  const qsizetype end = line.indexOf(bar);
  const QStringView name = end < 0 ? line : line.first(end);
  // What is used without a stamp is no row of a run either.
  return name.startsWith(prefixNotUsed) || name.startsWith(prefixNoStamp)
             ? newEntry(name.mid(1).toString(), useNo)
             : newEntry(name.toString());
}

/// The part of a line that is read; half a character is none.
QStringView cutLine(QStringView line) {
  const QStringView cut = line.first(maxListLine);
  return cut.back().isHighSurrogate() ? cut.chopped(1) : cut;
}

/// Without the LF.
QString lineOf(const BatchEntry& entry) {
  QString line = entry.path + bar + bar;
  if (entry.useFlag == useNo) {
    line.prepend(prefixNotUsed);
  } else if (entry.useFlag == useNoStamp) {
    line.prepend(prefixNoStamp);
  }
  return line;
}

bool isKept(const QString& line, const QString& path) {
  if (line.size() > maxListLine || line.contains(u'\n')) {
    return false;
  }
  const std::optional<BatchEntry> readBack = entryOfLine(line);
  return readBack && readBack->path == path;
}

QString whyNotWritten(const QString& path, const QString& text) {
  if (!QFileInfo(path).isAbsolute()) {
    return QStringLiteral("it is in no folder");
  }
  if (platform::isNullDevice(path)) {
    return QStringLiteral("it is no ordinary file");
  }
  platform::TextWriter file;
  const bool isWhole =
      file.openReplacement(path, accessOf(path), platform::TextWriter::Form::Plain) &&
      file.write(text) >= 0 && file.close();
  return isWhole ? QString() : file.errorText();
}

} // namespace

ListFileContent parseListFile(const QByteArray& bytes) {
  ListFileContent content;
  const bool isUtf8 = bytes.isValidUtf8();
  QByteArrayView rest(bytes);
  if (rest.startsWith("\xEF\xBB\xBF")) {
    rest = rest.sliced(3); // an editor's mark, no part of the first path
  }
  for (int number = 1; !rest.isEmpty(); ++number) {
    if (number > maxListLines) {
      return {QStringLiteral("it has too many lines to be a list"), {}, 0};
    }
    const qsizetype end = rest.indexOf('\n');
    const QByteArrayView piece = end < 0 ? rest : rest.first(end);
    const QByteArrayView start = piece.first(std::min(piece.size(), maxLineBytes));
    const QString line =
        isUtf8 ? QString::fromUtf8(start) : QString(platform::olderTextDecoder()(start));
    const bool tooLong = line.size() > maxListLine;
    if (auto entry = entryOfLine(tooLong ? cutLine(line) : QStringView(line))) {
      content.entries.push_back(*std::move(entry));
    }
    if (tooLong) {
      content.cutLine = number;
      break;
    }
    rest = end < 0 ? QByteArrayView() : rest.sliced(end + 1);
  }
  return content;
}

ListFileContent readListFile(const QString& path) {
  QFile file;
  platform::FileFailure failure;
  if (!platform::openForReading(file, path, accessOf(path), failure)) {
    return {failure.text, {}, 0};
  }
  if (file.size() > platform::TextReader::maxFileSize) {
    return {QStringLiteral("it is too large to be a list"), {}, 0};
  }
  const QByteArray bytes = file.readAll();
  if (file.error() != QFileDevice::NoError) {
    return {file.errorString(), {}, 0};
  }
  return parseListFile(bytes);
}

ListFileSaved writeListFile(const QString& path, const std::vector<BatchEntry>& entries) {
  ListFileSaved saved;
  QString text;
  for (const BatchEntry& entry : entries) {
    const QString line = lineOf(entry);
    saved.notKept += isKept(line, entry.path) ? 0 : 1;
    text += line + u'\n';
  }
  saved.failure = whyNotWritten(path, text);
  return saved;
}

} // namespace folivex
