// UnattendedDelivery: mails of runs that nobody watches.
#pragma once

#include "mail/delivery/EmailDelivery.h"

#include <functional>
#include <memory>
#include <optional>

namespace folivex {

class Operator;
struct Progress;

/// How far mails are, as a run shows it.
Progress sendingProgress(const EmailProgress& progress);

struct [[nodiscard]] UnattendedResult {
  bool complete = true;        ///< no mail that has an address is left to send
  bool waitsForPerson = false; ///< as the settings want it: the list is kept for one to send
  QString savedList;           ///< e-mail list with what is left; empty when there is none
  SendSummary summary;         ///< empty when nothing was tried
};

/// Sends the outputs of runs when `EMAILENABLE` is set. With `EMAILCONFIRM` set, where a person
/// would have to agree, nothing is sent: the list is saved in the output folder, as
/// "SOURCE_emails_TIME.lst", for "Load Email List". What could not be sent, and what a stop left
/// behind, is saved in the same way as "SOURCE_emails_not_sent_TIME.lst", mails that may have
/// arrived as "SOURCE_emails_may_have_arrived_TIME.lst". While mails go out the whole list lies
/// there as "SOURCE_emails_sending_TIME.lst" (see KeptLists), and stays until finish(). SOURCE is
/// the source's name, TIME reads "20240131_235959"; a list that exists is never replaced.
///
/// A file whose bytes are not those that were written, and one that holds pages of different
/// addresses, or of earlier runs, is not mailed: it is told and in the list of what is left.
///
/// Everything is told with Operator::note(); no message, no question.
class UnattendedDelivery {
public:
  /// `person` must outlive this; `stopRequested` may be empty.
  UnattendedDelivery(DeliveryMeans means, Operator& person,
                     std::function<bool()> stopRequested = {})
      : m_means(std::move(means)), m_person(person), m_stop(std::move(stopRequested)) {}

  /// Before a source is split: when a program died, or ended with mails unsent, that had split the
  /// same bytes with the same settings, and its lists are there still, they are gone on with, and
  /// the source is not to be split again. Mails that may have arrived stay where they are. Empty
  /// when there is nothing of the kind; lists of other bytes or settings are told and left alone.
  std::optional<UnattendedResult> goOn(const SplitSetup& setup, const QString& source);

  /// After a source was split.
  UnattendedResult send(const SplitSetup& setup, const FinishedRun& run);

  /// Sends what is left of a list that was saved: the record beside it says what went out before,
  /// and stays. With `EMAILCONFIRM` set nothing is sent.
  UnattendedResult sendList(const SplitSetup& setup, const QString& path);

  /// The whole command is at its end: what was sent is sent. Without this call (a crash), the same
  /// command passes over the sources that were mailed already.
  void finish();

private:
  UnattendedResult confirmLater(const EmailList& list, const SplitSetup& setup,
                                const FinishedRun& run);
  UnattendedResult goOnWith(const FoundList& found, const SplitSetup& setup);
  UnattendedResult deliver(const EmailList& list, const QString& listFile,
                           std::unique_ptr<EmailDelivery> delivery, const SplitSetup& setup,
                           const QString& source);
  void saveRest(const EmailList& list, const DeliveryResult& sent, KeptLists& kept,
                const SplitSetup& setup, const QString& source, UnattendedResult& result);
  QString save(const EmailList& list, const QString& path, const MailWork& work = {});
  bool isOurs(const QString& list) const;
  void tell(const QString& text);

  DeliveryMeans m_means;
  Operator& m_person;
  std::function<bool()> m_stop;
  std::vector<std::unique_ptr<EmailDelivery>> m_deliveries;
};

} // namespace folivex
