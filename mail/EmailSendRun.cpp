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
  static constexpr EntryState states[] = {EntryState::Sent, EntryState::Failed,
                                          EntryState::Temporary, EntryState::Unknown,
                                          EntryState::NotReached}; // by MailOutcome
  return states[static_cast<std::size_t>(outcome)];
}

QString ownOr(const QString& own, const QString& general) {
  return own.isEmpty() ? general : own;
}

/// What to tell of entries of a state, "%1" being their number.
constexpr std::pair<EntryState, const char*> stateTexts[] = {
    {EntryState::Temporary, "%1 failed for a reason that may pass: send them again later."},
    {EntryState::Unknown, "%1 may have arrived, though the server never confirmed them. They are "
                          "not sent again by themselves."},
    {EntryState::SentBefore, "%1 were left out: the log says that they were sent before."},
    {EntryState::NoAddress, "%1 were left out: they have no address."},
    {EntryState::NotReached, "%1 were not sent: the run was stopped."},
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
      lines += QString::fromLatin1(text).arg(count);
    }
  }
  return lines.join(u'\n');
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
  return rowsIn({EntryState::Failed, EntryState::Temporary, EntryState::NotReached});
}

EmailSendRun::EmailSendRun(const SplitSetup& setup, ListSource source, Parts parts)
    : m_setup(setup), m_source(source), m_parts(std::move(parts)), m_log(setup.emailLogFile) {}

QString EmailSendRun::recipientOf(const EmailEntry& entry) const {
  return m_setup.emailTest ? senderOf(m_setup) : entry.address.trimmed();
}

SentBefore::Told EmailSendRun::toldOf(const EmailEntry& entry, const SentBefore& before) const {
  if (before.isEmpty() || entry.address.isEmpty()) {
    return SentBefore::Told::Nothing;
  }
  const QString attachment =
      hasPageRange(entry) ? pageRangePath(entry.file, pageRangeLabel(entry)) : entry.file;
  const QDateTime made = QFileInfo(platform::withoutTrailingBlanks(entry.file)).lastModified();
  return before.told(recipientOf(entry), attachment, made);
}

EmailSendRun::BeforeCount EmailSendRun::countSentBefore(const EmailEntries& entries,
                                                        const SentBefore& before) const {
  BeforeCount count;
  for (const EmailEntry& entry : entries) {
    const SentBefore::Told told = toldOf(entry, before);
    count.sent += told == SentBefore::Told::Sent ? 1 : 0;
    count.mayHaveArrived += told == SentBefore::Told::MayHaveArrived ? 1 : 0;
  }
  return count;
}

SendSummary EmailSendRun::run(const EmailEntries& entries) {
  SendSummary summary;
  summary.entries.resize(entries.size());
  m_progress = {};
  m_progress.total = static_cast<int>(entries.size());
  m_uselessTries = 0;
  for (std::size_t i = 0; i < entries.size() && !summary.stopped; ++i) {
    if (leftOutForLog(entries[i], summary.entries[i])) {
      continue;
    }
    if (m_parts.watcher.stopRequested() || (!isServerGivenUp() && !pause())) {
      summary.stopped = true;
      break;
    }
    handleEntry(entries[i], summary.entries[i]);
    m_parts.watcher.handlePendingEvents();
  }
  m_parts.transport.disconnect();
  summary.stopped = summary.stopped || m_parts.watcher.stopRequested();
  summary.counts = m_progress;
  return summary;
}

bool EmailSendRun::leftOutForLog(const EmailEntry& entry, EntryResult& result) const {
  const SentBefore::Told told = toldOf(entry, m_before);
  if (told == SentBefore::Told::Sent) {
    result.state = EntryState::SentBefore;
  } else if (told == SentBefore::Told::MayHaveArrived) {
    result.state = EntryState::Unknown;
    result.errorText = QStringLiteral("it may have arrived in the run before");
  }
  return told != SentBefore::Told::Nothing;
}

bool EmailSendRun::isServerGivenUp() const {
  return m_uselessTries >= uselessTriesAtMost;
}

/// False when it was stopped.
bool EmailSendRun::pause() {
  using Clock = std::chrono::steady_clock;
  const auto end = Clock::now() + std::chrono::milliseconds(m_setup.emailPause);
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

void EmailSendRun::handleEntry(const EmailEntry& entry, EntryResult& result) {
  if (entry.address.isEmpty()) {
    result.state = EntryState::NoAddress;
    return;
  }
  result.recipient = recipientOf(entry);
  m_progress.recipient = result.recipient;
  m_parts.watcher.onProgress(m_progress);
  const auto shown = qScopeGuard([this] { m_parts.watcher.onProgress(m_progress); });
  const MailResult sent = deliver(entry, result);
  result.state = stateOf(sent.outcome);
  result.errorText = sent.errorText;
  if (sent.outcome == MailOutcome::Stopped) {
    return; // it was not tried to its end, and stands in no log
  }
  m_uselessTries = sent.concernsEveryMail ? m_uselessTries + 1 : 0;
  m_uselessResult = sent;
  ++m_progress.handled;
  ++(sent.sent() ? m_progress.sentOk : m_progress.errors);
  record(result);
}

MailResult EmailSendRun::deliver(const EmailEntry& entry, EntryResult& result) {
  MailResult failed;
  result.attachment = entry.file;
  if (isServerGivenUp()) {
    return m_uselessResult;
  }
  if (entry.fileIsCut && !QFileInfo::exists(platform::withoutTrailingBlanks(entry.file))) {
    failed.errorText = QStringLiteral("the path of the file is longer than an e-mail list holds: "
                                      "what is left of it leads to no file");
    return failed;
  }
  if (hasPageRange(entry)) {
    const QString label = pageRangeLabel(entry);
    result.attachment = pageRangePath(entry.file, label);
    const AttachmentFile range =
        m_parts.splitLibrary
            ? writePageRange(*m_parts.splitLibrary, entry, label)
            : AttachmentFile{{}, QStringLiteral("no split library to take pages out")};
    if (range.path.isEmpty()) {
      failed.errorText = range.errorText;
      return failed;
    }
  }
  MailMessage message = messageFor(entry);
  message.recipient = result.recipient;
  message.attachmentPath = result.attachment;
  return m_parts.transport.send(message, m_parts.watcher);
}

MailMessage EmailSendRun::messageFor(const EmailEntry& entry) const {
  const bool fromSpreadsheet = m_source == ListSource::Spreadsheet;
  MailMessage message;
  message.sender = senderOf(m_setup);
  message.senderName = m_setup.emailFromName;
  message.subject = ownOr(entry.subject, m_setup.emailSubject);
  if (!entry.invoiceNumberInSubject.isEmpty()) {
    message.subject += (message.subject.isEmpty() ? QString() : QStringLiteral(" ")) +
                       entry.invoiceNumberInSubject;
  }
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
  if (result.state == EntryState::Sent) {
    m_log.writeSent(now, result.recipient, result.attachment);
  } else {
    m_log.writeFailed(now, result.recipient, result.attachment, text);
  }
  if (m_parts.report) {
    m_parts.report->write({now, result.recipient, result.attachment,
                           result.state == EntryState::Sent ? QString(emailLogOk)
                                                            : QStringLiteral("Error - ") + text});
  }
}

} // namespace folivex
