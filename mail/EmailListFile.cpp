#include "mail/EmailListFile.h"

#include "engine/base/Text.h"
#include "platform/TextFile.h"

#include <algorithm>

namespace folivex {

namespace {

constexpr QStringView headerStart = u"UNICODE";
/// What one read of the line buffer takes.
constexpr int longestPiece = 4095;
/// Of a line without its end.
constexpr qsizetype longestLine = longestPiece - 2;
/// Programs that keep a path in a buffer of fixed size write no more of it.
constexpr qsizetype pathOfOthers = 255;

/// A text with one of these reads back as something else.
bool breaksLine(const QString& text) {
  return text.contains(u'|') || text.contains(u'\r') || text.contains(u'\n');
}

/// Characters that a line has for the path.
qsizetype roomForFile(const EmailRow& row) {
  constexpr qsizetype separators = 3;
  return std::max<qsizetype>(0, longestLine - separators - row.entry.address.size() -
                                    row.shownPageStart.size() - row.shownPageEnd.size());
}

/// The rest of a longer line would read back as an entry of its own.
QString line(const EmailRow& row) {
  QString file = row.entry.file;
  cutText(file, roomForFile(row));
  return row.entry.address + u'|' + file + u'|' + row.shownPageStart + u'|' + row.shownPageEnd +
         QStringLiteral("\r\n");
}

bool breaksLine(const EmailRow& row) {
  return breaksLine(row.entry.address) || breaksLine(row.entry.file) ||
         breaksLine(row.shownPageStart) || breaksLine(row.shownPageEnd) ||
         row.entry.address.startsWith(headerStart);
}

bool isTooLong(const EmailRow& row) {
  return row.entry.file.size() > roomForFile(row);
}

/// Empty when `concerns` is true of no row.
QString noteAbout(const EmailList& list, bool (*concerns)(const EmailRow&), const char* reason) {
  QStringList numbers;
  std::size_t count = 0;
  constexpr std::size_t mostNamed = 10;
  for (std::size_t i = 0; i < list.count(); ++i) {
    if (concerns(list.rows()[i]) && ++count <= mostNamed) {
      numbers += QString::number(i + 1);
    }
  }
  if (count == 0) {
    return {};
  }
  return QStringLiteral("%1 of the saved rows will not read back as they are, because %2: row %3%4")
      .arg(count)
      .arg(QLatin1String(reason), numbers.join(QStringLiteral(", ")),
           count > mostNamed ? QStringLiteral(", ...") : QString());
}

QString noteAbout(const EmailList& list) {
  QStringList notes = {noteAbout(list, breaksLine, "of a \"|\" or a line end in a field"),
                       noteAbout(list, isTooLong, "the path is longer than such a list holds")};
  notes.removeAll(QString());
  return notes.join(u'\n');
}

/// Hardly any path ends just where a line or a buffer of other programs does: it was cut there.
bool endsAtALimit(QStringView text, const QString& file) {
  const bool fillsLine = text.size() >= longestLine - 1;
  const bool fillsBuffer = file.size() == pathOfOthers || file.size() == pathOfOthers - 1;
  return fillsLine || (fillsBuffer && !file.endsWith(QLatin1String(".pdf"), Qt::CaseInsensitive));
}

EmailRow rowOf(QStringView text) {
  const QStringList fields = text.toString().split(u'|');
  EmailEntry entry;
  entry.address = fields.value(0);
  entry.file = fields.value(1);
  entry.fileIsCut = endsAtALimit(text, entry.file);
  entry.extractPageStart = fields.value(2).toInt(); // 0 when it is no number
  entry.extractPageEnd = fields.value(3).toInt();
  return {fitted(entry), fields.value(2), fields.value(3)};
}

} // namespace

EmailListResult writeEmailList(const EmailList& list, const QString& path) {
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

EmailListResult saveEmailList(const EmailList& list, const QString& path, const MailWork& work) {
  QString problem;
  if (!list.isEmpty() && QFile::exists(SendJournal::pathBeside(path))) {
    SendJournal before;
    if (before.open(path, {})) {
      before.remove(); // it says nothing of the list that comes, should this end half-way
    } else if (before.isInWork()) {
      return {false, QStringLiteral("Unable to create file: ") + path, before.problem()};
    } else {
      problem = before.problem();
    }
  }
  EmailListResult saved = writeEmailList(list, path);
  if (saved.ok && problem.isEmpty()) {
    problem = SendJournal::write(path, work, list.entries());
  }
  if (saved.ok && !problem.isEmpty()) {
    saved.note += (saved.note.isEmpty() ? QString() : QStringLiteral("\n")) +
                  QStringLiteral("What is known of the files is not kept: ") + problem;
  }
  return saved;
}

EmailListResult loadEmailList(EmailList& list, const QString& path) {
  list.clear();
  platform::TextReader file;
  if (!file.open(path, platform::accessForSecrets(path))) {
    return {false, QStringLiteral("Unable to open file: ") + path, file.errorText()};
  }
  std::vector<EmailRow> rows;
  EmailEntries entries;
  QString text;
  while (file.readLine(text, longestPiece)) {
    if (!text.isEmpty() && !text.startsWith(headerStart)) {
      rows.push_back(rowOf(text));
      entries.push_back(rows.back().entry);
    }
  }
  if (file.error() != platform::FileError::None) {
    return {false, QStringLiteral("Unable to open file: ") + path, file.errorText()};
  }
  learnFrom(SendJournal::read(path), entries);
  for (std::size_t i = 0; i < rows.size(); ++i) {
    rows[i].entry = std::move(entries[i]);
  }
  list.setRows(std::move(rows), path);
  return {true, {}, {}};
}

} // namespace folivex
