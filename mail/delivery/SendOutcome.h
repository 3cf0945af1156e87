// SendOutcome: what became of every mail of a list, for a person to read.
#pragma once

#include "mail/EmailList.h"
#include "mail/EmailSendRun.h"

#include <QStringList>

namespace folivex {

/// Every mail that failed, with the reason, and apart from them those that may have arrived. The
/// ones that a stop left behind are a number. Empty when every mail went out.
QStringList outcomeLines(const EmailList& list, const SendSummary& summary);

/// What there is to say of a run of which `without` outputs have no address; empty when all have.
QString withoutAddressSentence(std::size_t without, std::size_t outputs);

/// "1,234"
QString countWithCommas(std::size_t count);

/// "1 e-mail", "1,234 e-mails"
QString mailCount(std::size_t count);

} // namespace folivex
