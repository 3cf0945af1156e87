#include "mail/EmailSendRun.h"

#include "engine/setup/SplitSetup.h"
#include "mail/EmailSettingsCheck.h"
#include "mail/MailHeader.h"
#include "mail/PageRangeFile.h"
#include "platform/Paths.h"

#include <QFileInfo>
#include <QScopeGuard>

#include <algorithm>
#include <chrono>
#include <thread>

namespace folivex {

namespace {

/// How often the window lives during a pause.
constexpr std::chrono::milliseconds pauseStep(20);
constexpr int uselessTriesAtMost = 3;

EntryState stateOf(MailOutcome outcome) {
  static constexpr EntryState states[] = {
      EntryState::Sent,       EntryState::Failed, EntryState::Temporary, EntryState::Unknown,
      EntryState::NotReached, EntryState::Held,   EntryState::Shown}; // by MailOutcome
  return states[static_cast<std::size_t>(outcome)];
}

SendJournal::Fate fateOf(MailOutcome outcome) {
  return outcome == MailOutcome::Sent ? SendJournal::Fate::Sent
         : outcome == MailOutcome::Unknown || outcome == MailOutcome::Shown
             ? SendJournal::Fate::Unknown
             : SendJournal::Fate::NotSent;
}

MailResult resultOf(const QString& reason, MailOutcome outcome = MailOutcome::Refused) {
  MailResult result;
  result.outcome = outcome;
  result.errorText = reason;
  return result;
}

QString ownOr(const QString& own, const QString& general) {
  return own.isEmpty() ? general : own;
}

/// What to tell of entries of a state, "%1" being their number.
constexpr std::pair<EntryState, const char*> stateTexts[] = {
    {EntryState::Shown, "%1 were opened for you: they go out when you send them there, and do not "
                        "count as sent here."},
    {EntryState::Temporary, "%1 failed for a reason that may pass: send them again later."},
    {EntryState::Unknown, "%1 may have arrived, though the server never confirmed them. They are "
                          "not sent again by themselves."},
    {EntryState::Held, "%1 were not sent: a person has to look at their files first."},
    {EntryState::SentBefore, "%1 were left out: they were sent before."},
    {EntryState::NoAddress, "%1 were left out: they have no address."},
    {EntryState::NotReached, "%1 were not sent: %2."},
};

} // namespace

QString bodyFromSpreadsheet(const QString& cell) {
  QString body = cell;
  body.remove(u'\n').remove(u'\r');
  return body.replace(QLatin1String("\\n"), QLatin1String("\r\n"));
}

QString SendSummary::message() const {
  return QStringLiteral("(%1) Emails sent ok: %2, errors: %3")
      .arg(counts.handled)
      .arg(counts.sentOk)
      .arg(counts.errors);
}

QString SendSummary::details() const {
  QStringList lines;
  for (const auto& [state, text] : stateTexts) {
    if (const std::size_t count = rowsIn({state}).size(); count > 0) {
      lines += QString::fromLatin1(text)
                   .replace(QLatin1String("%1"), QString::number(count))
                   .replace(QLatin1String("%2"), whyNotReached());
    }
  }
  return lines.join(u'\n');
}

QString SendSummary::whyNotReached() const {
  return endedBecause.isEmpty() ? QStringLiteral("the run was stopped") : endedBecause;
}

std::vector<std::size_t> SendSummary::rowsIn(std::initializer_list<EntryState> states) const {
  std::vector<std::size_t> rows;
  for (std::size_t i = 0; i < entries.size(); ++i) {
    if (std::ranges::find(states, entries[i].state) != states.end()) {
      rows.push_back(i);
    }
  }
  return rows;
}

std::vector<std::size_t> SendSummary::rowsToSendAgain() const {
  return rowsIn(
      {EntryState::Failed, EntryState::Temporary, EntryState::NotReached, EntryState::Held});
}

EmailSendRun::EmailSendRun(const SplitSetup& setup, ListSource source, Parts parts)
    : m_setup(setup), m_source(source), m_parts(std::move(parts)), m_log(setup.emailLogFile) {}

QString EmailSendRun::recipientOf(const EmailEntry& entry) const {
  return m_setup.emailTest ? senderOf(m_setup) : entry.address.trimmed();
}

EmailSendRun::BeforeCount EmailSendRun::countSentBefore(const EmailEntries& entries) const {
  BeforeCount count;
  for (const EmailEntry& entry : entries) {
    EntryResult result;
    if (wasSentBefore(entry, result)) {
      ++(result.state == EntryState::SentBefore ? count.sent : count.mayHaveArrived);
    }
  }
  return count;
}

SendSummary EmailSendRun::run(const EmailEntries& entries) {
  SendSummary summary;
  summary.entries.resize(entries.size());
  m_progress = {};
  m_progress.total = static_cast<int>(entries.size());
  m_uselessTries = 0;
  m_endedBecause.clear();
  for (std::size_t i = 0; i < entries.size() && m_endedBecause.isEmpty(); ++i) {
    if (!m_sendsTwice && wasSentBefore(entries[i], summary.entries[i])) {
      continue;
    }
    if (m_parts.watcher.stopRequested() || !pause()) {
      summary.stopped = true;
      break;
    }
    handleEntry(i, entries[i], summary.entries[i]);
    m_parts.watcher.handlePendingEvents();
  }
  m_parts.transport.disconnect();
  static_cast<void>(isJournalled([](SendJournal& journal) { return journal.sync(); }));
  summary.stopped = summary.stopped || m_parts.watcher.stopRequested();
  summary.endedBecause = m_endedBecause;
  summary.counts = m_progress;
  return summary;
}

bool EmailSendRun::wasSentBefore(const EmailEntry& entry, EntryResult& result) const {
  const QString recipient = recipientOf(entry);
  if (entry.address.isEmpty()) {
    return false;
  }
  if (entry.sentTo.contains(recipient)) {
    result = {EntryState::SentBefore, recipient, entry.file, {}};
    return true;
  }
  if (entry.mayHaveReached.contains(recipient)) {
    result = {EntryState::Unknown, recipient, entry.file,
              QStringLiteral("it may have arrived in the run before")};
    return true;
  }
  return false;
}

/// False when it was stopped.
bool EmailSendRun::pause() {
  using Clock = std::chrono::steady_clock;
  const int milliseconds = std::min(m_setup.emailPause, longestPause);
  if (milliseconds > 0 && !isJournalled([](SendJournal& journal) { return journal.sync(); })) {
    return true; // handleEntry() tells it
  }
  const auto end = Clock::now() + std::chrono::milliseconds(milliseconds);
  while (Clock::now() < end) {
    std::this_thread::sleep_for(std::min<Clock::duration>(
        pauseStep, std::max(end - Clock::now(), Clock::duration::zero())));
    m_parts.watcher.handlePendingEvents();
    if (m_parts.watcher.stopRequested()) {
      return false;
    }
  }
  return true;
}

bool EmailSendRun::isJournalled(const std::function<bool(SendJournal&)>& write) {
  for (SendJournal* const journal : m_parts.journals) {
    if (!write(*journal) && m_endedBecause.isEmpty()) {
      m_endedBecause = journal->problem();
    }
  }
  return m_endedBecause.isEmpty();
}

void EmailSendRun::handleEntry(std::size_t index, const EmailEntry& entry, EntryResult& result) {
  if (entry.address.isEmpty()) {
    result.state = EntryState::NoAddress;
    return;
  }
  result.recipient = recipientOf(entry);
  m_progress.recipient = result.recipient;
  m_parts.watcher.onProgress(m_progress);
  const auto shown = qScopeGuard([this] { m_parts.watcher.onProgress(m_progress); });
  MailMessage message = messageFor(entry);
  MailResult sent = prepare(entry, message);
  result.attachment = message.attachmentPath;
  if (sent.sent()) {
    if (!isJournalled(
            [&](SendJournal& journal) { return journal.begin(index, result.recipient); })) {
      return;
    }
    sent = m_parts.transport.send(message, m_parts.watcher);
    static_cast<void>(isJournalled([&](SendJournal& journal) {
      return journal.end(index, result.recipient, fateOf(sent.outcome));
    }));
  }
  result.state = stateOf(sent.outcome);
  result.errorText = sent.errorText;
  if (sent.outcome == MailOutcome::Stopped) {
    return; // it was not tried to its end, and stands in no log
  }
  m_uselessTries = sent.concernsEveryMail ? m_uselessTries + 1 : 0;
  if (m_uselessTries >= uselessTriesAtMost && m_endedBecause.isEmpty()) {
    m_endedBecause =
        QStringLiteral("three e-mails in a row failed, the last because ") + sent.errorText;
  }
  ++m_progress.handled;
  if (sent.outcome != MailOutcome::Shown) {
    ++(sent.sent() ? m_progress.sentOk : m_progress.errors);
  }
  record(result);
}

/// Sent: the message is ready to be.
MailResult EmailSendRun::prepare(const EmailEntry& entry, MailMessage& message) {
  message.recipient = recipientOf(entry);
  message.attachmentPath = entry.file;
  message.attachmentIdentity = entry.identity;
  if (const QString doubt = doubtAbout(entry); !doubt.isEmpty()) {
    return resultOf(doubt, MailOutcome::FileChanged);
  }
  if (entry.fileIsCut && !QFileInfo::exists(platform::withoutTrailingBlanks(entry.file))) {
    return resultOf(QStringLiteral("the path of the file is longer than an e-mail list holds: what "
                                   "is left of it leads to no file"));
  }
  if (hasPageRange(entry)) {
    const QString label = pageRangeLabel(entry);
    message.attachmentPath = pageRangePath(entry.file, label);
    const AttachmentFile range =
        m_parts.splitLibrary
            ? writePageRange(*m_parts.splitLibrary, entry, label)
            : AttachmentFile{{}, QStringLiteral("no split library to take pages out"), {}};
    message.attachmentIdentity = range.identity;
    if (range.path.isEmpty()) {
      return resultOf(range.errorText,
                      range.isOtherFile ? MailOutcome::FileChanged : MailOutcome::Refused);
    }
  }
  return resultOf({}, MailOutcome::Sent);
}

MailMessage EmailSendRun::messageFor(const EmailEntry& entry) const {
  const bool fromSpreadsheet = m_source == ListSource::Spreadsheet;
  MailMessage message;
  message.sender = senderOf(m_setup);
  message.senderName = m_setup.emailFromName;
  message.subject = subjectOf(entry, m_setup.emailSubject);
  message.body =
      fromSpreadsheet && !entry.body.isEmpty() ? bodyFromSpreadsheet(entry.body) : m_setup.emailMsg;
  message.bodyKind = m_setup.emailHtml ? BodyKind::Html : BodyKind::Plain;
  message.cc = fromSpreadsheet ? ownOr(entry.cc, m_setup.emailInvoiceCc) : m_setup.emailInvoiceCc;
  if (m_setup.emailTest && !message.cc.isEmpty()) {
    message.cc = senderOf(m_setup);
  }
  return message;
}

void EmailSendRun::record(const EntryResult& result) {
  const QDateTime now = m_parts.now();
  QString text = result.errorText;
  if (result.state == EntryState::Unknown) {
    text.prepend(emailLogUnknown);
  }
  const bool isGood = result.state == EntryState::Sent || result.state == EntryState::Shown;
  const QString good = result.state == EntryState::Sent ? emailLogOk : emailLogShown;
  if (isGood) {
    m_log.write(now, result.recipient, result.attachment, good);
  } else {
    m_log.writeFailed(now, result.recipient, result.attachment, text);
  }
  if (m_parts.report) {
    m_parts.report->write({now, result.recipient, result.attachment,
                           isGood ? good : QStringLiteral("Error - ") + text});
  }
}

} // namespace folivex
