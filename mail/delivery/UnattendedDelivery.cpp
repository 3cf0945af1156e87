#include "mail/delivery/UnattendedDelivery.h"

#include "engine/base/Operator.h"
#include "engine/setup/SplitSetup.h"
#include "mail/EmailListFile.h"
#include "mail/OutlookMail.h"
#include "mail/delivery/MailRecords.h"
#include "mail/delivery/SendOutcome.h"

#include <algorithm>

namespace folivex {

namespace {

class OperatorWatcher : public SendWatcher {
public:
  OperatorWatcher(Operator& person, const std::function<bool()>& stop)
      : m_person(person), m_stop(stop) {}

  void handlePendingEvents() override { m_person.handlePendingEvents(); }
  bool stopRequested() override { return m_stop && m_stop(); }
  void onProgress(const EmailProgress& progress) override {
    m_person.progress(sendingProgress(progress));
  }

private:
  Operator& m_person;
  const std::function<bool()>& m_stop;
};

} // namespace

Progress sendingProgress(const EmailProgress& progress) {
  const QString text = QStringLiteral("Sending email (%1 of %2, errors: %3): %4")
                           .arg(progress.handled)
                           .arg(progress.total)
                           .arg(progress.errors)
                           .arg(progress.recipient);
  return {text, progress.handled, progress.total, 0, Phase::Sending};
}

namespace {

void tellSummary(const EmailList& list, const SendSummary& summary, Operator& person) {
  person.note(summary.message());
  for (const QString& line : outcomeLines(list, summary)) {
    if (!line.isEmpty()) {
      person.note(line);
    }
  }
}

/// Why a person has to be there when these mails go out; empty when none has to.
QString needOfPerson(const SplitSetup& setup) {
  if (setup.emailConfirm) {
    return QStringLiteral("sending is to be confirmed, and nobody is here to do it");
  }
  return setup.useOutlook && !setup.useOutlookAuto && outlookProblem().isEmpty()
             ? QStringLiteral("Outlook would open each for a person to send, and nobody is here")
             : QString();
}

EmailList listOf(const EmailEntries& entries, const std::vector<std::size_t>& rows) {
  EmailEntries some;
  for (const std::size_t row : rows) {
    some.push_back(entries.at(row));
  }
  EmailList list;
  list.setEntries(some, {});
  return list;
}

} // namespace

void UnattendedDelivery::tell(const QString& text) {
  if (!text.isEmpty()) {
    m_person.found(RunFinding::Mails, text);
  }
}

/// Path of the list; empty when it could not be saved, which is then told.
QString UnattendedDelivery::save(const EmailList& list, const QString& path, const MailWork& work) {
  const EmailListResult saved = saveEmailList(list, path, work);
  tell(saved.message);
  tell(saved.note);
  if (saved.ok && m_person.wantsRecords()) {
    m_person.record(mailListRecord(list, path));
  }
  return saved.ok ? path : QString();
}

bool UnattendedDelivery::isOurs(const QString& list) const {
  return std::ranges::any_of(m_deliveries, [&list](const auto& delivery) {
    return delivery->kept().journalOf(list) != nullptr;
  });
}

void UnattendedDelivery::finish() {
  for (const auto& delivery : m_deliveries) {
    delivery->kept().dropAll();
  }
  m_deliveries.clear();
}

std::optional<UnattendedResult> UnattendedDelivery::goOn(const SplitSetup& setup,
                                                         const QString& source) {
  if (!setup.emailEnable) {
    return std::nullopt;
  }
  std::vector<FoundList> same;
  MailWork work = MailWork::withoutBytes(setup, source);
  for (FoundList& found : listsLeftOf(setup, source)) {
    if (!found.isReadable || isOurs(found.path) || found.work.source != work.source) {
      continue;
    }
    if (!work.bytes.isKnown()) {
      work.bytes = platform::FileDigest::of(work.source);
    }
    if (found.work == work) {
      same.push_back(std::move(found));
    } else {
      tell(QStringLiteral("%1 holds e-mails of an earlier run that did not send them all, of other "
                          "bytes of %2 or with other settings. It stays as it is; load it to send "
                          "what is left.")
               .arg(found.path, source));
    }
  }
  if (same.empty()) {
    return std::nullopt;
  }
  UnattendedResult all;
  for (const FoundList& found : same) {
    UnattendedResult one = goOnWith(found, setup);
    all.complete = all.complete && one.complete;
    all.savedList = one.savedList.isEmpty() ? all.savedList : one.savedList;
    // What is told last is the last list's; the mails are those of all.
    one.summary.entries.insert(one.summary.entries.begin(), all.summary.entries.begin(),
                               all.summary.entries.end());
    all.summary = std::move(one.summary);
  }
  return all;
}

UnattendedResult UnattendedDelivery::goOnWith(const FoundList& found, const SplitSetup& setup) {
  UnattendedResult result;
  result.complete = false;
  result.savedList = found.path;
  const QString& source = found.work.source;
  EmailList list;
  auto delivery = std::make_unique<EmailDelivery>(setup, m_means);
  if (found.isInWork) {
    tell(QStringLiteral("%1: another program may be mailing its outputs just now, by the list %2. "
                        "It is not split and mailed a second time; if that program died, load the "
                        "list.")
             .arg(source, found.path));
    return result;
  }
  if (!needOfPerson(setup).isEmpty()) {
    tell(QStringLiteral("%1: an earlier run with these settings did not send all of its e-mails. "
                        "It is not split again: load the list %2 to go on.")
             .arg(source, found.path));
    return result;
  }
  const EmailListResult loaded = loadEmailList(list, found.path);
  QString problem = loaded.message;
  if (!loaded.ok || delivery->kept().adopt(found.path, problem) == nullptr) {
    tell(QStringLiteral("%1: the e-mails of an earlier run cannot be gone on with: %2")
             .arg(source, problem));
    return result;
  }
  tell(QStringLiteral("%1: an earlier run with these settings did not send all of its e-mails. "
                      "This one goes on with its list %2; the source is not split again.")
           .arg(source, found.path));
  FinishedRun run{source, {}};
  for (const EmailRow& row : list.rows()) {
    run.outputs.push_back({row.entry.file, 0, 0, {}, row.entry.address, {}});
  }
  delivery->addRun(run);
  return deliver(list, found.path, std::move(delivery), setup, source);
}

UnattendedResult UnattendedDelivery::confirmLater(const EmailList& list, const SplitSetup& setup,
                                                  const FinishedRun& run) {
  tell(QStringLiteral("%1 not sent: %2. Load the list to send it.")
           .arg(mailCount(list.count()), needOfPerson(setup)));
  UnattendedResult result;
  result.complete = false;
  result.waitsForPerson = true;
  result.savedList = save(list, unusedListPath(setup, run.source, QStringLiteral("emails")));
  return result;
}

UnattendedResult UnattendedDelivery::send(const SplitSetup& setup, const FinishedRun& run) {
  if (!setup.emailEnable) {
    return {};
  }
  EmailList list;
  tell(withoutAddressSentence(list.fill(run.outputs).size(), run.outputs.size()));
  if (list.isEmpty()) {
    return {};
  }
  if (!needOfPerson(setup).isEmpty()) {
    return confirmLater(list, setup, run);
  }
  auto delivery = std::make_unique<EmailDelivery>(setup, m_means);
  delivery->addRun(run);
  return deliver(list, {}, std::move(delivery), setup, run.source);
}

UnattendedResult UnattendedDelivery::sendList(const SplitSetup& setup, const QString& path) {
  EmailList list;
  const EmailListResult loaded = loadEmailList(list, path);
  const QString problem =
      !loaded.ok ? loaded.message
      : needOfPerson(setup).isEmpty()
          ? QString()
          : QStringLiteral("%1: nothing is sent, since %2").arg(path, needOfPerson(setup));
  if (problem.isEmpty()) {
    return deliver(list, path, std::make_unique<EmailDelivery>(setup, m_means), setup, {});
  }
  m_person.found(RunFinding::MailFailed, problem);
  UnattendedResult result;
  result.complete = false;
  return result;
}

UnattendedResult UnattendedDelivery::deliver(const EmailList& list, const QString& listFile,
                                             std::unique_ptr<EmailDelivery> delivery,
                                             const SplitSetup& setup, const QString& source) {
  OperatorWatcher watcher(m_person, m_stop);
  DeliveryResult sent = delivery->send(list, listFile, watcher);
  tell(delivery->close());
  tell(sent.note);
  UnattendedResult result;
  if (sent.problem.isEmpty()) {
    tellSummary(list, sent.summary, m_person);
  } else {
    m_person.found(RunFinding::MailFailed, QStringLiteral("No e-mail was sent: ") + sent.problem);
    sent.entries = list.entries();
    sent.summary.entries.resize(sent.entries.size());
  }
  recordMails(list, sent.summary, m_person);
  result.complete = sent.summary.rowsIn({EntryState::Sent, EntryState::SentBefore}).size() ==
                    list.addressedCount();
  if (!result.complete && sent.isInWork) {
    return result; // the other process mails what this one would
  }
  if (!result.complete) {
    saveRest(list, sent, delivery->kept(), setup, source, result);
  }
  result.summary = std::move(sent.summary);
  m_deliveries.push_back(std::move(delivery));
  return result;
}

/// First what may have arrived: once the list of the rest is there, it stands for the whole.
void UnattendedDelivery::saveRest(const EmailList& list, const DeliveryResult& sent,
                                  KeptLists& kept, const SplitSetup& setup, const QString& source,
                                  UnattendedResult& result) {
  const QString& file = list.sourcePath();
  const bool goesOn = !file.isEmpty();
  if (goesOn && !file.contains(u'_' + keptListName(KeptKind::Sending) + u'_')) {
    result.savedList = file; // its journal knows what of it is left
    kept.releaseLast();
    return;
  }
  const bool isKept = !kept.besideLast(KeptKind::NotSent).isEmpty();
  const MailWork work = isKept ? kept.workOfLast() : MailWork::of(setup, source);
  const auto pathOf = [&](KeptKind kind) {
    return isKept ? kept.besideLast(kind) : unusedListPath(setup, source, keptListName(kind));
  };
  const std::vector<std::size_t> unknown =
      sent.summary.rowsIn({EntryState::Unknown, EntryState::Shown});
  const std::vector<std::size_t> rest = sent.summary.rowsToSendAgain();
  bool isSaved = true;
  if (!unknown.empty()) {
    EmailEntries entries = sent.entries;
    for (const std::size_t row : unknown) {
      entries[row].mayHaveReached = {sent.summary.entries[row].recipient};
    }
    result.savedList = save(listOf(entries, unknown), pathOf(KeptKind::MayHaveArrived), work);
    isSaved = !result.savedList.isEmpty();
  }
  if (!rest.empty() && isSaved) {
    result.savedList = save(listOf(sent.entries, rest), pathOf(KeptKind::NotSent), work);
    isSaved = !result.savedList.isEmpty();
  }
  if (isSaved) {
    kept.dropLast();
  } else {
    kept.releaseLast(); // it is all that there is
  }
}

} // namespace folivex
