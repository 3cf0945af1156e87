// EmailEntry: one mail to send.
#pragma once

#include <QString>
#include <QStringList>

#include <vector>

namespace folivex {

/// One row of the e-mail list. Texts are cut to their capacities (see fitted()), never refused.
/// Pages count from 1, inclusive; 0 and 0: the whole file is sent.
struct EmailEntry {
  int extractPageStart = 0;
  int extractPageEnd = 0;
  QString file;                   ///< full path of the file to attach, whole (see fileIsCut)
  QString address;                ///< recipient, at most 255; an entry without one is not sent
  QString body;                   ///< at most 4096; empty: the setup's `EMAILMSG`
  QString cc;                     ///< at most 265; empty: the setup's `EMAILINVOICECC`
  QString invoiceNumberInSubject; ///< at most 10
  QString separateInvoices;       ///< at most 5
  QString subject;                ///< at most 255; empty: the setup's `EMAILSUBJECT`
  /// Other addresses that the pages of the file hold, for the person to see; not stored in files.
  QStringList furtherAddresses;
  /// Read from a list that could not hold the whole path: `file` is its beginning.
  bool fileIsCut = false;

  bool operator==(const EmailEntry&) const = default;
};

/// In sending order.
using EmailEntries = std::vector<EmailEntry>;

/// The entry with every text cut to what its field holds, addresses without the blanks around them:
/// lists are made by hand, too. A path stays whole: what is left of one attaches nothing, or the
/// wrong file.
EmailEntry fitted(EmailEntry entry);

} // namespace folivex
