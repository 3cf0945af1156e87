#include "mail/EmailListFile.h"

#include "platform/TextFile.h"

#include <algorithm>
#include <array>

namespace folivex {

namespace {

constexpr QStringView headerStart = u"UNICODE";
/// What one read of the line buffer takes.
constexpr int longestPiece = 4095;
constexpr std::size_t fieldCount = 4;

/// A text with one of these reads back as something else.
bool breaksLine(const QString& text) {
  return text.contains(u'|') || text.contains(u'\r') || text.contains(u'\n');
}

QString line(const EmailRow& row) {
  return row.entry.address + u'|' + row.entry.file + u'|' + row.shownPageStart + u'|' +
         row.shownPageEnd + QStringLiteral("\r\n");
}

QString noteAbout(const EmailList& list) {
  QStringList numbers;
  std::size_t count = 0;
  constexpr std::size_t mostNamed = 10;
  for (std::size_t i = 0; i < list.count(); ++i) {
    const EmailRow& row = list.rows()[i];
    const bool readsBack = line(row).size() <= longestPiece && !breaksLine(row.entry.address) &&
                           !breaksLine(row.entry.file) && !breaksLine(row.shownPageStart) &&
                           !breaksLine(row.shownPageEnd) &&
                           !row.entry.address.startsWith(headerStart);
    if (!readsBack && ++count <= mostNamed) {
      numbers += QString::number(i + 1);
    }
  }
  if (count == 0) {
    return {};
  }
  return QStringLiteral(
             "%1 of the saved rows will not read back as they are, because of a \"|\" or "
             "a line end in a field: row %2%3")
      .arg(count)
      .arg(numbers.join(QStringLiteral(", ")),
           count > mostNamed ? QStringLiteral(", ...") : QString());
}

EmailRow rowOf(QStringView text) {
  std::array<QString, fieldCount> fields;
  qsizetype from = 0;
  for (QString& field : fields) {
    const qsizetype end = text.indexOf(u'|', from);
    field = text.mid(from, end < 0 ? -1 : end - from).toString();
    if (end < 0) {
      break;
    }
    from = end + 1;
  }
  EmailEntry entry;
  entry.address = fields[0];
  entry.file = fields[1];
  entry.extractPageStart = fields[2].toInt(); // 0 when it is no number
  entry.extractPageEnd = fields[3].toInt();
  return {fitted(entry), fields[2], fields[3]};
}

} // namespace

EmailListResult saveEmailList(const EmailList& list, const QString& path) {
  if (list.isEmpty()) {
    return {false, QStringLiteral("Nothing to save!"), {}};
  }
  platform::TextWriter file;
  bool ok = file.openReplacement(path, platform::accessForSecrets(path));
  if (ok) {
    file.write(QStringLiteral("UNICODEV4\r\n"));
    for (const EmailRow& row : list.rows()) {
      file.write(line(row));
    }
    ok = file.close();
  }
  if (!ok) {
    return {false, QStringLiteral("Unable to create file: ") + path, file.errorText()};
  }
  return {true, QStringLiteral("Saved email list to: ") + path, noteAbout(list)};
}

EmailListResult loadEmailList(EmailList& list, const QString& path) {
  list.clear();
  platform::TextReader file;
  if (!file.open(path, platform::accessForSecrets(path))) {
    return {false, QStringLiteral("Unable to open file: ") + path, file.errorText()};
  }
  std::vector<EmailRow> rows;
  QString text;
  while (file.readLine(text, longestPiece)) {
    if (!text.isEmpty() && !text.startsWith(headerStart)) {
      rows.push_back(rowOf(text));
    }
  }
  if (file.error() != platform::FileError::None) {
    return {false, QStringLiteral("Unable to open file: ") + path, file.errorText()};
  }
  list.setRows(std::move(rows), path);
  return {true, {}, {}};
}

} // namespace folivex
