#include "mail/SendJournal.h"

#include "engine/setup/SetupFields.h"
#include "mail/MailHeader.h"
#include "platform/FileLocks.h"
#include "platform/FileSystem.h"
#include "platform/Paths.h"

#include <QCryptographicHash>
#include <QFileInfo>
#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <array>

namespace folivex {

namespace {

constexpr qint64 longestJournal = 256LL * 1024 * 1024;
constexpr QLatin1String sentOutcome("sent");
constexpr QLatin1String unknownOutcome("unknown");
constexpr QLatin1String notSentOutcome("not sent");

/// Settings that leave the outputs, and who gets them, as they are: how mails travel, what they
/// say, reports, and the source itself.
constexpr std::array otherSettings = {
    QLatin1String("FILENAME"),
    QLatin1String("PDFPASSWORD"),
    QLatin1String("EMAILSMTP"),
    QLatin1String("EMAILLOGIN"),
    QLatin1String("EMAILPASSWORD"),
    QLatin1String("EMAILLOGFILE"),
    QLatin1String("EMAILPAUSE"),
    QLatin1String("EMAILCONFIRM"),
    QLatin1String("EMAILFROM"),
    QLatin1String("EMAILFROMNAME"),
    QLatin1String("EMAILSUBJECT"),
    QLatin1String("EMAILMSG"),
    QLatin1String("EMAILHTML"),
    QLatin1String("EMAILINVOICECC"),
    QLatin1String("USEOUTLOOK"),
    QLatin1String("USEOUTLOOKAUTO"),
    QLatin1String("REPORTOPTIONSTXT"),
    QLatin1String("REPORTOPTIONSCSV"),
    QLatin1String("REPORTOPTIONSCURRENT"),
    QLatin1String("REPORTOPTIONSOUTPUTFOLDER"),
};

QByteArray lineOf(const QJsonObject& object) {
  return QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n';
}

QByteArray lineOf(const MailWork& work) {
  return lineOf({{QStringLiteral("folivex"), QStringLiteral("mails of a list")},
                 {QStringLiteral("source"), work.source},
                 {QStringLiteral("bytes"), work.bytes.text()},
                 {QStringLiteral("settings"), work.settings}});
}

QByteArray lineOf(const EmailEntry& row, std::size_t number) {
  QJsonObject object{{QStringLiteral("row"), static_cast<qint64>(number)},
                     {QStringLiteral("address"), row.address},
                     {QStringLiteral("file"), row.file},
                     {QStringLiteral("identity"), row.identity.text()}};
  if (row.extractPageStart != 0 || row.extractPageEnd != 0) {
    object[QStringLiteral("first")] = row.extractPageStart;
    object[QStringLiteral("last")] = row.extractPageEnd;
  }
  if (row.addressesDiffer) {
    object[QStringLiteral("addressesDiffer")] = true;
  }
  if (row.holdsEarlierPages) {
    object[QStringLiteral("holdsEarlierPages")] = true;
  }
  if (!row.sentTo.isEmpty()) {
    object[QStringLiteral("sentTo")] = QJsonArray::fromStringList(row.sentTo);
  }
  if (!row.mayHaveReached.isEmpty()) {
    object[QStringLiteral("mayHaveReached")] = QJsonArray::fromStringList(row.mayHaveReached);
  }
  return lineOf(object);
}

EmailEntry rowOf(const QJsonObject& object) {
  const auto strings = [&object](const char* name) {
    return object[QLatin1String(name)].toVariant().toStringList();
  };
  EmailEntry row;
  row.address = object[QLatin1String("address")].toString();
  row.file = object[QLatin1String("file")].toString();
  row.identity = platform::FileDigest::fromText(object[QLatin1String("identity")].toString());
  row.extractPageStart = object[QLatin1String("first")].toInt();
  row.extractPageEnd = object[QLatin1String("last")].toInt();
  row.addressesDiffer = object[QLatin1String("addressesDiffer")].toBool();
  row.holdsEarlierPages = object[QLatin1String("holdsEarlierPages")].toBool();
  row.sentTo = strings("sentTo");
  row.mayHaveReached = strings("mayHaveReached");
  return row;
}

/// A line that was torn, or that a later version wrote, says nothing.
void take(const QByteArray& line, JournalContent& content) {
  const QJsonObject object = QJsonDocument::fromJson(line).object();
  const auto rowNamed = [&](const char* name) -> EmailEntry* {
    const qint64 number = object[QLatin1String(name)].toInteger(-1);
    return number >= 0 && number < static_cast<qint64>(content.rows.size())
               ? &content.rows[static_cast<std::size_t>(number)]
               : nullptr;
  };
  const QString to = object[QLatin1String("to")].toString();
  if (object.contains(QLatin1String("folivex"))) {
    content.isOurs = true;
    content.work = {object[QLatin1String("source")].toString(),
                    platform::FileDigest::fromText(object[QLatin1String("bytes")].toString()),
                    object[QLatin1String("settings")].toString()};
  } else if (object[QLatin1String("row")].toInteger(-1) ==
             static_cast<qint64>(content.rows.size())) {
    content.rows.push_back(rowOf(object));
  } else if (EmailEntry* const begun = rowNamed("begin")) {
    begun->mayHaveReached += to;
  } else if (EmailEntry* const ended = rowNamed("end")) {
    const QString outcome = object[QLatin1String("outcome")].toString();
    if (outcome == sentOutcome || outcome == notSentOutcome) {
      ended->mayHaveReached.removeOne(to);
    }
    if (outcome == sentOutcome) {
      ended->sentTo += to;
    }
  }
}

JournalContent contentOf(QFile& file) {
  JournalContent content;
  for (const QByteArray& line : file.readAll().split('\n')) {
    take(line, content);
  }
  return content;
}

QString withPages(const EmailEntry& entry) {
  return QStringLiteral("%1|%2|%3|%4")
      .arg(entry.address, entry.file)
      .arg(entry.extractPageStart)
      .arg(entry.extractPageEnd);
}

using RowsByName = QHash<QString, std::vector<std::size_t>>;

} // namespace

MailWork MailWork::withoutBytes(const SplitSetup& setup, const QString& source) {
  QCryptographicHash hash(QCryptographicHash::Sha256);
  for (const SetupField& field : setupFields()) {
    if (std::ranges::find(otherSettings, field.key) == otherSettings.end()) {
      const QByteArray line = (QString(field.key) + u'=' + valueOf(field, setup)).toUtf8();
      hash.addData(QByteArray::number(line.size()) + ':' + line);
    }
  }
  return {QFileInfo(platform::withoutTrailingBlanks(source)).absoluteFilePath(),
          {},
          QString::fromLatin1(hash.result().toHex())};
}

MailWork MailWork::of(const SplitSetup& setup, const QString& source) {
  MailWork work = withoutBytes(setup, source);
  work.bytes = platform::FileDigest::of(work.source);
  return work;
}

std::optional<JournalContent> SendJournal::read(const QString& list) {
  const QString path = pathBeside(list);
  QFile file;
  platform::FileFailure failure;
  if (!platform::openForReading(file, path, platform::accessForSecrets(path), failure) ||
      file.size() > longestJournal) {
    return std::nullopt;
  }
  JournalContent content = contentOf(file);
  return content.isOurs ? std::optional(std::move(content)) : std::nullopt;
}

QString SendJournal::write(const QString& list, const MailWork& work, const EmailEntries& rows) {
  const QString path = pathBeside(list);
  const bool knows = std::ranges::any_of(rows, [](const EmailEntry& row) {
    return row.identity.isKnown() || !row.sentTo.isEmpty() || !row.mayHaveReached.isEmpty();
  });
  if (!knows) {
    return {};
  }
  QByteArray lines = lineOf(work);
  for (std::size_t i = 0; i < rows.size(); ++i) {
    lines += lineOf(rows[i], i);
  }
  platform::Replacement replacement;
  platform::FileFailure failure;
  if (replacement.open(path, platform::accessForSecrets(path), failure)) {
    if (replacement.file().write(lines) == lines.size()) {
      if (replacement.keep(failure)) {
        return {};
      }
    } else {
      failure.text = replacement.file().errorString();
    }
  }
  return QStringLiteral("%1: %2").arg(path, failure.text);
}

bool SendJournal::open(const QString& list, const MailWork& work, Use use) {
  m_path = pathBeside(platform::withoutTrailingBlanks(list));
  m_file.close();
  m_content = {};
  m_rowOf.clear();
  m_isInWork = m_isBroken = false;
  if (platform::accessForSecrets(m_path) == platform::FileAccess::Private &&
      !platform::isTrustedPrivateFile(m_path)) {
    return fail(QStringLiteral("it is not to be trusted"));
  }
  platform::FileFailure failure;
  if (!platform::openToAppend(m_file, m_path, failure)) {
    return fail(failure.text);
  }
  if (!lock()) {
    m_file.close();
    return false;
  }
  if (m_file.size() > longestJournal || (use == Use::NewOnly && m_file.size() > 0)) {
    m_file.close();
    return fail(QStringLiteral("another file has its name"));
  }
  if (m_file.size() == 0) {
    m_content.work = work;
    return append(lineOf(work)) && sync() &&
           (platform::syncFolderOf(m_path, failure) || fail(failure.text));
  }
  m_file.seek(0);
  m_content = contentOf(m_file);
  if (!m_content.isOurs) {
    m_file.close();
    return fail(QStringLiteral("a file of somebody else's has its name"));
  }
  m_file.seek(m_file.size() - 1);
  return m_file.read(1) == "\n" || append("\n"); // a crash tore the last line
}

bool SendJournal::lock() {
  const platform::LockResult tried = platform::lockFile(m_file, platform::LockUse::Alone);
  m_isInWork = tried == platform::LockResult::Busy;
  if (m_isInWork) {
    return fail(QStringLiteral("its e-mails are being sent by another program just now"));
  }
  if (tried == platform::LockResult::Unable) {
    return fail(QStringLiteral("files cannot be locked there; keep the list on another disk"));
  }
  return platform::isFileAt(m_file, m_path) ||
         fail(QStringLiteral("it was taken away while it was opened"));
}

bool SendJournal::enter(EmailEntries& entries) {
  const auto nameOf = [](const EmailEntry& entry) {
    return withPages(entry) + u'|' + entry.identity.text();
  };
  RowsByName known;
  for (std::size_t row = m_content.rows.size(); row-- > 0;) {
    known[nameOf(m_content.rows[row])].push_back(row);
  }
  QByteArray lines;
  m_rowOf.clear();
  for (EmailEntry& entry : entries) {
    std::vector<std::size_t>& rows = known[nameOf(entry)];
    if (rows.empty()) {
      m_rowOf.push_back(m_content.rows.size());
      lines += lineOf(entry, m_content.rows.size());
      m_content.rows.push_back(entry);
      continue;
    }
    m_rowOf.push_back(rows.back());
    entry.sentTo = m_content.rows[rows.back()].sentTo;
    entry.mayHaveReached = m_content.rows[rows.back()].mayHaveReached;
    rows.pop_back();
  }
  return append(lines) && sync();
}

bool SendJournal::begin(std::size_t entry, const QString& recipient) {
  return append(
             lineOf(QJsonObject{{QStringLiteral("begin"), static_cast<qint64>(m_rowOf.at(entry))},
                                {QStringLiteral("to"), recipient}})) &&
         sync();
}

bool SendJournal::end(std::size_t entry, const QString& recipient, Fate fate) {
  const QLatin1String outcome = fate == Fate::Sent      ? sentOutcome
                                : fate == Fate::Unknown ? unknownOutcome
                                                        : notSentOutcome;
  return append(lineOf(QJsonObject{{QStringLiteral("end"), static_cast<qint64>(m_rowOf.at(entry))},
                                   {QStringLiteral("to"), recipient},
                                   {QStringLiteral("outcome"), outcome}}));
}

bool SendJournal::append(const QByteArray& lines) {
  if (m_isBroken) {
    return false;
  }
  if (lines.isEmpty() || m_file.write(lines) == lines.size()) {
    return true;
  }
  m_isBroken = true;
  // A write that ends half-way is no error to the system: the next one would be.
  return fail(m_file.error() == QFileDevice::NoError ? QStringLiteral("the disk is full")
                                                     : m_file.errorString());
}

bool SendJournal::sync() {
  platform::FileFailure failure;
  return !m_isBroken && (platform::syncToDisk(m_file, failure) || fail(failure.text));
}

bool SendJournal::fail(const QString& reason) {
  m_problem = QStringLiteral("the record of what was sent, %1, cannot be written: %2")
                  .arg(m_path, withoutControlCharacters(reason));
  return false;
}

void SendJournal::remove() {
  // Before it is closed, where the system allows it: the lock must not end first.
  if (!QFile::remove(m_path)) {
    m_file.close();
    QFile::remove(m_path);
  }
  m_file.close();
}

void learnFrom(const std::optional<JournalContent>& journal, EmailEntries& rows) {
  RowsByName known;
  if (journal) {
    for (std::size_t row = 0; row < journal->rows.size(); ++row) {
      known[withPages(journal->rows[row])].push_back(row);
    }
  }
  // From behind: of several rows of a name the last tells what the file is by now.
  for (std::size_t i = rows.size(); i-- > 0;) {
    std::vector<std::size_t>& candidates = known[withPages(rows[i])];
    if (candidates.empty()) {
      rows[i].isUnchecked = true;
      continue;
    }
    const EmailEntry& row = journal->rows[candidates.back()];
    rows[i].identity = row.identity;
    rows[i].isUnchecked = !row.identity.isKnown();
    rows[i].addressesDiffer = row.addressesDiffer;
    rows[i].holdsEarlierPages = row.holdsEarlierPages;
    rows[i].sentTo = row.sentTo;
    rows[i].mayHaveReached = row.mayHaveReached;
    if (candidates.size() > 1) {
      candidates.pop_back();
    }
  }
}

} // namespace folivex
