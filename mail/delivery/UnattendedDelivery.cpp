#include "mail/delivery/UnattendedDelivery.h"

#include "engine/base/Operator.h"
#include "engine/setup/SplitSetup.h"
#include "mail/EmailListFile.h"
#include "mail/delivery/SendOutcome.h"

namespace folivex {

namespace {

class OperatorWatcher : public SendWatcher {
public:
  OperatorWatcher(Operator& person, const std::function<bool()>& stop)
      : m_person(person), m_stop(stop) {}

  void handlePendingEvents() override { m_person.handlePendingEvents(); }
  bool stopRequested() override { return m_stop && m_stop(); }
  void onProgress(const EmailProgress& progress) override {
    Progress shown;
    shown.text = QStringLiteral("Sending email (%1 of %2, errors: %3): %4")
                     .arg(progress.handled)
                     .arg(progress.total)
                     .arg(progress.errors)
                     .arg(progress.recipient);
    m_person.progress(shown);
  }

private:
  Operator& m_person;
  const std::function<bool()>& m_stop;
};

/// Path of the list; empty when it could not be saved, which is then told.
QString save(const EmailList& list, const QString& path, Operator& person) {
  const EmailListResult saved = saveEmailList(list, path);
  person.note(saved.message);
  if (!saved.note.isEmpty()) {
    person.note(saved.note);
  }
  return saved.ok ? path : QString();
}

void tellSummary(const EmailList& list, const SendSummary& summary, Operator& person) {
  person.note(summary.message());
  for (const QString& line : outcomeLines(list, summary)) {
    if (!line.isEmpty()) {
      person.note(line);
    }
  }
}

} // namespace

UnattendedResult sendUnattended(const SplitSetup& setup, const FinishedRun& run,
                                const DeliveryMeans& means, Operator& person,
                                const std::function<bool()>& stopRequested) {
  UnattendedResult result;
  if (!setup.emailEnable) {
    return result;
  }
  EmailList list;
  if (const QString without =
          withoutAddressSentence(list.fill(run.outputs).size(), run.outputs.size());
      !without.isEmpty()) {
    person.note(without);
  }
  if (list.isEmpty()) {
    return result;
  }
  if (setup.emailConfirm) {
    person.note(QStringLiteral("%1 not sent: sending is to be confirmed, and nobody is here to do "
                               "it. Load the list to send it.")
                    .arg(mailCount(list.count())));
    result.complete = false;
    result.savedList =
        save(list, unusedListPath(setup, run.source, QStringLiteral("emails")), person);
    return result;
  }
  OperatorWatcher watcher(person, stopRequested);
  EmailDelivery delivery(setup, means);
  delivery.addRun(run);
  DeliveryResult sent = delivery.send(list, watcher);
  const QString fileProblem = delivery.close();
  if (!fileProblem.isEmpty()) {
    person.note(fileProblem);
  }
  if (sent.problem.isEmpty()) {
    tellSummary(list, sent.summary, person);
    result.complete = sent.summary.counts.sentOk == static_cast<int>(list.count());
    list.reduceTo(sent.summary.rowsToSendAgain());
    result.summary = std::move(sent.summary);
  } else {
    person.note(QStringLiteral("No e-mail was sent: ") + sent.problem);
    result.complete = false;
  }
  if (!list.isEmpty()) {
    result.savedList =
        save(list, unusedListPath(setup, run.source, QStringLiteral("emails_not_sent")), person);
  }
  if (list.isEmpty() || !result.savedList.isEmpty()) {
    delivery.dropKeptLists();
  }
  return result;
}

} // namespace folivex
