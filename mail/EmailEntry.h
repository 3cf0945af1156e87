// EmailEntry: one mail to send.
#pragma once

#include "platform/FileDigest.h"

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

  // What a list file keeps in the journal beside it (see SendJournal):
  /// The bytes that `file` is to hold when it is sent; not known: those that lie there then.
  platform::FileDigest identity;
  /// Read from a list beside which nothing tells what its files were, or which mails went out.
  bool isUnchecked = false;
  bool addressesDiffer = false;   ///< the file holds pages of several addresses
  bool holdsEarlierPages = false; ///< and pages of earlier runs, with whatever addresses
  QStringList sentTo;             ///< recipients that it went out to before
  QStringList mayHaveReached;     ///< and those of whom nobody knows

  /// When somebody looked last, the file held other bytes than those of `identity`; kept nowhere.
  bool isChanged = false;

  bool operator==(const EmailEntry&) const = default;
};

/// In sending order.
using EmailEntries = std::vector<EmailEntry>;

/// The entry with every text cut to what its field holds, addresses without the blanks around them:
/// lists are made by hand, too. A path stays whole: what is left of one attaches nothing, or the
/// wrong file.
EmailEntry fitted(EmailEntry entry);

/// The subject that the mail goes out with: its own wins over that of the settings, and the invoice
/// number, if any, follows after a blank.
QString subjectOf(const EmailEntry& entry, const QString& settingsSubject);

/// Why the mail waits for a person who looks at it, but for what isChanged tells; empty when it
/// need not.
QString doubtAbout(const EmailEntry& entry);

} // namespace folivex
