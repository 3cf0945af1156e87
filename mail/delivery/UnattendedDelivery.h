// UnattendedDelivery: mails of a run that nobody watches.
#pragma once

#include "mail/delivery/EmailDelivery.h"

#include <functional>

namespace folivex {

class Operator;

struct [[nodiscard]] UnattendedResult {
  bool complete = true; ///< no mail that has an address is left to send
  QString savedList;    ///< e-mail list with what is left; empty when there is none
  SendSummary summary;  ///< empty when nothing was tried
};

/// Sends the outputs of a run when `EMAILENABLE` is set. With `EMAILCONFIRM` set, where a person
/// would have to agree, nothing is sent: the list is saved in the output folder, as
/// "SOURCE_emails_TIME.lst", for "Load Email List". What could not be sent, and what a stop left
/// behind, is saved in the same way as "SOURCE_emails_not_sent_TIME.lst"; mails that may have
/// arrived are not in it. While mails go out the whole list lies there as
/// "SOURCE_emails_sending_TIME.lst" (see KeptLists). SOURCE is the source's name, TIME reads
/// "20240131_235959"; a list that exists is never replaced.
///
/// Everything is told with Operator::note(); no message, no question. `stopRequested` may be empty.
UnattendedResult sendUnattended(const SplitSetup& setup, const FinishedRun& run,
                                const DeliveryMeans& means, Operator& person,
                                const std::function<bool()>& stopRequested = {});

} // namespace folivex
